#include "lists/narrowing.h"

#include "lists/letters.h"

#include <algorithm>

namespace tarvello::lists {
namespace {

std::vector<std::string> words_in(std::string_view typed) {
    std::vector<std::string> words;
    const std::string text = folded(typed);
    constexpr std::string_view blanks = " \t";
    for (std::size_t at = text.find_first_not_of(blanks); at != std::string::npos;) {
        const std::size_t end = std::min(text.find_first_of(blanks, at), text.size());
        words.push_back(text.substr(at, end - at));
        at = text.find_first_not_of(blanks, end);
    }
    return words;
}

} // namespace

Narrowing::Narrowing(const Table& table) {
    row_ends_.reserve(table.rows);
    for (std::size_t row = 0; row < table.rows; ++row) {
        for (std::size_t column = 0; column < table.columns.size(); ++column) {
            letters_ += folded(table.text(row, column));
            letters_ += '\n'; // no word reaches from one cell into the next
        }
        row_ends_.push_back(letters_.size());
    }
}

std::vector<std::size_t> Narrowing::rows(std::string_view typed) const {
    const std::vector<std::string> words = words_in(typed);
    std::vector<std::size_t> found;
    std::size_t begin = 0;
    for (std::size_t row = 0; row < row_ends_.size(); ++row) {
        const std::string_view letters = std::string_view(letters_).substr(begin, row_ends_[row] - begin);
        begin = row_ends_[row];
        if (std::all_of(words.begin(), words.end(), [&](const std::string& word) {
                return letters.find(word) != std::string_view::npos;
            })) {
            found.push_back(row);
        }
    }
    return found;
}

} // namespace tarvello::lists
