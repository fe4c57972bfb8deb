#pragma once

#include <cstddef>

namespace tarvello {

class Program;

/// Where the columns of a customer stand among the boxes of frmClienti.
namespace customer_box {
inline constexpr std::size_t codice_fiscale = 0;
inline constexpr std::size_t nome = 1;
inline constexpr std::size_t indirizzo = 2;
inline constexpr std::size_t cap = 3;
inline constexpr std::size_t provincia = 4;
inline constexpr std::size_t citta = 5;
inline constexpr std::size_t telefono = 6;
inline constexpr std::size_t fax = 7;
inline constexpr std::size_t email = 8;
inline constexpr std::size_t appunti = 9;
inline constexpr std::size_t numero = 10;
inline constexpr std::size_t cognome = 11;
inline constexpr std::size_t partita_iva = 12;
} // namespace customer_box

/// Its first row is the customer with the highest number, which is the newest one.
inline constexpr const char* highest_customer = "SELECT * FROM Clienti ORDER BY Numero_Cliente DESC";

/// Copies the current row of rsClienti into frmClienti, which is made if it is not there. A column that
/// cannot be read, a null or one behind the end of the result, leaves its box with what it held.
void CaricaCliente(Program& program);

} // namespace tarvello
