#include "e_invoice/conformity.h"

#include "e_invoice/structure.h"
#include "text/letter_case.h"
#include "text/utf8.h"

#include <string>

namespace tarvello::e_invoice {
namespace {

struct Origin {
    std::string_view path; ///< a part of an element's path
    Field field;
};

/// Which field an element comes from: the first entry whose path is in the element's.
constexpr Origin origins[] = {
    {"/IdTrasmittente/", Field::issuer_codice_fiscale},
    {"/ProgressivoInvio/", Field::nome_file},
    {"/CodiceDestinatario/", Field::codice_destinatario},
    {"/PECDestinatario/", Field::pec},
    {"/CedentePrestatore/DatiAnagrafici/IdFiscaleIVA/", Field::issuer_partita_iva},
    {"/CedentePrestatore/DatiAnagrafici/CodiceFiscale/", Field::issuer_codice_fiscale},
    {"/CedentePrestatore/DatiAnagrafici/Anagrafica/Titolo/", Field::issuer_title},
    {"/CedentePrestatore/DatiAnagrafici/Anagrafica/", Field::issuer_name},
    {"/CedentePrestatore/DatiAnagrafici/RegimeFiscale/", Field::issuer_regime},
    {"/CedentePrestatore/DatiAnagrafici/", Field::issuer_albo},
    {"/CedentePrestatore/Sede/CAP/", Field::issuer_cap},
    {"/CedentePrestatore/Sede/Comune/", Field::issuer_comune},
    {"/CedentePrestatore/Sede/Provincia/", Field::issuer_provincia},
    {"/CedentePrestatore/Sede/", Field::issuer_indirizzo},
    {"/IscrizioneREA/", Field::issuer_rea},
    {"/Contatti/Telefono/", Field::issuer_telefono},
    {"/Contatti/Fax/", Field::issuer_fax},
    {"/Contatti/", Field::issuer_email},
    {"/CessionarioCommittente/DatiAnagrafici/IdFiscaleIVA/IdPaese/", Field::nazione},
    {"/CessionarioCommittente/DatiAnagrafici/IdFiscaleIVA/", Field::customer_partita_iva},
    {"/CessionarioCommittente/DatiAnagrafici/CodiceFiscale/", Field::customer_codice_fiscale},
    {"/CessionarioCommittente/DatiAnagrafici/Anagrafica/Nome/", Field::customer_nome},
    {"/CessionarioCommittente/DatiAnagrafici/", Field::customer_name},
    {"/CessionarioCommittente/Sede/CAP/", Field::customer_cap},
    {"/CessionarioCommittente/Sede/Comune/", Field::customer_citta},
    {"/CessionarioCommittente/Sede/Provincia/", Field::customer_provincia},
    {"/CessionarioCommittente/Sede/Nazione/", Field::nazione},
    {"/CessionarioCommittente/Sede/", Field::customer_indirizzo},
    {"/TipoDocumento/", Field::tipo_documento},
    {"/DatiGeneraliDocumento/Data/", Field::data},
    {"/Numero/", Field::numero},
    {"/TipoRitenuta/", Field::tipo_ritenuta},
    {"/ImportoRitenuta/", Field::importo_ritenuta},
    {"/AliquotaRitenuta/", Field::percentuale_ritenuta},
    {"/CausalePagamento/", Field::causale_pagamento},
    {"/DatiBollo/", Field::bollo},
    {"/TipoCassa/", Field::tipo_cassa},
    {"/AlCassa/", Field::percentuale_rivalsa},
    {"/ImportoContributoCassa/", Field::importo_rivalsa},
    {"/ImponibileCassa/", Field::imponibile},
    {"/ImportoTotaleDocumento/", Field::totale},
    {"/Causale/", Field::causale},
    {"/DatiFattureCollegate/", Field::fattura_collegata},
    {"/IdDocumento/", Field::riferimenti},
    {"/DatiOrdineAcquisto/", Field::riferimenti},
    {"/DatiContratto/", Field::riferimenti},
    {"/DatiConvenzione/", Field::riferimenti},
    {"/AltriDatiGestionali/", Field::dichiarazione_intento},
    {"/Descrizione/", Field::prestazione},
    {"/Prezzo", Field::importo},
    {"/AliquotaIVA/", Field::aliquota_iva},
    {"/Natura/", Field::natura},
    {"/ImponibileImporto/", Field::imponibile},
    {"/Imposta/", Field::imposta_iva},
    {"/EsigibilitaIVA/", Field::esigibilita_iva},
    {"/RiferimentoNormativo/", Field::riferimento_normativo},
    {"/ImportoPagamento/", Field::importo_netto},
    {"/IstitutoFinanziario/", Field::issuer_banca},
    {"/DettaglioPagamento/", Field::issuer_iban},
    {"/DettaglioLinee/", Field::prestazione},
};

/// Keeps the path of the element that is being looked at.
template <typename Visitor>
class PathWalk : public Walk<Visitor> {
public:
    void enter(const char* name) {
        path_ += name;
        path_ += '/';
        if (std::string_view(name) == "DettaglioLinee") ++line_;
    }
    void leave() { path_.resize(path_.rfind('/', path_.size() - 2) + 1); }

protected:
    /// A finding for an element here; the words begin with the field's name.
    Finding finding(Severity severity, const char* name, const std::string& words) const {
        const std::string path = path_ + name + "/";
        Finding finding{severity, severity == Severity::refusal ? "00200" : "", Field::nome_file, 0, {}};
        for (const Origin& origin : origins) {
            if (path.find(origin.path) == std::string::npos) continue;
            finding.field = origin.field;
            break;
        }
        if (path.find("/DettaglioLinee/") != std::string::npos) finding.line = line_;
        finding.words = name_of(finding.field) + ": " + words;
        return finding;
    }

private:
    static std::string name_of(Field field) {
        const std::string words(facts_of(field).words);
        return upper_case(utf8::left(words, 1)) + utf8::mid(words, 1);
    }

    std::string path_ = "/";
    int line_ = 0;
};

class Conformer : public PathWalk<Conformer> {
public:
    std::vector<Finding> findings;

    void text(const char* name, std::string& text, const TextType& type) {
        if (!type.alphabet) return;
        const Converted converted = to_alphabet(text, *type.alphabet, type.most);
        text = converted.text;
        if (converted.lost) {
            findings.push_back(
                finding(Severity::warning, name,
                        "alcuni caratteri non sono ammessi nella fattura elettronica; si leggerà \"" +
                            shortened(text) + "\"."));
        }
        if (converted.cut) {
            findings.push_back(finding(Severity::warning, name,
                                       "il testo è più lungo di " + std::to_string(type.most) +
                                           " caratteri e finirà con \"" + ending(text) + "\"."));
        }
    }
    void optional_text(const char* name, std::string& value, const TextType& type) {
        text(name, value, type);
    }
    void texts(const char* name, std::vector<std::string>& values, const TextType& type) {
        for (std::string& value : values) text(name, value, type);
    }
    void amount(const char*, const auto&) {}
    void rate(const char*, Rate) {}
    void date(const char*, const auto&) {}
    void number(const char*, int) {}

private:
    static constexpr std::size_t quoted = 60;
    static std::string shortened(const std::string& text) {
        return utf8::length(text) > quoted ? utf8::left(text, quoted) + "..." : text;
    }
    static std::string ending(const std::string& text) {
        const std::size_t length = utf8::length(text);
        return length > quoted ? "..." + utf8::mid(text, length - quoted) : text;
    }
};

class Inspector : public PathWalk<Inspector> {
public:
    std::vector<Finding> findings;

    void text(const char* name, const std::string& text, const TextType& type) {
        if (text.empty()) return fault(name, "manca, ed è obbligatorio.");
        const std::size_t length = utf8::length(text);
        if (length > type.most || length < type.least || (type.fits && !type.fits(text))) {
            fault(name, "\"" + text + "\" " + words_of(type) + ".");
        } else if (type.alphabet && to_alphabet(text, *type.alphabet, type.most).text != text) {
            fault(name, "\"" + text + "\" ha caratteri non ammessi.");
        }
    }
    void optional_text(const char* name, const std::string& value, const TextType& type) {
        if (!value.empty()) text(name, value, type);
    }
    void texts(const char* name, const std::vector<std::string>& values, const TextType& type) {
        for (const std::string& value : values) text(name, value, type);
    }
    void amount(const char* name, Cents amount) {
        constexpr Cents beyond = 10'000'000'000'000;
        if (amount <= -beyond || amount >= beyond) {
            fault(name, shown_amount(amount) + " supera le undici cifre ammesse.");
        }
    }
    void amount(const char* name, const std::optional<Cents>& value) {
        if (value) amount(name, *value);
    }
    void rate(const char* name, Rate rate) {
        constexpr Rate whole = 10'000;
        if (rate < 0 || rate > whole) fault(name, shown_rate(rate) + " non è una percentuale da 0 a 100.");
    }
    void date(const char* name, const Date& date) {
        constexpr Date first = make_date(1970, 1, 1);
        constexpr Date last = make_date(9999, 12, 31);
        if (!date.ok() || date < first || date > last) fault(name, "la data non è valida.");
    }
    void date(const char* name, const std::optional<Date>& value) {
        if (value) date(name, *value);
    }
    void number(const char* name, int number) {
        if (number < 1 || number > 9999) fault(name, "il numero di linea non è valido.");
    }

private:
    void fault(const char* name, const std::string& words) {
        add_finding(findings, finding(Severity::refusal, name, words));
    }
    static std::string words_of(const TextType& type) {
        return *type.words != 0 ? type.words
                                : "deve avere almeno " + std::to_string(type.least) + " caratteri";
    }
};

} // namespace

std::vector<Finding> conform(FatturaElettronicaType& document) {
    Conformer conformer;
    describe(conformer, document);
    return std::move(conformer.findings);
}

std::vector<Finding> faults_of_structure(const FatturaElettronicaType& document) {
    Inspector inspector;
    describe(inspector, document);
    return std::move(inspector.findings);
}

} // namespace tarvello::e_invoice
