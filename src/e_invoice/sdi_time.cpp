#include "e_invoice/sdi_time.h"

#include <charconv>

namespace tarvello::e_invoice {
namespace {

using namespace std::chrono;

/// Takes a number of so many digits off the start, and the mark behind it if one is given.
std::optional<int> take_number(std::string_view& text, std::size_t digits, char mark = '\0') {
    int number = 0;
    const char* const end = text.data() + std::min(digits, text.size());
    const auto [read_to, error] = std::from_chars(text.data(), end, number);
    if (error != std::errc() || text.size() < digits || read_to != end || number < 0) return std::nullopt;
    text.remove_prefix(digits);
    if (mark != '\0') {
        if (!text.starts_with(mark)) return std::nullopt;
        text.remove_prefix(1);
    }
    return number;
}

std::optional<Date> take_date(std::string_view& text) {
    const auto y = take_number(text, 4, '-');
    const auto m = y ? take_number(text, 2, '-') : std::nullopt;
    const auto d = m ? take_number(text, 2) : std::nullopt;
    if (!d) return std::nullopt;
    const Date date = make_date(*y, static_cast<unsigned>(*m), static_cast<unsigned>(*d));
    return date.ok() ? std::optional(date) : std::nullopt;
}

/// Z, +01:00 and the like. @return nothing if there is none
std::optional<minutes> read_offset(std::string_view text) {
    if (text.starts_with('Z')) return minutes(0);
    if (!text.starts_with('+') && !text.starts_with('-')) return std::nullopt;
    const bool west = text.starts_with('-');
    text.remove_prefix(1);
    const auto h = take_number(text, 2, ':');
    const auto m = h ? take_number(text, 2) : std::nullopt;
    if (!m) return std::nullopt;
    const minutes offset = hours(*h) + minutes(*m);
    return west ? -offset : offset;
}

/// The clock in Italy: summer time from the last Sunday of March to that of October, at 01:00 UTC
/// (directive 2000/84/EC).
local_seconds in_italy(sys_seconds time) {
    const year this_year = year_month_day(floor<days>(time)).year();
    const sys_seconds begin = sys_days(this_year / March / Sunday[last]) + hours(1);
    const sys_seconds end = sys_days(this_year / October / Sunday[last]) + hours(1);
    const hours offset(time >= begin && time < end ? 2 : 1);
    return local_seconds(time.time_since_epoch() + offset);
}

} // namespace

std::optional<DateTime> read_sdi_time(std::string_view text) {
    const auto date = take_date(text);
    if (!date || !text.starts_with('T')) return std::nullopt;
    text.remove_prefix(1);
    const auto h = take_number(text, 2, ':');
    const auto m = h ? take_number(text, 2, ':') : std::nullopt;
    const auto s = m ? take_number(text, 2) : std::nullopt;
    if (!s || *h > 24 || *m > 59 || *s > 60) return std::nullopt;
    if (text.starts_with('.'))
        text.remove_prefix(std::min(text.find_first_not_of("0123456789", 1), text.size()));

    const local_seconds written = local_days(*date) + hours(*h) + minutes(*m) + seconds(*s);
    const auto offset = read_offset(text);
    return offset ? in_italy(sys_seconds(written.time_since_epoch() - *offset)) : written;
}

std::optional<Date> read_sdi_date(std::string_view text) { return take_date(text); }

} // namespace tarvello::e_invoice
