#pragma once

#include "text/regional_settings.h"

#include <chrono>
#include <optional>
#include <string>
#include <string_view>

namespace tarvello {

/// A day of the Gregorian calendar.
using Date = std::chrono::year_month_day;

/// A day and a time of that day.
using DateTime = std::chrono::local_seconds;

constexpr Date make_date(int year, unsigned month, unsigned day) {
    return Date(std::chrono::year(year), std::chrono::month(month), std::chrono::day(day));
}

inline int year_of(const Date& date) { return static_cast<int>(date.year()); }
inline unsigned month_of(const Date& date) { return static_cast<unsigned>(date.month()); }
inline unsigned day_of(const Date& date) { return static_cast<unsigned>(date.day()); }

/// Calendar days from `from` to `to`: negative if `to` lies before.
int days_between(const Date& from, const Date& to);

/// The date in another year; 29 February becomes 28 February where the year has none.
Date with_year(const Date& date, int year);

/// The short form of a date by the regional settings, such as 05/03/2006.
std::string short_date_text(const Date& date, const RegionalSettings& regional);

/// The long form of a date, such as domenica 5 marzo 2006.
std::string long_date_text(const Date& date, const RegionalSettings& regional);

/// The long form of a time, such as 14:05:09.
std::string long_time_text(const DateTime& time, const RegionalSettings& regional);

/// Reads a date as typed: three numbers in the order of the short form, or year first when the first number
/// has four digits, with / - . or a blank between them; a year of two digits is taken between 1930 and 2029.
/// @return nothing if the text is no date that exists, or its year lies outside 100 to 9999
std::optional<Date> read_date(std::string_view text, const RegionalSettings& regional);

/// Reads a date as a person types it: as read_date(), but a year has two digits or four, and the separators
/// may be left out where day and month have two digits each (31121980).
/// @return nothing if the text names no day; a date that is not ok() if it names one that does not exist
std::optional<Date> read_typed_date(std::string_view text, const RegionalSettings& regional);

/// The date as data files have it: 2006-03-05.
std::string iso_date(const Date& date);

/// Reads it back; what stands behind the ten characters (a time, a time zone) is passed over.
/// @return nothing if they are no date that exists
std::optional<Date> read_iso_date(std::string_view text);

} // namespace tarvello
