#pragma once

/// What more than one room of forms says in the same words.
namespace tarvello::messages {

inline constexpr const char* no_database = "Nessun database connesso.";
inline constexpr const char* no_mail_address = "Indirizzo e-mail assente.";
inline constexpr const char* no_surname = "Inserire il Cognome o Ragione Sociale del Cliente.";
inline constexpr const char* no_cap = "Inserire il CAP.";
inline constexpr const char* no_search_field = "Selezionare il campo di ricerca";
inline constexpr const char* no_search_text =
    "Inserire il testo da cercare o selezionare una voce dall'elenco.";
/// Tool tip of the buttons that open the calculator.
inline constexpr const char* fiscal_code_tip = "Calcola il Codice Fiscale";

} // namespace tarvello::messages
