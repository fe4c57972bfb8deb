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

namespace {

/// Three numbers as they were written, and how many digits each had.
struct DateNumbers {
    std::array<int, 3> values{};
    std::array<std::size_t, 3> widths{};
    std::size_t count = 0;
};

/// Takes the numbers out of a text in which nothing but separators stands between them.
std::optional<DateNumbers> split_numbers(std::string_view text, std::size_t most_digits) {
    DateNumbers numbers;
    for (std::size_t at = 0; at < text.size();) {
        if (!ascii::is_digit(text[at])) {
            if (std::string_view("/-. ").find(text[at]) == std::string_view::npos) return std::nullopt;
            ++at;
            continue;
        }
        if (numbers.count == numbers.values.size()) return std::nullopt;
        const auto end =
            std::from_chars(text.data() + at, text.data() + text.size(), numbers.values[numbers.count]).ptr;
        numbers.widths[numbers.count] = static_cast<std::size_t>(end - text.data()) - at;
        at += numbers.widths[numbers.count];
        if (numbers.widths[numbers.count] > most_digits) return std::nullopt;
        ++numbers.count;
    }
    return numbers;
}

/// The order of day, month and year in the short form.
std::string order_of(const RegionalSettings& regional) {
    std::string order;
    for (const char letter : regional.short_date) {
        if (std::string_view("dMy").find(letter) != std::string_view::npos &&
            order.find(letter) == std::string::npos) {
            order += letter;
        }
    }
    return order;
}

/// The day that three numbers name. A year that comes first is one by its digits.
/// @return nothing if it lies outside of the calendar's years
std::optional<Date> date_of(const DateNumbers& numbers, const RegionalSettings& regional) {
    if (numbers.count != 3) return std::nullopt;
    const std::string order = numbers.widths[0] > 2 ? "yMd" : order_of(regional);
    int day = 0;
    int month = 0;
    int year = 0;
    for (std::size_t i = 0; i < order.size() && i < 3; ++i) {
        const int value = numbers.values[i];
        if (order[i] == 'd') day = value;
        if (order[i] == 'M') month = value;
        if (order[i] == 'y') year = numbers.widths[i] <= 2 ? value + (value < 30 ? 2000 : 1900) : value;
    }
    if (year < 100 || year > 9999 || month > 99 || day > 99) return std::nullopt;
    return make_date(year, static_cast<unsigned>(month), static_cast<unsigned>(day));
}

} // namespace

std::optional<Date> read_date(std::string_view text, const RegionalSettings& regional) {
    const auto numbers = split_numbers(text, 4);
    const auto date = numbers ? date_of(*numbers, regional) : std::nullopt;
    return date && date->ok() ? date : std::nullopt;
}

std::optional<Date> read_typed_date(std::string_view text, const RegionalSettings& regional) {
    auto numbers = split_numbers(text, 8);
    if (!numbers) return std::nullopt;
    const std::string order = order_of(regional);
    if (numbers->count == 1 && (numbers->widths[0] == 6 || numbers->widths[0] == 8)) {
        // Without separators: every part but the year has two digits.
        std::string parted(text.substr(text.find_first_of("0123456789"), numbers->widths[0]));
        for (std::size_t i = 2, at = 0; i > 0; --i) {
            at += order[2 - i] == 'y' ? numbers->widths[0] - 4 : 2;
            parted.insert(at++, 1, '/');
        }
        numbers = split_numbers(parted, 4);
    }
    const std::size_t year = numbers->widths[0] > 2 ? 0 : order.find('y');
    for (std::size_t i = 0; i < 3; ++i) {
        const std::size_t digits = numbers->widths[i];
        if (i == year ? digits != 2 && digits != 4 : digits > 2) return std::nullopt;
    }
    return date_of(*numbers, regional);
}

std::string iso_date(const Date& date) { return date_text(date, "yyyy-MM-dd"); }

std::optional<Date> read_iso_date(std::string_view text) {
    const std::string_view ten = text.substr(0, 10);
    if (ten.size() != 10 || ten[4] != '-' || ten[7] != '-') return {};
    return read_date(ten, RegionalSettings());
}

} // namespace tarvello
