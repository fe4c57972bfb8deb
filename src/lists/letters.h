#pragma once

#include <string>
#include <string_view>

namespace tarvello::lists {

/// A text for looking things up: small letters without accents, one kind of apostrophe and blank; ß is ss, æ
/// is ae.
std::string folded(std::string_view text);

/// Appends a key whose bytes, compared as they are, put texts into Italian order.
///
/// The order of the Unicode Collation Algorithm for European texts, which Italian follows without changes:
/// blanks, then marks, figures, letters; accents count where the letters are the same (perche, perché,
/// perchè), and capitals where the accents are too (small letters first). Blanks and apostrophes count: De
/// Rossi comes before Deluca, D'Orso before Dante. Letters other than Latin come last, by their numbers in
/// Unicode.
void append_order_key(std::string& keys, std::string_view text);

} // namespace tarvello::lists
