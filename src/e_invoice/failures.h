#pragma once

#include "failure.h"

#include <string>
#include <utility>

namespace tarvello::e_invoice {

/// A file from outside that cannot be read, or is not what was asked for.
/// @param words  what is wrong and what to do, for the user
inline Failure unreadable(std::string words) {
    return Failure(failure_number::type_mismatch, "Fattura elettronica", std::move(words));
}

} // namespace tarvello::e_invoice
