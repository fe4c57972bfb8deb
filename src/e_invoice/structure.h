#pragma once

#include "e_invoice/alphabet.h"
#include "e_invoice/document.h"

#include <concepts>
#include <cstddef>
#include <optional>
#include <string_view>
#include <type_traits>
#include <vector>

/// The structure of the electronic invoice, told once: which elements there are, in which order, of which
/// type. A visitor that goes through it writes a document, reads one, or looks whether it keeps to its types.
/// For each element a visitor gets one call:
///
///     text(name, string, type)            a text that must be there
///     optional_text(name, string, type)   one that may be empty: then the element is left out
///     texts(name, strings, type)          any number of them
///     amount(name, Cents or optional), rate(name, Rate), date(name, Date or optional), number(name, int)
///     element(name, child, or optional or vector of it)
namespace tarvello::e_invoice {

/// The namespace of the root; every other element has none.
inline constexpr const char* invoice_namespace =
    "http://ivaservizi.agenziaentrate.gov.it/docs/xsd/fatture/v1.2";

/// What a text element may hold.
struct TextType {
    std::size_t least = 1; ///< characters
    std::size_t most = 1;
    std::optional<Alphabet> alphabet =
        std::nullopt; ///< texts of people; none for codes, which are never changed
    bool (*fits)(std::string_view text) = nullptr; ///< what else must hold
    const char* words = "";                        ///< and how that is said: "deve essere di 5 cifre"
};

namespace types {
constexpr TextType latin(std::size_t most) { return {.most = most, .alphabet = Alphabet::latin}; }
constexpr TextType ascii(std::size_t most, std::size_t least = 1) {
    return {.least = least, .most = most, .alphabet = Alphabet::ascii};
}
extern const TextType versione;
extern const TextType country;
extern const TextType id_code;
extern const TextType fiscal_code;
extern const TextType recipient;
extern const TextType certified_mail;
extern const TextType regime;
extern const TextType postal_code;
extern const TextType province;
extern const TextType contact_number;
extern const TextType contact_mail;
extern const TextType partners;
extern const TextType liquidation;
extern const TextType document_kind;
extern const TextType currency;
extern const TextType withholding_kind;
extern const TextType withholding_reason;
extern const TextType yes;
extern const TextType fund;
extern const TextType nature;
extern const TextType due;
extern const TextType payment_term;
extern const TextType payment_way;
extern const TextType iban;
extern const TextType bank_code;
} // namespace types

/// A document's type, constant or not.
template <typename Part, typename Type>
concept Is = std::same_as<std::remove_const_t<Part>, Type>;

void describe(auto& v, Is<IdFiscaleType> auto& d) {
    v.text("IdPaese", d.IdPaese, types::country);
    v.text("IdCodice", d.IdCodice, types::id_code);
}

void describe(auto& v, Is<DatiTrasmissioneType> auto& d) {
    v.element("IdTrasmittente", d.IdTrasmittente);
    v.text("ProgressivoInvio", d.ProgressivoInvio, types::ascii(10));
    v.text("FormatoTrasmissione", d.FormatoTrasmissione, types::versione);
    v.text("CodiceDestinatario", d.CodiceDestinatario, types::recipient);
    v.optional_text("PECDestinatario", d.PECDestinatario, types::certified_mail);
}

void describe(auto& v, Is<AnagraficaType> auto& d) {
    v.optional_text("Denominazione", d.Denominazione, types::latin(80));
    v.optional_text("Nome", d.Nome, types::latin(60));
    v.optional_text("Cognome", d.Cognome, types::latin(60));
    v.optional_text("Titolo", d.Titolo, types::ascii(10, 2));
}

void describe(auto& v, Is<IndirizzoType> auto& d) {
    v.text("Indirizzo", d.Indirizzo, types::latin(60));
    v.text("CAP", d.CAP, types::postal_code);
    v.text("Comune", d.Comune, types::latin(60));
    v.optional_text("Provincia", d.Provincia, types::province);
    v.text("Nazione", d.Nazione, types::country);
}

void describe(auto& v, Is<DatiAnagraficiCedenteType> auto& d) {
    v.element("IdFiscaleIVA", d.IdFiscaleIVA);
    v.optional_text("CodiceFiscale", d.CodiceFiscale, types::fiscal_code);
    v.element("Anagrafica", d.Anagrafica);
    v.optional_text("AlboProfessionale", d.AlboProfessionale, types::latin(60));
    v.optional_text("ProvinciaAlbo", d.ProvinciaAlbo, types::province);
    v.optional_text("NumeroIscrizioneAlbo", d.NumeroIscrizioneAlbo, types::ascii(60));
    v.date("DataIscrizioneAlbo", d.DataIscrizioneAlbo);
    v.text("RegimeFiscale", d.RegimeFiscale, types::regime);
}

void describe(auto& v, Is<IscrizioneREAType> auto& d) {
    v.text("Ufficio", d.Ufficio, types::province);
    v.text("NumeroREA", d.NumeroREA, types::ascii(20));
    v.amount("CapitaleSociale", d.CapitaleSociale);
    v.optional_text("SocioUnico", d.SocioUnico, types::partners);
    v.text("StatoLiquidazione", d.StatoLiquidazione, types::liquidation);
}

void describe(auto& v, Is<ContattiType> auto& d) {
    v.optional_text("Telefono", d.Telefono, types::contact_number);
    v.optional_text("Fax", d.Fax, types::contact_number);
    v.optional_text("Email", d.Email, types::contact_mail);
}

void describe(auto& v, Is<CedentePrestatoreType> auto& d) {
    v.element("DatiAnagrafici", d.DatiAnagrafici);
    v.element("Sede", d.Sede);
    v.element("IscrizioneREA", d.IscrizioneREA);
    v.element("Contatti", d.Contatti);
}

void describe(auto& v, Is<DatiAnagraficiCessionarioType> auto& d) {
    v.element("IdFiscaleIVA", d.IdFiscaleIVA);
    v.optional_text("CodiceFiscale", d.CodiceFiscale, types::fiscal_code);
    v.element("Anagrafica", d.Anagrafica);
}

void describe(auto& v, Is<CessionarioCommittenteType> auto& d) {
    v.element("DatiAnagrafici", d.DatiAnagrafici);
    v.element("Sede", d.Sede);
}

void describe(auto& v, Is<FatturaElettronicaHeaderType> auto& d) {
    v.element("DatiTrasmissione", d.DatiTrasmissione);
    v.element("CedentePrestatore", d.CedentePrestatore);
    v.element("CessionarioCommittente", d.CessionarioCommittente);
}

void describe(auto& v, Is<DatiRitenutaType> auto& d) {
    v.text("TipoRitenuta", d.TipoRitenuta, types::withholding_kind);
    v.amount("ImportoRitenuta", d.ImportoRitenuta);
    v.rate("AliquotaRitenuta", d.AliquotaRitenuta);
    v.text("CausalePagamento", d.CausalePagamento, types::withholding_reason);
}

void describe(auto& v, Is<DatiBolloType> auto& d) {
    v.text("BolloVirtuale", d.BolloVirtuale, types::yes);
    v.amount("ImportoBollo", d.ImportoBollo);
}

void describe(auto& v, Is<DatiCassaPrevidenzialeType> auto& d) {
    v.text("TipoCassa", d.TipoCassa, types::fund);
    v.rate("AlCassa", d.AlCassa);
    v.amount("ImportoContributoCassa", d.ImportoContributoCassa);
    v.amount("ImponibileCassa", d.ImponibileCassa);
    v.rate("AliquotaIVA", d.AliquotaIVA);
    v.optional_text("Ritenuta", d.Ritenuta, types::yes);
    v.optional_text("Natura", d.Natura, types::nature);
}

void describe(auto& v, Is<DatiGeneraliDocumentoType> auto& d) {
    v.text("TipoDocumento", d.TipoDocumento, types::document_kind);
    v.text("Divisa", d.Divisa, types::currency);
    v.date("Data", d.Data);
    v.text("Numero", d.Numero, types::ascii(20));
    v.element("DatiRitenuta", d.DatiRitenuta);
    v.element("DatiBollo", d.DatiBollo);
    v.element("DatiCassaPrevidenziale", d.DatiCassaPrevidenziale);
    v.amount("ImportoTotaleDocumento", d.ImportoTotaleDocumento);
    v.texts("Causale", d.Causale, types::latin(200));
}

void describe(auto& v, Is<DatiDocumentiCorrelatiType> auto& d) {
    v.text("IdDocumento", d.IdDocumento, types::ascii(20));
    v.date("Data", d.Data);
    v.optional_text("NumItem", d.NumItem, types::ascii(20));
    v.optional_text("CodiceCommessaConvenzione", d.CodiceCommessaConvenzione, types::latin(100));
    v.optional_text("CodiceCUP", d.CodiceCUP, types::ascii(15));
    v.optional_text("CodiceCIG", d.CodiceCIG, types::ascii(15));
}

void describe(auto& v, Is<DatiGeneraliType> auto& d) {
    v.element("DatiGeneraliDocumento", d.DatiGeneraliDocumento);
    v.element("DatiOrdineAcquisto", d.DatiOrdineAcquisto);
    v.element("DatiContratto", d.DatiContratto);
    v.element("DatiConvenzione", d.DatiConvenzione);
    v.element("DatiFattureCollegate", d.DatiFattureCollegate);
}

void describe(auto& v, Is<AltriDatiGestionaliType> auto& d) {
    v.text("TipoDato", d.TipoDato, types::ascii(10));
    v.optional_text("RiferimentoTesto", d.RiferimentoTesto, types::latin(60));
    v.date("RiferimentoData", d.RiferimentoData);
}

void describe(auto& v, Is<DettaglioLineeType> auto& d) {
    v.number("NumeroLinea", d.NumeroLinea);
    v.text("Descrizione", d.Descrizione, types::latin(1000));
    v.amount("PrezzoUnitario", d.PrezzoUnitario);
    v.amount("PrezzoTotale", d.PrezzoTotale);
    v.rate("AliquotaIVA", d.AliquotaIVA);
    v.optional_text("Ritenuta", d.Ritenuta, types::yes);
    v.optional_text("Natura", d.Natura, types::nature);
    v.element("AltriDatiGestionali", d.AltriDatiGestionali);
}

void describe(auto& v, Is<DatiRiepilogoType> auto& d) {
    v.rate("AliquotaIVA", d.AliquotaIVA);
    v.optional_text("Natura", d.Natura, types::nature);
    v.amount("ImponibileImporto", d.ImponibileImporto);
    v.amount("Imposta", d.Imposta);
    v.optional_text("EsigibilitaIVA", d.EsigibilitaIVA, types::due);
    v.optional_text("RiferimentoNormativo", d.RiferimentoNormativo, types::latin(100));
}

void describe(auto& v, Is<DatiBeniServiziType> auto& d) {
    v.element("DettaglioLinee", d.DettaglioLinee);
    v.element("DatiRiepilogo", d.DatiRiepilogo);
}

void describe(auto& v, Is<DettaglioPagamentoType> auto& d) {
    v.text("ModalitaPagamento", d.ModalitaPagamento, types::payment_way);
    v.amount("ImportoPagamento", d.ImportoPagamento);
    v.optional_text("IstitutoFinanziario", d.IstitutoFinanziario, types::latin(80));
    v.optional_text("IBAN", d.IBAN, types::iban);
    v.optional_text("ABI", d.ABI, types::bank_code);
    v.optional_text("CAB", d.CAB, types::bank_code);
}

void describe(auto& v, Is<DatiPagamentoType> auto& d) {
    v.text("CondizioniPagamento", d.CondizioniPagamento, types::payment_term);
    v.element("DettaglioPagamento", d.DettaglioPagamento);
}

void describe(auto& v, Is<FatturaElettronicaBodyType> auto& d) {
    v.element("DatiGenerali", d.DatiGenerali);
    v.element("DatiBeniServizi", d.DatiBeniServizi);
    v.element("DatiPagamento", d.DatiPagamento);
}

/// The root itself has an attribute, versione, which its visitor deals with.
void describe(auto& v, Is<FatturaElettronicaType> auto& d) {
    v.element("FatturaElettronicaHeader", d.FatturaElettronicaHeader);
    v.element("FatturaElettronicaBody", d.FatturaElettronicaBody);
}

/// What a visitor of a document that is there does alike: goes into the parts. The visitor itself adds
/// `enter(name)` and `leave()`, and the calls for texts, amounts, rates, dates and numbers.
template <typename Visitor>
class Walk {
public:
    template <typename Part>
    void element(const char* name, Part& part) {
        auto& visitor = static_cast<Visitor&>(*this);
        visitor.enter(name);
        describe(visitor, part);
        visitor.leave();
    }
    template <typename Part>
    void element(const char* name, std::optional<Part>& part) {
        if (part) element(name, *part);
    }
    template <typename Part>
    void element(const char* name, const std::optional<Part>& part) {
        if (part) element(name, *part);
    }
    template <typename Part>
    void element(const char* name, std::vector<Part>& parts) {
        for (Part& part : parts) element(name, part);
    }
    template <typename Part>
    void element(const char* name, const std::vector<Part>& parts) {
        for (const Part& part : parts) element(name, part);
    }
};

} // namespace tarvello::e_invoice
