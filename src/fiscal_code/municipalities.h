#pragma once

#include "store/ordered_table.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tarvello {

struct Municipality {
    std::string name;
    std::string province; ///< two letters, EE for a foreign state
    std::string code;     ///< four characters, the fiscal code's name for the place
    bool operator==(const Municipality&) const = default;
};

/// The places that a person can be born in: the municipalities of Italy, of today and of the past, and the
/// foreign states. Their names are unique.
class Municipalities {
public:
    /// The table lies in a database file of its own, which is only read.
    /// @throws Failure if the file is missing or not what it should be
    explicit Municipalities(const std::string& path);

    /// The first place, in the order of the names, whose name is not below this text; letter case counts
    /// nothing.
    /// @throws Failure if the file cannot be read
    std::optional<Municipality> seek(std::string_view text);

private:
    std::unique_ptr<store::OrderedTable> table_;
};

} // namespace tarvello
