#pragma once

#include "program/program.h"

#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

namespace tarvello::testing {

/// A form that has a window.
struct FormMaker {
    std::string name;
    /// Makes the form without loading it.
    std::function<std::shared_ptr<Form>(Program&)> make;
};

/// How a test names it in its messages.
inline void PrintTo(const FormMaker& maker, std::ostream* out) { *out << maker.name; }

/// All of them; the list is written by the build from the .ui files.
const std::vector<FormMaker>& all_forms();

} // namespace tarvello::testing
