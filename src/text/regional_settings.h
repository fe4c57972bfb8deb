#pragma once

#include <string>

namespace tarvello {

/// How the user's country writes amounts and dates. The conversions take it as an argument: there is no
/// global locale. A fresh object holds the Italian settings.
struct RegionalSettings {
    std::string currency_symbol = "€";
    /// Where the symbol stands; `blank_beside_symbol` puts a blank between it and the number.
    bool symbol_before = true;
    bool blank_beside_symbol = true;
    /// What stands around everything else of a negative amount: -€ 1,00 or (€ 1,00).
    std::string negative_before = "-";
    std::string negative_behind;
    std::string decimal_separator = ",";
    std::string thousands_separator = ".";

    /// Short form of a date: d, dd, M, MM, yy, yyyy, everything else as it stands.
    std::string short_date = "dd/MM/yyyy";
    /// Long form of a date: the same, and dddd and MMMM for the names of day and month, which are Italian.
    std::string long_date = "dddd d MMMM yyyy";
    /// Long form of a time: H, HH, mm, ss.
    std::string long_time = "HH:mm:ss";
};

} // namespace tarvello
