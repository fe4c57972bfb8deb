#pragma once

#include <string>
#include <string_view>

namespace tarvello {

/// Letter case is Unicode's, by the simple mappings: one character always becomes one character, so that
/// positions in a text stay where they were.
std::string upper_case(std::string_view text);
std::string lower_case(std::string_view text);

/// What separates the words of the customer register.
inline constexpr std::string_view register_separators{" \t\n\v\f\r\0", 7};
/// What separates the words of the customer block of an invoice.
inline constexpr std::string_view invoice_separators{" \t\n\f\r", 5};

/// The first letter of every word upper, all other letters lower. An apostrophe or a hyphen separates
/// nothing: VIA DELL'ORSO 5 becomes Via Dell'orso 5.
/// @param separators  the ASCII characters that end a word
std::string proper_case(std::string_view text, std::string_view separators = register_separators);

/// The form in which two texts that differ only in letter case are the same bytes.
std::string fold_case(std::string_view text);

/// True if the texts are equal without regard to letter case, in all of Unicode.
bool equal_ignoring_case(std::string_view left, std::string_view right);

/// Without the blanks at both ends. Only the blank itself is cut, no tab and no line break.
std::string trim(std::string_view text);

/// A text of several lines as one: line breaks at its ends go, others become a blank each.
std::string one_line(std::string_view text);

/// True if nothing but blanks stands in the text, or nothing at all.
bool is_blank(std::string_view text);

/// Doubles every apostrophe, as a text literal of a statement needs it.
std::string double_apostrophes(std::string_view text);

} // namespace tarvello
