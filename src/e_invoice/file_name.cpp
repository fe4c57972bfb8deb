#include "e_invoice/file_name.h"

#include "failure.h"
#include "text/letter_case.h"

#include <algorithm>

namespace tarvello::e_invoice {
namespace {

constexpr std::string_view characters = "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZ";
constexpr std::size_t width = 5;

} // namespace

std::string progressive_text(std::int32_t number) {
    if (number < 1 || number > last_progressive) {
        throw Failure(failure_number::overflow, "Fattura elettronica",
                      "I nomi per i file delle fatture elettroniche sono finiti.");
    }
    std::string text(width, '0');
    const auto base = static_cast<std::int32_t>(characters.size());
    for (auto place = text.rbegin(); place != text.rend(); ++place, number /= base) {
        *place = characters[static_cast<std::size_t>(number % base)];
    }
    return text;
}

std::string file_name(std::string_view sender_code, std::string_view progressive) {
    return "IT" + std::string(sender_code) + "_" + std::string(progressive) + ".xml";
}

std::optional<std::int32_t> progressive_in(std::string_view name, std::string_view sender_code) {
    const std::string upper = upper_case(name);
    const std::string beginning = "IT" + upper_case(sender_code) + "_";
    if (!upper.starts_with(beginning)) return {};
    const std::size_t end = std::min(upper.find_first_of("_.", beginning.size()), upper.size());
    const std::string text = upper.substr(beginning.size(), end - beginning.size());
    if (text.empty() || text.size() > width) return {};
    std::int32_t number = 0;
    for (const char c : text) {
        const std::size_t value = characters.find(c);
        if (value == std::string_view::npos) return {};
        number = number * static_cast<std::int32_t>(characters.size()) + static_cast<std::int32_t>(value);
    }
    return number;
}

std::int32_t last_progressive_in(const std::vector<std::string>& names, std::string_view sender_code) {
    std::int32_t last = 0;
    for (const std::string& name : names)
        last = std::max(last, progressive_in(name, sender_code).value_or(0));
    return last;
}

} // namespace tarvello::e_invoice
