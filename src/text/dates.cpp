#include "text/dates.h"

#include "text/ascii.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace tarvello {
namespace {

constexpr std::array day_names{"domenica", "lunedì", "martedì", "mercoledì", "giovedì", "venerdì", "sabato"};
constexpr std::array month_names{"gennaio", "febbraio", "marzo",     "aprile",  "maggio",   "giugno",
                                 "luglio",  "agosto",   "settembre", "ottobre", "novembre", "dicembre"};

std::string padded(int number, std::size_t width) {
    std::string digits = std::to_string(number);
    if (digits.size() < width) digits.insert(0, width - digits.size(), '0');
    return digits;
}

/// Walks a pattern run by run: `field` gets each run of one of `letters`, the rest is copied.
template <typename Field>
std::string by_pattern(std::string_view pattern, std::string_view letters, Field field) {
    std::string text;
    for (std::size_t at = 0; at < pattern.size();) {
        const char c = pattern[at];
        if (letters.find(c) == std::string_view::npos) {
            text += c;
            ++at;
            continue;
        }
        const std::size_t end = std::min(pattern.find_first_not_of(c, at), pattern.size());
        text += field(c, end - at);
        at = end;
    }
    return text;
}

std::string date_text(const Date& date, const std::string& pattern) {
    return by_pattern(pattern, "dMy", [&](char letter, std::size_t run) -> std::string {
        switch (letter) {
        case 'd':
            if (run >= 4) return day_names[std::chrono::weekday(std::chrono::sys_days(date)).c_encoding()];
            return padded(static_cast<int>(day_of(date)), run);
        case 'M':
            if (run >= 4) return month_names[month_of(date) - 1];
            return padded(static_cast<int>(month_of(date)), run);
        default:
            return run <= 2 ? padded(year_of(date) % 100, 2) : padded(year_of(date), 4);
        }
    });
}

} // namespace

int days_between(const Date& from, const Date& to) {
    return static_cast<int>((std::chrono::sys_days(to) - std::chrono::sys_days(from)).count());
}

Date with_year(const Date& date, int year) {
    const Date moved(std::chrono::year(year), date.month(), date.day());
    return moved.ok() ? moved : make_date(year, 2, 28);
}

std::string short_date_text(const Date& date, const RegionalSettings& regional) {
    return date_text(date, regional.short_date);
}

std::string long_date_text(const Date& date, const RegionalSettings& regional) {
    return date_text(date, regional.long_date);
}

std::string long_time_text(const DateTime& time, const RegionalSettings& regional) {
    const std::chrono::hh_mm_ss parts(time - std::chrono::floor<std::chrono::days>(time));
    return by_pattern(regional.long_time, "Hms", [&](char letter, std::size_t run) {
        const auto value = letter == 'H'   ? parts.hours().count()
                           : letter == 'm' ? parts.minutes().count()
                                           : parts.seconds().count();
        return padded(static_cast<int>(value), run);
    });
}

std::optional<Date> read_date(std::string_view text, const RegionalSettings& regional) {
    std::array<int, 3> numbers{};
    std::array<std::size_t, 3> widths{};
    std::size_t count = 0;
    for (std::size_t at = 0; at < text.size();) {
        if (!ascii::is_digit(text[at])) {
            if (std::string_view("/-. ").find(text[at]) == std::string_view::npos) return std::nullopt;
            ++at;
            continue;
        }
        if (count == numbers.size()) return std::nullopt;
        const auto end = std::from_chars(text.data() + at, text.data() + text.size(), numbers[count]).ptr;
        widths[count] = static_cast<std::size_t>(end - text.data()) - at;
        at += widths[count];
        if (widths[count] > 4) return std::nullopt;
        ++count;
    }
    if (count != 3) return std::nullopt;

    // The order of the letters in the short form is the order of the numbers, unless a year comes first.
    std::string order;
    if (widths[0] > 2) {
        order = "yMd";
    } else {
        for (const char letter : regional.short_date) {
            if (std::string_view("dMy").find(letter) != std::string_view::npos &&
                order.find(letter) == std::string::npos) {
                order += letter;
            }
        }
    }
    int day = 0;
    int month = 0;
    int year = 0;
    for (std::size_t i = 0; i < order.size() && i < 3; ++i) {
        if (order[i] == 'd') day = numbers[i];
        if (order[i] == 'M') month = numbers[i];
        if (order[i] == 'y')
            year = widths[i] <= 2 ? numbers[i] + (numbers[i] < 30 ? 2000 : 1900) : numbers[i];
    }
    if (year < 100 || year > 9999 || month < 1 || day < 1) return std::nullopt;
    const Date date = make_date(year, static_cast<unsigned>(month), static_cast<unsigned>(day));
    return date.ok() ? std::optional(date) : std::nullopt;
}

std::string iso_date(const Date& date) { return date_text(date, "yyyy-MM-dd"); }

std::optional<Date> read_iso_date(std::string_view text) {
    const std::string_view ten = text.substr(0, 10);
    if (ten.size() != 10 || ten[4] != '-' || ten[7] != '-') return {};
    return read_date(ten, RegionalSettings());
}

} // namespace tarvello
