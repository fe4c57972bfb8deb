#include "fiscal_code/fiscal_code.h"

#include "text/letter_case.h"
#include "text/utf8.h"

#include <cstddef>

namespace tarvello {
namespace {

constexpr std::string_view vowels = "AEIOU";
constexpr std::string_view consonants = "BCDFGHJKLMNPQRSTVWXYZ";
constexpr std::string_view month_letters = "ABCDEHLMPRST";
/// Rows of 26 pairs: the number of a character's pair is its value. A letter and the digit that counts the
/// same share a pair.
constexpr std::string_view odd_table = "B1A0KKPPLLC2QQD3RRE4VVOOSSF5TTG6UUH7MMI8NNJ9WWZZYYXX";
constexpr std::string_view even_table = "A0B1C2D3E4F5G6H7I8J9KKLLMMNNOOPPQQRRSSTTUUVVWWXXYYZZ";
/// What a character counts that stands in neither table, such as a lower-case letter.
constexpr int value_of_stranger = 16383;
constexpr std::size_t characters_summed = 15;

/// The consonants and the vowels of a name, in their order; everything else is dropped.
struct Letters {
    std::string consonants;
    std::string vowels;
};

Letters letters_of(std::string_view name) {
    Letters letters;
    for (const char c : upper_case(name)) {
        if (vowels.find(c) != std::string_view::npos) {
            letters.vowels += c;
        } else if (consonants.find(c) != std::string_view::npos) {
            letters.consonants += c;
        }
    }
    return letters;
}

/// Three letters: the consonants, then the vowels, then X.
std::string three_of(const Letters& letters) {
    return (letters.consonants + letters.vowels + "XXX").substr(0, 3);
}

std::string surname_part(std::string_view surname) { return three_of(letters_of(surname)); }

std::string name_part(std::string_view name) {
    const Letters letters = letters_of(name);
    const std::string& c = letters.consonants;
    return c.size() > 3 ? std::string{c[0], c[2], c[3]} : three_of(letters);
}

std::string two_digits(int number) {
    return {static_cast<char>('0' + number / 10 % 10), static_cast<char>('0' + number % 10)};
}

std::string date_part(const Date& date, bool female) {
    const unsigned month = month_of(date);
    std::string part = two_digits(year_of(date) % 100);
    if (month >= 1 && month <= month_letters.size()) part += month_letters[month - 1];
    return part + two_digits(static_cast<int>(day_of(date)) + (female ? 40 : 0));
}

int value_in(std::string_view table, char32_t character) {
    const std::size_t place =
        character < 0x80 ? table.find(static_cast<char>(character)) : std::string_view::npos;
    return place == std::string_view::npos ? value_of_stranger : static_cast<int>(place / 2);
}

char check_character(std::string_view code) {
    int sum = 0;
    std::size_t position = 0;
    for (const char32_t character : utf8::decode(utf8::left(code, characters_summed))) {
        ++position;
        sum += value_in(position % 2 == 1 ? odd_table : even_table, character);
    }
    return static_cast<char>('A' + sum % 26);
}

} // namespace

std::string CalcoloCodFis(std::string_view Cognome, std::string_view Nome, const Date& DataNascita,
                          std::string_view Sesso, std::string_view CodiceComune) {
    std::string code = surname_part(Cognome) + name_part(Nome) + date_part(DataNascita, Sesso == "Femmina");
    code += CodiceComune;
    code += check_character(code);
    return code;
}

} // namespace tarvello
