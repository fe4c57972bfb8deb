#include "e_invoice/check_digits.h"

#include "text/ascii.h"
#include "text/letter_case.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace tarvello::e_invoice {
namespace {

/// A digit for itself, a letter for its place in the alphabet from 0.
int plain_value(char c) { return ascii::is_digit(c) ? c - '0' : c - 'A'; }

/// What a character counts on the first, third ... place, by its plain value: one table for the fiscal code
/// and for the check letter of accounts.
constexpr std::array<int, 26> odd_values{1,  0,  5, 7, 9, 13, 15, 17, 19, 21, 2,  4,  18,
                                         20, 11, 3, 6, 8, 12, 14, 16, 10, 22, 25, 24, 23};

char check_letter(std::string_view text) {
    int sum = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const int value = plain_value(text[i]);
        sum += i % 2 == 0 ? odd_values[static_cast<std::size_t>(value)] : value;
    }
    return static_cast<char>('A' + sum % 26);
}

/// The digit that a letter in the place of one stands for; the digit itself; or none, as -1.
int digit_of(char c) {
    constexpr std::string_view stand_ins = "LMNPQRSTUV";
    if (ascii::is_digit(c)) return c - '0';
    const std::size_t place = stand_ins.find(c);
    return place == std::string_view::npos ? -1 : static_cast<int>(place);
}

bool person_code_valid(std::string_view code) {
    constexpr std::string_view form = "LLLLLLDDMDDLDDDL";
    constexpr std::string_view month_letters = "ABCDEHLMPRST";
    for (std::size_t i = 0; i < form.size(); ++i) {
        const bool fits = form[i] == 'D'   ? digit_of(code[i]) >= 0
                          : form[i] == 'M' ? month_letters.find(code[i]) != std::string_view::npos
                                           : ascii::is_capital(code[i]);
        if (!fits) return false;
    }
    const int day = digit_of(code[9]) * 10 + digit_of(code[10]);
    const bool day_of_a_month = (day >= 1 && day <= 31) || (day >= 41 && day <= 71);
    return day_of_a_month && check_letter(code.substr(0, 15)) == code[15];
}

/// The remainder by 97 of a number written with letters too, A for 10 to Z for 35.
int remainder_97(std::string_view text) {
    int remainder = 0;
    for (const char c : text) {
        const int value = ascii::is_digit(c) ? c - '0' : c - 'A' + 10;
        remainder = (remainder * (value < 10 ? 10 : 100) + value) % 97;
    }
    return remainder;
}

constexpr std::size_t italian_iban_length = 27;
constexpr std::size_t account_starts = 5; // behind country, check digits and check letter

std::string padded(const std::string& code, std::size_t width) {
    return code.size() < width ? std::string(width - code.size(), '0') + code : code;
}

} // namespace

std::string plain_code(std::string_view typed) {
    std::string code;
    for (const char c : upper_case(typed)) {
        if (ascii::is_digit(c) || ascii::is_capital(c)) code += c;
    }
    return code;
}

std::string plain_partita_iva(std::string_view typed) {
    std::string number = plain_code(typed);
    if (number.size() == 13 && number.starts_with("IT")) number.erase(0, 2);
    return number;
}

bool partita_iva_valid(std::string_view number) {
    constexpr std::size_t digits = 11;
    if (number.size() != digits || !ascii::only_digits(number) || number == "00000000000") return false;
    int sum = 0;
    for (std::size_t i = 0; i < digits; ++i) {
        const int digit = number[i] - '0';
        const int doubled = digit * 2;
        sum += i % 2 == 0 ? digit : doubled > 9 ? doubled - 9 : doubled;
    }
    return sum % 10 == 0;
}

bool partita_iva_office_known(std::string_view number) {
    const std::string_view office = number.substr(7, 3);
    return (office >= "001" && office <= "100") || office == "120" || office == "121" || office == "888" ||
           office == "999";
}

bool codice_fiscale_valid(std::string_view code) {
    constexpr std::size_t of_a_person = 16;
    return code.size() == of_a_person ? person_code_valid(code) : partita_iva_valid(code);
}

std::string iban_of_account(std::string_view abi, std::string_view cab, std::string_view account) {
    const std::string bank = plain_code(abi);
    const std::string branch = plain_code(cab);
    const std::string number = plain_code(account);
    if (bank.empty() || bank.size() > 5 || !ascii::only_digits(bank)) return {};
    if (branch.empty() || branch.size() > 5 || !ascii::only_digits(branch)) return {};
    if (number.empty() || number.size() > 12) return {};
    const std::string body = padded(bank, 5) + padded(branch, 5) + padded(number, 12);
    const std::string bban = check_letter(body) + body;
    return "IT" + padded(std::to_string(98 - remainder_97(bban + "IT00")), 2) + bban;
}

bool iban_valid(std::string_view iban) {
    constexpr std::size_t shortest = 15;
    constexpr std::size_t longest = 34;
    const auto in_alphabet = [](char c) { return ascii::is_digit(c) || ascii::is_capital(c); };
    if (iban.size() < shortest || iban.size() > longest ||
        !std::all_of(iban.begin(), iban.end(), in_alphabet)) {
        return false;
    }
    if (!ascii::is_capital(iban[0]) || !ascii::is_capital(iban[1]) || !ascii::is_digit(iban[2]) ||
        !ascii::is_digit(iban[3]))
        return false;
    if (remainder_97(std::string(iban.substr(4)) + std::string(iban.substr(0, 4))) != 1) return false;
    if (!iban.starts_with("IT")) return true;
    return iban.size() == italian_iban_length && ascii::only_digits(iban.substr(account_starts, 10)) &&
           check_letter(iban.substr(account_starts)) == iban[4];
}

} // namespace tarvello::e_invoice
