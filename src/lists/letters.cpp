#include "lists/letters.h"

#include "text/ascii.h"
#include "text/utf8.h"

#include <array>
#include <cstdint>
#include <utf8proc.h>

namespace tarvello::lists {
namespace {

/// Latin letters that Unicode does not decompose.
constexpr struct {
    char32_t letter;
    const char* base;
} special[] = {{U'ß', "ss"}, {U'æ', "ae"}, {U'Æ', "AE"}, {U'œ', "oe"}, {U'Œ', "OE"}, {U'ø', "o"}, {U'Ø', "O"},
               {U'đ', "d"},  {U'Đ', "D"},  {U'ł', "l"},  {U'Ł', "L"},  {U'ı', "i"},  {U'ð', "d"}, {U'Ð', "D"},
               {U'þ', "th"}, {U'Þ', "TH"}, {U'’', "'"},  {U'‘', "'"},  {U'ʼ', "'"},  {U'´', "'"}, {U'–', "-"},
               {U'—', "-"},  {U'“', "\""}, {U'”', "\""}, {U'«', "\""}, {U'»', "\""}};

const char* special_base(char32_t code) {
    for (const auto& letter : special) {
        if (letter.letter == code) return letter.base;
    }
    return nullptr;
}

bool is_mark(char32_t code) {
    return utf8proc_category(static_cast<utf8proc_int32_t>(code)) == UTF8PROC_CATEGORY_MN;
}

bool is_letter_or_figure(char32_t code) {
    const auto category = utf8proc_category(static_cast<utf8proc_int32_t>(code));
    return (category >= UTF8PROC_CATEGORY_LU && category <= UTF8PROC_CATEGORY_LO) ||
           (category >= UTF8PROC_CATEGORY_ND && category <= UTF8PROC_CATEGORY_NO);
}

/// Calls `on_base(code, accented)` for each base letter, and `on_mark(code)` for each accent on the one
/// before.
template <typename OnBase, typename OnMark>
void decompose(std::string_view text, OnBase on_base, OnMark on_mark) {
    for (const char32_t code : utf8::decode(text)) {
        if (code < 0x80) {
            on_base(code);
            continue;
        }
        if (const char* base = special_base(code)) {
            for (; *base; ++base) on_base(static_cast<char32_t>(*base));
            on_mark(code); // so that it comes after its plain spelling
            continue;
        }
        constexpr int most = 18; // the longest decomposition of Unicode
        std::array<utf8proc_int32_t, most> parts{};
        int boundary = 0;
        const auto count = utf8proc_decompose_char(
            static_cast<utf8proc_int32_t>(code), parts.data(), most,
            static_cast<utf8proc_option_t>(UTF8PROC_DECOMPOSE | UTF8PROC_COMPAT), &boundary);
        for (utf8proc_ssize_t i = 0; i < count && i < most; ++i) {
            const auto part = static_cast<char32_t>(parts[static_cast<std::size_t>(i)]);
            if (is_mark(part)) {
                on_mark(part);
            } else {
                on_base(part);
            }
        }
    }
}

char32_t lower(char32_t code) {
    if (code < 0x80) return static_cast<unsigned char>(ascii::lower(static_cast<char>(code)));
    return static_cast<char32_t>(utf8proc_tolower(static_cast<utf8proc_int32_t>(code)));
}

/// The weights of ASCII. 0 is ignored; 1 separates the levels of a key.
constexpr std::uint8_t level_mark = 1;
constexpr std::uint8_t plain = 2;            // no accent, a small letter
constexpr std::uint8_t other_marks = 0x30;   // behind the marks of ASCII
constexpr std::uint8_t other_letters = 0xF0; // behind the letters of ASCII

constexpr std::size_t number_of(char character) { return static_cast<unsigned char>(character); }

constexpr std::array<std::uint8_t, 128> make_weights() {
    std::array<std::uint8_t, 128> weights{};
    std::uint8_t weight = 3;
    for (const char blank : {' ', '\t', '\n', '\r'}) weights[number_of(blank)] = weight;
    constexpr std::string_view order =
        "_-,;:!?.'\"()[]{}@*/\\&#%`^+<=>|~$0123456789abcdefghijklmnopqrstuvwxyz";
    for (const char character : order) {
        if (character == '0') weight = other_marks;
        weights[number_of(character)] = ++weight;
    }
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        weights[number_of(letter)] = weights[number_of(letter) + ('a' - 'A')];
    }
    return weights;
}

constexpr std::array<std::uint8_t, 128> weights = make_weights();

/// The usual accents in the order of the Unicode Collation Algorithm: acute, grave, breve, circumflex, caron,
/// ring, diaeresis, double acute, tilde, dot. Others follow by their numbers.
char accent_weight(char32_t mark) {
    constexpr std::u32string_view order = U"\u0301\u0300\u0306\u0302\u030C\u030A\u0308\u030B\u0303\u0307";
    const auto place = order.find(mark);
    const std::size_t weight = place != std::u32string_view::npos ? place : order.size() + (mark & 0x7F);
    return static_cast<char>(plain + 1 + weight);
}

/// A level of a key: one weight for each base letter, the plain ones at the end left out.
class Level {
public:
    void add(char weight) { weights_ += weight; }
    void set_last(char weight) {
        if (!weights_.empty()) weights_.back() = weight;
    }
    void append_to(std::string& key) const {
        const auto last = weights_.find_last_not_of(static_cast<char>(plain));
        if (last != std::string::npos) key.append(weights_, 0, last + 1);
    }

private:
    std::string weights_;
};

/// ASCII has no accents, and its capitals stand where the letters do.
void append_ascii_key(std::string& key, std::string_view text) {
    std::size_t capitals_end = 0; // so many weights up to the last capital
    std::size_t count = 0;
    for (const char c : text) {
        const std::uint8_t weight = weights[number_of(c)];
        if (weight == 0) continue;
        key += static_cast<char>(weight);
        ++count;
        if (c >= 'A' && c <= 'Z') capitals_end = count;
    }
    key += static_cast<char>(level_mark);
    key += static_cast<char>(level_mark);
    for (std::size_t i = 0; capitals_end > 0 && i < text.size(); ++i) {
        const char c = text[i];
        if (weights[number_of(c)] == 0) continue;
        key += static_cast<char>(c >= 'A' && c <= 'Z' ? plain + 1 : plain);
        --capitals_end;
    }
}

void append_any_key(std::string& key, std::string_view text) {
    Level accents;
    Level capitals;
    const auto on_base = [&](char32_t code) {
        const char32_t small = lower(code);
        if (small < 0x80) {
            const std::uint8_t weight = weights[small];
            if (weight == 0) return;
            key += static_cast<char>(weight);
        } else {
            key += static_cast<char>(is_letter_or_figure(small) ? other_letters : other_marks);
            for (const int shift : {14, 7, 0}) key += static_cast<char>(0x80 | (small >> shift & 0x7F));
        }
        accents.add(plain);
        capitals.add(static_cast<char>(small == code ? plain : plain + 1));
    };
    const auto on_mark = [&](char32_t code) { accents.set_last(accent_weight(code)); };
    decompose(text, on_base, on_mark);
    key += static_cast<char>(level_mark);
    accents.append_to(key);
    key += static_cast<char>(level_mark);
    capitals.append_to(key);
}

} // namespace

std::string folded(std::string_view text) {
    std::string result;
    result.reserve(text.size());
    if (ascii::contains_all(text)) {
        for (const char c : text) result += static_cast<char>(lower(static_cast<char32_t>(c)));
        return result;
    }
    decompose(
        text, [&](char32_t code) { utf8::append(result, lower(code)); }, [](char32_t) {});
    return result;
}

void append_order_key(std::string& keys, std::string_view text) {
    if (ascii::contains_all(text)) {
        append_ascii_key(keys, text);
    } else {
        append_any_key(keys, text);
    }
}

} // namespace tarvello::lists
