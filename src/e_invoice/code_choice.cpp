#include "e_invoice/code_choice.h"

namespace tarvello::e_invoice {
namespace {

std::string code_in(std::string_view item) {
    const std::size_t open = item.rfind('(');
    if (open == std::string_view::npos || !item.ends_with(')')) return {};
    return std::string(item.substr(open + 1, item.size() - open - 2));
}

} // namespace

std::string chosen_code(const ComboBox& box) { return code_in(box.text()); }

void choose_code(ComboBox& box, std::string_view code) {
    int without = -1;
    for (std::size_t i = 0; i < box.items().size(); ++i) {
        const std::string found = code_in(box.items()[i]);
        if (!code.empty() && found == code) return box.set_list_index(static_cast<int>(i));
        if (found.empty() && without < 0) without = static_cast<int>(i);
    }
    box.set_list_index(without);
}

void fill_countries(ComboBox& box, const std::string& none) {
    box.set_list_only(true);
    if (!none.empty()) box.add_item(none);
    for (const Country& country : countries()) {
        box.add_item(std::string(country.name) + " (" + std::string(country.code) + ")");
    }
}

} // namespace tarvello::e_invoice
