#pragma once

#include "failure.h"

#include <cstddef>
#include <string>

namespace tarvello {

/// Sees that a list has the item or the row of an index, which counts from 0; -1 stands for none of them.
/// @param what  "voce" or "riga"
/// @throws Failure if it has not
inline void check_list_index(std::ptrdiff_t index, std::size_t size, const char* what) {
    if (index >= -1 && index < static_cast<std::ptrdiff_t>(size)) return;
    throw Failure(failure_number::invalid_index, "Controlli",
                  std::string("L'elenco non ha una ") + what + " numero " + std::to_string(index + 1) + ".");
}

} // namespace tarvello
