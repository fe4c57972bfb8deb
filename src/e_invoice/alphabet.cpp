#include "e_invoice/alphabet.h"

#include "text/letter_case.h"
#include "text/utf8.h"

#include <utf8proc.h>

#include <algorithm>
#include <cstdlib>
#include <memory>

namespace tarvello::e_invoice {
namespace {

struct Replacement {
    char32_t character;
    const char* by;
};

constexpr Replacement replacements[] = {
    {0x00A0, " "},  {0x00AD, ""},    {0x0110, "D"},  {0x0111, "d"},    {0x0131, "i"},   {0x0141, "L"},
    {0x0142, "l"},  {0x0152, "OE"},  {0x0153, "oe"}, {0x2000, " "},    {0x2001, " "},   {0x2002, " "},
    {0x2003, " "},  {0x2004, " "},   {0x2005, " "},  {0x2006, " "},    {0x2007, " "},   {0x2008, " "},
    {0x2009, " "},  {0x200A, " "},   {0x200B, ""},   {0x200C, ""},     {0x200D, ""},    {0x200E, ""},
    {0x200F, ""},   {0x2010, "-"},   {0x2011, "-"},  {0x2012, "-"},    {0x2013, "-"},   {0x2014, "-"},
    {0x2015, "-"},  {0x2018, "'"},   {0x2019, "'"},  {0x201A, "'"},    {0x201B, "'"},   {0x201C, "\""},
    {0x201D, "\""}, {0x201E, "\""},  {0x201F, "\""}, {0x2022, "-"},    {0x2026, "..."}, {0x2028, " "},
    {0x2029, " "},  {0x202F, " "},   {0x2032, "'"},  {0x2033, "\""},   {0x2044, "/"},   {0x205F, " "},
    {0x2060, ""},   {0x20AC, "EUR"}, {0x2116, "N."}, {0x2122, "(TM)"}, {0x2212, "-"},   {0x3000, " "},
    {0xFB01, "fi"}, {0xFB02, "fl"},  {0xFEFF, ""},
};

const char* replacement_of(char32_t character) {
    if (character < std::begin(replacements)->character) return nullptr; // most are
    const auto* const found = std::find_if(std::begin(replacements), std::end(replacements),
                                           [&](const Replacement& r) { return r.character == character; });
    return found == std::end(replacements) ? nullptr : found->by;
}

constexpr char32_t not_readable = 0xFFFD; // what an invalid byte is decoded to

bool is_white(char32_t c) {
    return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}
/// The byte of the euro sign of windows-1252 is among these when it is taken for Latin: valid, and prints as
/// nothing.
bool is_control_character(char32_t c) { return c < 0x20 || (c >= 0x7F && c < 0xA0); }

bool is_combining(char32_t c) {
    const auto category = utf8proc_category(static_cast<utf8proc_int32_t>(c));
    return category == UTF8PROC_CATEGORY_MN || category == UTF8PROC_CATEGORY_MC ||
           category == UTF8PROC_CATEGORY_ME;
}

/// A letter and its accents joined to one character where Unicode has one.
std::u32string composed(std::string_view text) {
    std::u32string characters = utf8::decode(text);
    std::erase(characters, U'\0');
    const std::string valid = utf8::encode(characters);
    std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> normal(
        utf8proc_NFC(reinterpret_cast<const utf8proc_uint8_t*>(valid.c_str())), &std::free);
    return normal ? utf8::decode(reinterpret_cast<const char*>(normal.get())) : characters;
}

/// A character as the simpler ones that it is made of, without its accents.
std::u32string decomposed(char32_t character) {
    constexpr auto options = static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_COMPAT);
    utf8proc_int32_t parts[32];
    int boundary = 0;
    const auto count =
        utf8proc_decompose_char(static_cast<utf8proc_int32_t>(character), parts, 32, options, &boundary);
    std::u32string result;
    for (utf8proc_ssize_t i = 0; i < count && i < 32; ++i) {
        const auto part = static_cast<char32_t>(parts[i]);
        if (!is_combining(part)) result += part;
    }
    return result;
}

class Conversion {
public:
    explicit Conversion(Alphabet alphabet) : last_(alphabet == Alphabet::ascii ? 0x7F : 0xFF) {}

    void add(char32_t character) {
        if (character == not_readable) {
            lost_ = true;
        } else if (!add_simple(character)) {
            add_parts(character);
        }
    }

    Converted finish(std::size_t limit) {
        while (text_.ends_with(' ')) text_.pop_back();
        Converted result{text_, lost_, utf8::length(text_) > limit};
        if (result.cut) result.text = trim(utf8::left(text_, limit));
        return result;
    }

private:
    /// What needs no taking apart. @return false for a character beyond the alphabet
    bool add_simple(char32_t character) {
        if (is_white(character)) {
            append(' ');
        } else if (const char* const by = replacement_of(character)) {
            for (const char* c = by; *c != 0; ++c) append(static_cast<unsigned char>(*c));
        } else if (character > last_ && !is_control_character(character)) {
            return is_combining(character);
        } else if (!is_control_character(character)) {
            append(character);
        }
        return true;
    }

    void add_parts(char32_t character) {
        const std::u32string parts = decomposed(character);
        const bool simpler = parts.size() != 1 || parts.front() != character;
        bool all = simpler && !parts.empty();
        for (const char32_t part : parts) all = all && (part <= last_ || replacement_of(part));
        if (all) {
            for (const char32_t part : parts) add_simple(part);
        } else {
            append('?');
            lost_ = true;
        }
    }

    void append(char32_t character) {
        if (character == ' ' && (text_.empty() || text_.back() == ' ')) return;
        utf8::append(text_, character);
    }

    char32_t last_;
    std::string text_;
    bool lost_ = false;
};

} // namespace

Converted to_alphabet(std::string_view text, Alphabet alphabet, std::size_t limit) {
    Conversion conversion(alphabet);
    for (const char32_t character : composed(text)) conversion.add(character);
    return conversion.finish(limit);
}

std::vector<std::string> in_pieces(std::string_view text, std::size_t limit) {
    std::vector<std::string> pieces;
    while (utf8::length(text) > limit) {
        const std::size_t end = utf8::byte_of(text, limit);
        const std::size_t blank = text.rfind(' ', end);
        const std::size_t part = blank == std::string_view::npos || blank == 0 ? end : blank;
        pieces.push_back(trim(text.substr(0, part)));
        text.remove_prefix(text[part] == ' ' ? part + 1 : part);
    }
    if (!text.empty()) pieces.emplace_back(text);
    return pieces;
}

} // namespace tarvello::e_invoice
