#include "e_invoice/readable_view.h"

#include "e_invoice/code_lists.h"
#include "e_invoice/xml_reader.h"
#include "text/letter_case.h"
#include "text/utf8.h"

namespace tarvello::e_invoice {
namespace {

std::string capitalized(const std::string& text) {
    return upper_case(utf8::left(text, 1)) + utf8::mid(text, 1);
}

std::string shown_date(const Date& date) { return short_date_text(date, RegionalSettings()); }

/// A section in the making: what is empty gets no row.
class Section {
public:
    explicit Section(std::string title) { section_.title = std::move(title); }

    Section& row(const std::string& label, const std::string& value) {
        if (!value.empty()) section_.rows.push_back({label, value});
        return *this;
    }
    Section& amount(const std::string& label, Cents amount) { return row(label, shown_amount(amount)); }
    Section& columns(std::vector<ViewColumn> columns) {
        section_.columns = std::move(columns);
        return *this;
    }
    void line(std::vector<std::string> cells) { section_.lines.push_back(std::move(cells)); }

    void add_to(ReadableView& view) && {
        if (!section_.rows.empty() || !section_.lines.empty()) view.sections.push_back(std::move(section_));
    }

private:
    ViewSection section_;
};

std::string name_of(const AnagraficaType& name) {
    const std::string whole =
        name.Denominazione.empty() ? name.Nome + " " + name.Cognome : name.Denominazione;
    return name.Titolo.empty() ? whole : name.Titolo + " " + whole;
}

std::string address_of(const IndirizzoType& address) {
    std::string text = address.Indirizzo + " - " + address.CAP + " " + address.Comune;
    if (!address.Provincia.empty()) text += " (" + address.Provincia + ")";
    if (address.Nazione != "IT") {
        const Country* const country = find_code(countries(), address.Nazione);
        text += " - " + (country ? std::string(country->name) : address.Nazione);
    }
    return text;
}

std::string rate_or_nature(Rate rate, const std::string& nature) {
    return rate == 0 && !nature.empty() ? in_words(natures(), nature) : shown_rate(rate);
}

void add_issuer(ReadableView& view, const CedentePrestatoreType& issuer) {
    const DatiAnagraficiCedenteType& person = issuer.DatiAnagrafici;
    Section section("Chi emette la fattura");
    section.row("Nome", name_of(person.Anagrafica))
        .row("Partita IVA", person.IdFiscaleIVA.IdPaese + person.IdFiscaleIVA.IdCodice)
        .row("Codice fiscale", person.CodiceFiscale)
        .row("Sede", address_of(issuer.Sede))
        .row("Regime fiscale", in_words(tax_regimes(), person.RegimeFiscale))
        .row("Albo professionale", person.AlboProfessionale)
        .row("Provincia dell'albo", person.ProvinciaAlbo)
        .row("Numero di iscrizione", person.NumeroIscrizioneAlbo);
    if (person.DataIscrizioneAlbo) section.row("Data di iscrizione", shown_date(*person.DataIscrizioneAlbo));
    if (issuer.IscrizioneREA) {
        section.row("REA", issuer.IscrizioneREA->Ufficio + " " + issuer.IscrizioneREA->NumeroREA);
        if (issuer.IscrizioneREA->CapitaleSociale)
            section.amount("Capitale sociale", *issuer.IscrizioneREA->CapitaleSociale);
    }
    if (issuer.Contatti) {
        section.row("Telefono", issuer.Contatti->Telefono)
            .row("Fax", issuer.Contatti->Fax)
            .row("E-mail", issuer.Contatti->Email);
    }
    std::move(section).add_to(view);
}

void add_customer(ReadableView& view, const CessionarioCommittenteType& customer) {
    const DatiAnagraficiCessionarioType& person = customer.DatiAnagrafici;
    Section section("Cliente");
    section.row("Nome", name_of(person.Anagrafica));
    if (person.IdFiscaleIVA)
        section.row("Partita IVA", person.IdFiscaleIVA->IdPaese + person.IdFiscaleIVA->IdCodice);
    section.row("Codice fiscale", person.CodiceFiscale).row("Sede", address_of(customer.Sede));
    std::move(section).add_to(view);
}

void add_reference(Section& section, const char* what,
                   const std::vector<DatiDocumentiCorrelatiType>& references) {
    for (const DatiDocumentiCorrelatiType& reference : references) {
        std::string text = reference.IdDocumento;
        if (reference.Data) text += " del " + shown_date(*reference.Data);
        section.row(what, text)
            .row("Voce", reference.NumItem)
            .row("Commessa o convenzione", reference.CodiceCommessaConvenzione)
            .row("CUP", reference.CodiceCUP)
            .row("CIG", reference.CodiceCIG);
    }
}

void add_document(ReadableView& view, const DatiGeneraliType& general) {
    const DatiGeneraliDocumentoType& document = general.DatiGeneraliDocumento;
    Section section("Documento");
    section.row("Tipo", capitalized(in_words(document_kinds(), document.TipoDocumento)))
        .row("Numero", document.Numero)
        .row("Data", shown_date(document.Data));
    for (const std::string& reason : document.Causale) section.row("Causale", reason);
    add_reference(section, "Ordine di acquisto", general.DatiOrdineAcquisto);
    add_reference(section, "Contratto", general.DatiContratto);
    add_reference(section, "Convenzione", general.DatiConvenzione);
    add_reference(section, "Fattura collegata", general.DatiFattureCollegate);
    std::move(section).add_to(view);
}

void add_lines(ReadableView& view, const std::vector<DettaglioLineeType>& lines) {
    Section section("Prestazioni");
    section.columns({{"N."}, {"Descrizione"}, {"Importo", true}, {"IVA"}, {"Ritenuta"}});
    for (const DettaglioLineeType& line : lines) {
        std::string description = line.Descrizione;
        for (const AltriDatiGestionaliType& data : line.AltriDatiGestionali) {
            description += " - " + data.TipoDato + " " + data.RiferimentoTesto;
            if (data.RiferimentoData) description += " del " + shown_date(*data.RiferimentoData);
        }
        section.line({std::to_string(line.NumeroLinea), description, shown_amount(line.PrezzoTotale),
                      rate_or_nature(line.AliquotaIVA, line.Natura), line.Ritenuta.empty() ? "" : "Sì"});
    }
    std::move(section).add_to(view);
}

void add_funds(ReadableView& view, const std::vector<DatiCassaPrevidenzialeType>& list) {
    Section section("Cassa previdenziale");
    section.columns(
        {{"Cassa"}, {"Aliquota", true}, {"Su", true}, {"Contributo", true}, {"IVA"}, {"Ritenuta"}});
    for (const DatiCassaPrevidenzialeType& fund : list) {
        section.line({in_words(funds(), fund.TipoCassa), shown_rate(fund.AlCassa),
                      fund.ImponibileCassa ? shown_amount(*fund.ImponibileCassa) : "",
                      shown_amount(fund.ImportoContributoCassa),
                      rate_or_nature(fund.AliquotaIVA, fund.Natura), fund.Ritenuta.empty() ? "" : "Sì"});
    }
    std::move(section).add_to(view);
}

void add_summaries(ReadableView& view, const std::vector<DatiRiepilogoType>& summaries) {
    Section section("Riepilogo IVA");
    section.columns({{"IVA"}, {"Imponibile", true}, {"Imposta", true}, {"Esigibilità"}, {"Norma"}});
    for (const DatiRiepilogoType& summary : summaries) {
        section.line({rate_or_nature(summary.AliquotaIVA, summary.Natura),
                      shown_amount(summary.ImponibileImporto), shown_amount(summary.Imposta),
                      in_words(vat_due(), summary.EsigibilitaIVA), summary.RiferimentoNormativo});
    }
    std::move(section).add_to(view);
}

void add_totals(ReadableView& view, const DatiGeneraliDocumentoType& document) {
    Section section("Totali");
    if (document.ImportoTotaleDocumento)
        section.amount("Totale del documento", *document.ImportoTotaleDocumento);
    for (const DatiRitenutaType& withholding : document.DatiRitenuta) {
        section.amount("Ritenuta d'acconto " + shown_rate(withholding.AliquotaRitenuta),
                       withholding.ImportoRitenuta);
        section.row("Tipo di ritenuta", in_words(withholding_kinds(), withholding.TipoRitenuta));
        section.row("Causale della ritenuta", in_words(withholding_reasons(), withholding.CausalePagamento));
    }
    if (document.DatiBollo)
        section.amount("Imposta di bollo virtuale", document.DatiBollo->ImportoBollo.value_or(0));
    std::move(section).add_to(view);
}

void add_payments(ReadableView& view, const std::vector<DatiPagamentoType>& payments) {
    Section section("Pagamento");
    for (const DatiPagamentoType& payment : payments) {
        section.row("Condizioni", in_words(payment_terms(), payment.CondizioniPagamento));
        for (const DettaglioPagamentoType& way : payment.DettaglioPagamento) {
            section.row("Modalità", in_words(payment_ways(), way.ModalitaPagamento))
                .amount("Importo da pagare", way.ImportoPagamento)
                .row("Banca", way.IstitutoFinanziario)
                .row("IBAN", way.IBAN)
                .row("ABI", way.ABI)
                .row("CAB", way.CAB);
        }
    }
    std::move(section).add_to(view);
}

void add_sending(ReadableView& view, const DatiTrasmissioneType& sending) {
    Section section("Trasmissione");
    section.row("Trasmessa da", sending.IdTrasmittente.IdPaese + sending.IdTrasmittente.IdCodice)
        .row("Progressivo", sending.ProgressivoInvio)
        .row("Formato", sending.FormatoTrasmissione)
        .row("Codice destinatario", sending.CodiceDestinatario)
        .row("PEC", sending.PECDestinatario);
    std::move(section).add_to(view);
}

void add_cell(std::string& html, const char* kind, const std::string& text, bool right) {
    html += std::string("<") + kind + (right ? " align=\"right\">" : " align=\"left\">") + html_text(text) +
            "</" + kind + ">";
}

} // namespace

ReadableView readable_view(std::string_view xml) {
    const FatturaElettronicaType document = read_document(xml);
    const FatturaElettronicaHeaderType& header = document.FatturaElettronicaHeader;
    const FatturaElettronicaBodyType& body = document.FatturaElettronicaBody;
    const DatiGeneraliDocumentoType& general = body.DatiGenerali.DatiGeneraliDocumento;
    ReadableView view;
    view.title = capitalized(in_words(document_kinds(), general.TipoDocumento)) + " n. " + general.Numero +
                 " del " + shown_date(general.Data);
    add_issuer(view, header.CedentePrestatore);
    add_customer(view, header.CessionarioCommittente);
    add_document(view, body.DatiGenerali);
    add_lines(view, body.DatiBeniServizi.DettaglioLinee);
    add_funds(view, general.DatiCassaPrevidenziale);
    add_summaries(view, body.DatiBeniServizi.DatiRiepilogo);
    add_totals(view, general);
    add_payments(view, body.DatiPagamento);
    add_sending(view, header.DatiTrasmissione);
    return view;
}

std::string html_text(std::string_view text) {
    std::string html;
    for (const char c : text) {
        switch (c) {
        case '&':
            html += "&amp;";
            break;
        case '<':
            html += "&lt;";
            break;
        case '>':
            html += "&gt;";
            break;
        default:
            html += c;
        }
    }
    return html;
}

std::string to_html(const ReadableView& view) {
    std::string html = "<h2>" + html_text(view.title) + "</h2>\n";
    for (const ViewSection& section : view.sections) {
        html += "<h3>" + html_text(section.title) + "</h3>\n";
        if (!section.rows.empty()) html += "<table cellpadding=\"2\">\n";
        for (const ViewRow& row : section.rows) {
            html += "<tr>";
            add_cell(html, "th", row.label, false);
            add_cell(html, "td", row.value, false);
            html += "</tr>\n";
        }
        if (!section.rows.empty()) html += "</table>\n";
        if (section.lines.empty()) continue;
        html += "<table width=\"98%\" cellpadding=\"4\">\n<tr>";
        for (const ViewColumn& column : section.columns) add_cell(html, "th", column.header, column.amount);
        html += "</tr>\n";
        for (const std::vector<std::string>& line : section.lines) {
            html += "<tr>";
            for (std::size_t i = 0; i < line.size(); ++i)
                add_cell(html, "td", line[i], section.columns[i].amount);
            html += "</tr>\n";
        }
        html += "</table>\n";
    }
    return html;
}

} // namespace tarvello::e_invoice
