#include "e_invoice/mail_headers.h"

#include "e_invoice/base64.h"
#include "e_invoice/charset.h"
#include "text/ascii.h"
#include "text/letter_case.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace tarvello::e_invoice {
namespace {

constexpr std::string_view blanks = " \t";
constexpr std::string_view kept[] = {
    "content-disposition", "content-transfer-encoding", "content-type", "from", "subject", "x-ricevuta"};
constexpr std::size_t longest_value = 2048;

std::string_view stripped(std::string_view text) {
    const auto first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// Takes the first line off the text; without its end.
std::string_view take_line(std::string_view& text) {
    const auto end = text.find('\n');
    std::string_view line = text.substr(0, end);
    text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
    if (line.ends_with('\r')) line.remove_suffix(1);
    return line;
}

bool is_continuation(std::string_view line) { return line.starts_with(' ') || line.starts_with('\t'); }

/// A name of printable ASCII and a colon.
bool is_header(std::string_view line) {
    const std::string_view name = stripped(line.substr(0, std::min(line.find(':'), line.size())));
    return name.size() < line.size() && !name.empty() &&
           std::all_of(name.begin(), name.end(), [](char c) { return c > ' ' && c < 0x7F; });
}

std::optional<char> hex_byte(std::string_view digits) {
    if (digits.size() < 2) return std::nullopt;
    const int high = ascii::hex_value(digits[0]), low = ascii::hex_value(digits[1]);
    if (high < 0 || low < 0) return std::nullopt;
    return static_cast<char>(high * 16 + low);
}

/// Each mark with two hexadecimal digits behind it replaced by their byte.
std::string decode_marked(std::string_view text, char mark) {
    std::string bytes;
    bytes.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = text[i] == mark ? hex_byte(text.substr(i + 1)) : std::nullopt;
        bytes += byte.value_or(text[i]);
        if (byte) i += 2;
    }
    return bytes;
}

/// Takes an encoded word, "=?charset?B?text?=", off the start. @return nothing if none stands there
std::optional<std::string> take_encoded_word(std::string_view& text) {
    if (!text.starts_with("=?")) return std::nullopt;
    const auto coding = text.find('?', 2);
    if (coding == std::string_view::npos || text.size() < coding + 3 || text[coding + 2] != '?')
        return std::nullopt;
    const auto end = text.find("?=", coding + 3);
    if (end == std::string_view::npos) return std::nullopt;
    // A language may follow the charset behind an asterisk (RFC 2231).
    const std::string_view charset = text.substr(2, std::min(text.find('*'), coding) - 2);
    const std::string_view body = text.substr(coding + 3, end - coding - 3);

    std::optional<std::string> bytes;
    if (text[coding + 1] == 'B' || text[coding + 1] == 'b') {
        bytes = decode_base64(body);
    } else {
        std::string spaced(body);
        std::replace(spaced.begin(), spaced.end(), '_', ' ');
        bytes = decode_marked(spaced, '=');
    }
    std::optional<std::string> word = bytes ? to_utf8(*std::move(bytes), charset) : std::nullopt;
    if (word) text.remove_prefix(end + 2);
    return word;
}

struct Parameter {
    std::string name; // in lower case, with the asterisks of RFC 2231
    std::string value;
};

/// "word; name=value; name="quoted value"": everything behind the word.
std::vector<Parameter> parameters_of(std::string_view text) {
    std::vector<Parameter> parameters;
    text.remove_prefix(std::min(text.find(';'), text.size()));
    while (text.starts_with(';')) {
        text.remove_prefix(1);
        const auto equals = text.find_first_of("=;");
        if (equals == std::string_view::npos) break;
        Parameter parameter{lower_case(stripped(text.substr(0, equals))), {}};
        text.remove_prefix(equals);
        if (text.starts_with(';')) continue;
        text.remove_prefix(std::min(text.find_first_not_of(blanks, 1), text.size()));
        if (text.starts_with('"')) {
            std::size_t i = 1;
            for (; i < text.size() && text[i] != '"'; ++i) {
                if (text[i] == '\\' && i + 1 < text.size()) ++i;
                parameter.value += text[i];
            }
            text.remove_prefix(std::min(i + 1, text.size()));
            text.remove_prefix(std::min(text.find(';'), text.size()));
        } else {
            const auto end = std::min(text.find(';'), text.size());
            parameter.value = stripped(text.substr(0, end));
            text.remove_prefix(end);
        }
        parameters.push_back(std::move(parameter));
    }
    return parameters;
}

const Parameter* find(const std::vector<Parameter>& parameters, std::string_view name) {
    const auto found = std::find_if(parameters.begin(), parameters.end(),
                                    [&](const Parameter& parameter) { return parameter.name == name; });
    return found == parameters.end() ? nullptr : &*found;
}

/// "charset'language'text" of RFC 2231, with percent codes.
std::string decode_extended(std::string_view value) {
    const auto first = value.find('\'');
    const auto second = first == std::string_view::npos ? first : value.find('\'', first + 1);
    if (second == std::string_view::npos) return decode_marked(value, '%');
    const std::string bytes = decode_marked(value.substr(second + 1), '%');
    return to_utf8(bytes, value.substr(0, first)).value_or(bytes);
}

} // namespace

MailHeaders::MailHeaders(std::string_view& text) {
    std::string* current = nullptr;
    for (bool first = true; !text.empty(); first = false) {
        std::string_view rest = text;
        const std::string_view line = take_line(rest);
        if (!line.empty() && !is_continuation(line) && !is_header(line) && !first)
            break; // the body begins without an empty line
        text = rest;
        if (line.empty()) break;
        if (is_continuation(line)) {
            if (current && current->size() < longest_value) current->append(" ").append(stripped(line));
            continue;
        }
        current = nullptr;
        if (!is_header(line)) continue; // the first line of a mailbox file
        const auto colon = line.find(':');
        const std::string name = lower_case(stripped(line.substr(0, colon)));
        if (std::find(std::begin(kept), std::end(kept), name) == std::end(kept)) continue;
        const auto [place, added] = values_.try_emplace(name, stripped(line.substr(colon + 1)));
        if (added) current = &place->second;
    }
    for (auto& [name, value] : values_) value.resize(std::min(value.size(), longest_value));
}

std::string_view MailHeaders::value(const std::string& name) const {
    const auto found = values_.find(name);
    return found == values_.end() ? std::string_view() : found->second;
}

std::string MailHeaders::word(const std::string& name) const {
    const std::string_view text = value(name);
    return lower_case(stripped(text.substr(0, text.find(';'))));
}

std::string MailHeaders::parameter(const std::string& name, std::string_view parameter) const {
    const std::vector<Parameter> parameters = parameters_of(value(name));
    const std::string plain(parameter);
    if (const Parameter* found = find(parameters, plain + "*")) return decode_extended(found->value);
    if (const Parameter* found = find(parameters, plain)) return decode_words(found->value);

    std::string pieces;
    bool extended = false;
    constexpr int most_pieces = 50;
    for (int i = 0; i < most_pieces; ++i) {
        const std::string piece = plain + "*" + std::to_string(i);
        const Parameter* found = find(parameters, piece + "*");
        extended = extended || found;
        if (!found) found = find(parameters, piece);
        if (!found) break;
        pieces += found->value;
    }
    return extended ? decode_extended(pieces) : pieces;
}

std::string decode_words(std::string_view value) {
    std::string text;
    bool after_word = false;
    while (!value.empty()) {
        // Blanks between two encoded words are not part of the text.
        std::string_view next = value;
        if (after_word) next.remove_prefix(std::min(next.find_first_not_of(blanks), next.size()));
        if (const auto word = take_encoded_word(next)) {
            text += *word;
            value = next;
            after_word = true;
        } else {
            text += value.front();
            value.remove_prefix(1);
            after_word = false;
        }
    }
    return text;
}

std::string decode_quoted_printable(std::string_view text) {
    std::string joined;
    joined.reserve(text.size());
    while (!text.empty()) {
        const bool last = text.find('\n') == std::string_view::npos;
        std::string_view line = take_line(text);
        line = line.substr(0, line.find_last_not_of(blanks) + 1); // added on the way
        if (line.ends_with('=')) {
            joined += line.substr(0, line.size() - 1);
        } else {
            joined += line;
            if (!last) joined += "\r\n";
        }
    }
    return decode_marked(joined, '=');
}

} // namespace tarvello::e_invoice
