#pragma once

#include <array>

namespace tarvello {

class Program;

/// The rates to choose from, in the preferences and on an invoice; all of them are percentages.
namespace rates {
inline constexpr std::array rivalsa{"4", "2"};
/// In the place of a VAT rate: none is charged.
inline constexpr const char* exempt = "Esente";
inline constexpr std::array iva{"20", "10", exempt};
inline constexpr std::array ritenuta{"20", "10"};
/// Shares of the taxable base on which the withholding is charged.
inline constexpr std::array ritenuta_shares{"50", "75", "100"};
} // namespace rates

/// True if a surcharge of 4% enters the base of the withholding: as the preferences were last saved, whatever
/// their window shows at the moment. It shows the saved state from now on.
bool rivalsa_enters_ritenuta(Program& program);

} // namespace tarvello
