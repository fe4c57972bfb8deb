#pragma once

#include <array>
#include <span>

namespace tarvello {

class ListView;
class Recordset;

/// The list of customers, as the result window and the picker show it.
namespace customer_list {

/// The columns of Clienti in the order of the list.
inline constexpr std::array columns{"Numero_Cliente",
                                    "Cognome_Ragione_Sociale",
                                    "Nome",
                                    "Codice_Fiscale",
                                    "Partita_IVA",
                                    "Indirizzo",
                                    "CAP",
                                    "Provincia",
                                    "Città",
                                    "Telefono",
                                    "Fax",
                                    "email",
                                    "Appunti"};

/// Gives a list its thirteen headers.
void add_headers(ListView& list);

/// Adds a row to the list for each row of the result from the current one on, which is walked to its end. A
/// null gives an empty cell.
/// @param columns  the columns to read, in the order of the cells; one that the result lacks gives no cell,
/// so
///                 that the next ones move up
/// @throws Failure if the result is closed or cannot be read
void fill(ListView& list, Recordset& rows, std::span<const char* const> columns);

} // namespace customer_list
} // namespace tarvello
