#pragma once

#include <array>
#include <initializer_list>

namespace tarvello {

class ComboBox;
class Program;
class TextBox;

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

/// A list of rates to choose from.
struct RateList {
    ComboBox& combo;
    const char* column;          ///< of Fatture, where invoices keep theirs
    const TextBox& default_rate; ///< as the preferences have it
};
/// The rates that the user works with come behind those that a list has from the start: the one of the
/// preferences, then those of the newest 50 invoices. Without a database there are only the former.
void add_rates_in_use(Program& program, std::initializer_list<RateList> lists);

/// True if a surcharge of 4% enters the base of the withholding: as the preferences were last saved, whatever
/// their window shows at the moment. It shows the saved state from now on.
bool rivalsa_enters_ritenuta(Program& program);

} // namespace tarvello
