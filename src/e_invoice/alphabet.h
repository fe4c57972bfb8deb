#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// Texts of people turned into what the electronic invoice can hold. Its elements know the first 128
/// characters of Unicode, or the first 256; one character more, and the exchange system rejects the file.
namespace tarvello::e_invoice {

enum class Alphabet : std::uint8_t { ascii, latin };

struct Converted {
    std::string text;
    bool lost = false; ///< a character had nothing to stand for it: "?" stands there, or nothing
    bool cut = false;  ///< the text was longer than the limit
};

/// The text with only such characters in it: € becomes EUR, curly quotes and dashes plain ones, letters lose
/// the accents that the alphabet lacks, what is left becomes "?". Control characters go, tabs, line breaks
/// and rows of blanks become one blank, none stands at the ends.
/// @param limit  at most so many characters, counted at the end
Converted to_alphabet(std::string_view text, Alphabet alphabet, std::size_t limit);

/// A converted text in pieces of at most `limit` characters, parted at blanks where there are some.
std::vector<std::string> in_pieces(std::string_view text, std::size_t limit);

} // namespace tarvello::e_invoice
