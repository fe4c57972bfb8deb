#pragma once

#include "e_invoice/code_lists.h"
#include "platform/entries.h"

#include <string>
#include <string_view>

/// A list of codes to choose from: each item is the words of a code with the code behind them in brackets.
namespace tarvello::e_invoice {

/// Fills a list with the codes that hold on that day.
/// @param none  an item for no code, before the others; empty for none
template <typename Entries>
void fill_codes(ComboBox& box, const Entries& entries, const Date& day, const std::string& none = {}) {
    box.set_list_only(true);
    if (!none.empty()) box.add_item(none);
    for (const auto& entry : entries) {
        if (entry.from <= day && day <= entry.until) box.add_item(in_words(entries, entry.code));
    }
}

/// The code of the chosen item; empty if none is chosen.
std::string chosen_code(const ComboBox& box);

/// Chooses the item of a code; of an empty one, or one that is not in the list, the first that has no code.
void choose_code(ComboBox& box, std::string_view code);

/// The country's items are "Germania (DE)".
void fill_countries(ComboBox& box, const std::string& none);

} // namespace tarvello::e_invoice
