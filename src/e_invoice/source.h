#pragma once

#include "e_invoice/document.h"
#include "text/dates.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

/// What an electronic invoice is made of: the stored row, who issues it, who gets it, and what was decided
/// for this one.
namespace tarvello {
class Recordset;
}

namespace tarvello::e_invoice {

/// A row of Fatture, its texts as they are stored; nulls are empty. Members are named after the columns.
struct StoredInvoice {
    static constexpr std::size_t lines = 5;

    int ID = 0;
    std::string Numero_Fattura;
    Date Data_Fattura{};
    std::string Anno;
    int Numero_Cliente = 0;
    std::string Codice_Fiscale, Partita_IVA, Nome, Cognome_Ragione_Sociale, Indirizzo, CAP, Provincia, Citta;
    std::array<std::string, lines> Prestazione, Importo;
    std::string Rivalsa, Percentuale_Rivalsa, Importo_Rivalsa;
    std::string Imponibile, Aliquota_IVA, Imposta_IVA;
    std::string Spese, IVA_Spese, Importo_Spese, Articolo_Esenzione;
    std::string Totale_Fattura;
    std::string Ritenuta, Importo_Ritenuta, Percentuale_Ritenuta, Ritenuta_Su;
    std::string Importo_Netto;
    std::string Check_Pagamento, Pagamento;
};

/// The row on which a result of Fatture stands. @throws Failure if there is none
StoredInvoice read_stored_invoice(const Recordset& row);

enum class NumberForm : std::uint8_t {
    with_year, ///< 7/2026, as the prints have it
    plain,     ///< 7
};

/// Who issues the invoices: the letterhead, and what it does not know.
struct Issuer {
    // The letterhead, by its columns.
    std::string Nome_Azienda, Indirizzo, Telefono, Fax, Codice_Fiscale, Partita_IVA, email;
    std::string Banca, ABI, CAB, CC;

    // A natural person has Nome and Cognome; without them Nome_Azienda is the Denominazione.
    std::string Nome, Cognome, Titolo;
    std::string CAP, Comune, Provincia;
    std::string RegimeFiscale;
    std::string TipoRitenuta, CausalePagamento, TipoCassa;
    std::string TipoDocumento; ///< proposed for every invoice; empty for TD06
    NumberForm number_form = NumberForm::with_year;
    std::string IBAN;             ///< as typed; empty to have it made of ABI, CAB and account
    std::string DescrizioneSpese; ///< of the line of anticipated expenses; empty for the usual words
    std::string AlboProfessionale, ProvinciaAlbo, NumeroIscrizioneAlbo;
    std::optional<Date> DataIscrizioneAlbo;
    IscrizioneREAType IscrizioneREA; ///< of companies; without Ufficio and NumeroREA there is none
};

/// What the register of customers does not know of one.
struct Customer {
    std::string CodiceDestinatario; ///< empty for none: then the certified mail, or the customer's own area
    std::string PECDestinatario;
    std::string Nazione; ///< empty for Italy
    bool public_administration = false;
    bool vat_group = false; ///< a member's own fiscal code is written beside the VAT number of the group
    /// Of a customer abroad: VAT number with its country, IT for one with an Italian number. Without them the
    /// stored Partita_IVA and Nazione count.
    std::string IdPaese, IdCodice;
    std::string Indirizzo, Comune; ///< abroad, where the register's do not fit
};

enum class ReferenceKind : std::uint8_t { none, order, contract, agreement };

/// Whether the payment names the letterhead's bank. The text of the payment on the invoice may have been
/// edited since it was filled in from there.
enum class BankDetails : std::uint8_t {
    if_named, ///< as far as that text still names the bank
    letterhead,
    none,
};

/// What is decided for one invoice. What is empty follows from the rest, where it can.
struct Decisions {
    std::string TipoDocumento;
    std::string Natura;      ///< of an invoice without VAT
    std::string NaturaSpese; ///< of the anticipated expenses
    std::string
        RiferimentoNormativo; ///< words for that of the invoice, and of the expenses; empty for the usual
    std::string RiferimentoNormativoSpese;
    std::string DescrizioneSpese;
    bool bollo = false; ///< the stamp duty is owed
    std::string EsigibilitaIVA;
    std::vector<std::string> Causale;
    ReferenceKind reference_kind = ReferenceKind::none;
    DatiDocumentiCorrelatiType reference;        ///< order, contract or agreement, with CUP and CIG
    DatiDocumentiCorrelatiType FatturaCollegata; ///< the invoice that a credit note takes back
    std::string ProtocolloIntento;               ///< letter of intent: its protocol,
    std::optional<Date> DataIntento;             ///< and the date of its receipt
    BankDetails bank = BankDetails::if_named;
};

} // namespace tarvello::e_invoice
