#pragma once

#include "platform/twips.h"

#include <array>
#include <cstddef>
#include <span>

namespace tarvello {

class ListView;
class Recordset;

/// The list of customers, as the result window and the picker show it.
namespace customer_list {

struct Column {
    const char* header;
    const char* key;
    const char* source; ///< column of Clienti
    int width = twips_per_inch;
};

/// The columns in the order of the list.
inline constexpr std::array<Column, 13> columns{{
    {"n° cliente", "numero", "Numero_Cliente"},
    {"Cognome / Rag. Sociale", "cognome", "Cognome_Ragione_Sociale"},
    {"Nome", "nome", "Nome"},
    {"C.F.", "CF", "Codice_Fiscale"},
    {"P.I.", "PI", "Partita_IVA"},
    {"Indirizzo", "", "Indirizzo"},
    {"CAP", "", "CAP"},
    {"Provincia", "", "Provincia"},
    {"Città", "", "Città"},
    {"Telefono", "", "Telefono"},
    {"Fax", "", "Fax"},
    {"e-mail", "", "email"},
    {"Note", "", "Appunti"},
}};

// The columns, from 0, that the code has to tell from the others.
inline constexpr std::size_t number = 0;
inline constexpr std::size_t surname = 1;
inline constexpr std::size_t name = 2;
inline constexpr std::size_t mail = 11;

/// Gives a list its headers.
void add_headers(ListView& list);

/// Adds a row to the list for each row of the result from the current one on, which is walked to its end. A
/// null gives an empty cell.
/// @param columns  what to read, in the order of the cells; a column that the result lacks gives no cell, so
///                 that the next ones move up
/// @throws Failure if the result is closed or cannot be read
void fill(ListView& list, Recordset& rows, std::span<const Column> columns);

} // namespace customer_list
} // namespace tarvello
