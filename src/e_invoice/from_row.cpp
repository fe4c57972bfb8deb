#include "e_invoice/from_row.h"

#include "e_invoice/alphabet.h"
#include "e_invoice/check_digits.h"
#include "e_invoice/code_lists.h"
#include "e_invoice/conformity.h"
#include "e_invoice/parties.h"
#include "e_invoice/row_amounts.h"
#include "e_invoice/structure.h"
#include "text/letter_case.h"
#include "text/numbers.h"

#include <algorithm>
#include <cmath>

namespace tarvello::e_invoice {
namespace {

constexpr const char* usual_service = "Prestazione professionale";
constexpr const char* usual_expenses = "Spese anticipate in nome e per conto del cliente";

std::string first_not_blank(std::initializer_list<std::string_view> texts) {
    for (const std::string_view text : texts) {
        if (!is_blank(text)) return std::string(text);
    }
    return {};
}

/// The body of the document, part by part.
class Body {
public:
    Body(const StoredInvoice& invoice, const Issuer& issuer, const Customer& customer,
         const Decisions& decisions, const RegionalSettings& regional, Draft& draft)
        : invoice_(invoice), issuer_(issuer), customer_(customer), decisions_(decisions), draft_(draft),
          amounts_(read_row(invoice, kind_of(issuer, decisions) == "TD04", regional, draft.findings)),
          nature_(amounts_.rate == 0 ? nature_of(issuer, decisions) : ""),
          nature_of_expenses_(nature_of_expenses(invoice, decisions)) {}

    void write() {
        write_general();
        write_lines();
        write_summaries();
        write_payment();
    }

private:
    FatturaElettronicaBodyType& body() { return draft_.document.FatturaElettronicaBody; }

    void write_general() {
        DatiGeneraliDocumentoType& general = body().DatiGenerali.DatiGeneraliDocumento;
        general.TipoDocumento = kind_of(issuer_, decisions_);
        general.Divisa = "EUR";
        general.Data = invoice_.Data_Fattura;
        general.Numero = number();
        if (amounts_.withholding != 0) {
            general.DatiRitenuta.push_back({issuer_.TipoRitenuta, amounts_.withholding,
                                            amounts_.withholding_rate, issuer_.CausalePagamento});
        }
        if (decisions_.bollo) general.DatiBollo = DatiBolloType{"SI", stamp_duty};
        if (amounts_.surcharge != 0) general.DatiCassaPrevidenziale.push_back(fund());
        general.ImportoTotaleDocumento = amounts_.total;
        const std::size_t most = types::latin(200).most;
        for (const std::string& reason : decisions_.Causale) {
            const std::string text = to_alphabet(reason, Alphabet::latin, std::string::npos).text;
            for (std::string& piece : in_pieces(text, most)) general.Causale.push_back(std::move(piece));
        }
        write_references();
    }

    std::string number() const {
        const double number = leading_number(invoice_.Numero_Fattura);
        if (number == 0) return {};
        std::string plain = plain_number(number);
        if (issuer_.number_form == NumberForm::plain) return plain;
        const double year = leading_number(invoice_.Anno);
        return plain + "/" + plain_number(year > 0 ? year : year_of(invoice_.Data_Fattura));
    }

    DatiCassaPrevidenzialeType fund() const {
        DatiCassaPrevidenzialeType fund;
        fund.TipoCassa = issuer_.TipoCassa;
        fund.AlCassa = amounts_.surcharge_rate;
        fund.ImportoContributoCassa = amounts_.surcharge;
        fund.ImponibileCassa = amounts_.services();
        fund.AliquotaIVA = amounts_.rate;
        if (is_surcharge_withheld(invoice_, amounts_, issuer_.TipoCassa)) fund.Ritenuta = "SI";
        fund.Natura = nature_;
        return fund;
    }

    void write_references() {
        DatiGeneraliType& general = body().DatiGenerali;
        switch (decisions_.reference_kind) {
        case ReferenceKind::none:
            break;
        case ReferenceKind::order:
            general.DatiOrdineAcquisto.push_back(decisions_.reference);
            break;
        case ReferenceKind::contract:
            general.DatiContratto.push_back(decisions_.reference);
            break;
        case ReferenceKind::agreement:
            general.DatiConvenzione.push_back(decisions_.reference);
            break;
        }
        const DatiDocumentiCorrelatiType& linked = decisions_.FatturaCollegata;
        if (!is_blank(linked.IdDocumento) || linked.Data) general.DatiFattureCollegate.push_back(linked);
    }

    void write_lines() {
        for (std::size_t i = 0; i < StoredInvoice::lines; ++i) {
            if (is_blank(invoice_.Prestazione[i]) && is_blank(invoice_.Importo[i])) continue;
            DettaglioLineeType& line = add_line(static_cast<int>(i) + 1, amounts_.lines[i]);
            line.Descrizione = first_not_blank({invoice_.Prestazione[i], usual_service});
            line.AliquotaIVA = amounts_.rate;
            line.Natura = nature_;
            if (amounts_.withholding != 0 && line.PrezzoTotale != 0) line.Ritenuta = "SI";
            if (nature_ == "N3.5" && !is_blank(decisions_.ProtocolloIntento)) {
                line.AltriDatiGestionali.push_back(
                    {"INTENTO", decisions_.ProtocolloIntento, decisions_.DataIntento});
            }
        }
        if (amounts_.expenses == 0) return;
        DettaglioLineeType& line = add_line(expenses_line, amounts_.expenses);
        line.Descrizione =
            first_not_blank({decisions_.DescrizioneSpese, issuer_.DescrizioneSpese, usual_expenses});
        line.Natura = nature_of_expenses_;
    }

    DettaglioLineeType& add_line(int stored, Cents amount) {
        draft_.stored_lines.push_back(stored);
        DettaglioLineeType& line = body().DatiBeniServizi.DettaglioLinee.emplace_back();
        line.NumeroLinea = static_cast<int>(draft_.stored_lines.size());
        line.PrezzoUnitario = line.PrezzoTotale = amount;
        return line;
    }

    void write_summaries() {
        auto& summaries = body().DatiBeniServizi.DatiRiepilogo;
        const bool services = !draft_.stored_lines.empty() && draft_.stored_lines.front() != expenses_line;
        const bool together = amounts_.rate == 0 && nature_ == nature_of_expenses_;
        if (services || amounts_.taxable != 0) {
            DatiRiepilogoType& summary = summaries.emplace_back();
            summary.AliquotaIVA = amounts_.rate;
            summary.Natura = nature_;
            summary.ImponibileImporto = amounts_.taxable + (together ? amounts_.expenses : 0);
            summary.Imposta = amounts_.vat;
            if (amounts_.rate != 0) summary.EsigibilitaIVA = vat_due_of();
            if (amounts_.rate == 0)
                summary.RiferimentoNormativo = law(decisions_.RiferimentoNormativo, nature_);
        }
        if (amounts_.expenses == 0 || (together && !summaries.empty())) return;
        DatiRiepilogoType& summary = summaries.emplace_back();
        summary.Natura = nature_of_expenses_;
        summary.ImponibileImporto = amounts_.expenses;
        summary.RiferimentoNormativo = law(decisions_.RiferimentoNormativoSpese, nature_of_expenses_);
    }

    /// Cash VAT is deferred by its regime.
    std::string vat_due_of() const {
        return first_not_blank({decisions_.EsigibilitaIVA, issuer_.RegimeFiscale == "RF17" ? "D" : "I"});
    }

    std::string law(const std::string& decided, const std::string& nature) const {
        return first_not_blank({decided, law_of(nature, issuer_.RegimeFiscale, customer_.Nazione)});
    }

    void write_payment() {
        const DatiGeneraliDocumentoType& general = body().DatiGenerali.DatiGeneraliDocumento;
        if (is_blank(invoice_.Check_Pagamento) || general.TipoDocumento == "TD04") return;
        // With split payment the customer pays the VAT to the State.
        const bool split = amounts_.rate != 0 && vat_due_of() == "S";
        const Cents due = amounts_.net - (split ? amounts_.vat : 0);
        if (due <= 0) return;
        DettaglioPagamentoType way{"MP05", due, "", "", "", ""};
        if (names_bank()) {
            way.IstitutoFinanziario = issuer_.Banca;
            way.IBAN = iban_of(issuer_);
            if (way.IBAN.empty()) way.ABI = bank_code(issuer_.ABI), way.CAB = bank_code(issuer_.CAB);
        }
        body().DatiPagamento.push_back({"TP02", {way}});
    }

    static std::string bank_code(const std::string& typed) {
        const std::string code = plain_code(typed);
        return types::bank_code.fits(code) && code.size() == types::bank_code.most ? code : std::string();
    }

    /// The payment's text was filled in from the letterhead, and may have been edited.
    bool names_bank() {
        if (decisions_.bank != BankDetails::if_named) return decisions_.bank == BankDetails::letterhead;
        const std::string text = plain_code(invoice_.Pagamento);
        const std::string account = plain_code(issuer_.CC);
        const std::string bank = plain_code(issuer_.Banca);
        const bool named = (account.empty() && bank.empty()) ||
                           (!account.empty() && text.find(account) != std::string::npos) ||
                           (account.empty() && text.find(bank) != std::string::npos);
        if (!named) {
            add_finding(
                draft_.findings,
                {Severity::refusal, "", Field::pagamento, 0,
                 "Il riquadro del pagamento non nomina più il conto dell'intestazione: scegliere se la "
                 "fattura elettronica deve indicarlo oppure no."});
        }
        return named;
    }

    const StoredInvoice& invoice_;
    const Issuer& issuer_;
    const Customer& customer_;
    const Decisions& decisions_;
    Draft& draft_;
    const RowAmounts amounts_;
    const std::string nature_;
    const std::string nature_of_expenses_;
};

} // namespace

Draft from_row(const StoredInvoice& invoice, const Issuer& issuer, const Customer& customer,
               const Decisions& decisions, const std::string& progressive, const RegionalSettings& regional) {
    Draft draft;
    draft.document.FatturaElettronicaHeader = head_of(invoice, issuer, customer, progressive);
    draft.document.versione = draft.document.FatturaElettronicaHeader.DatiTrasmissione.FormatoTrasmissione;
    Body(invoice, issuer, customer, decisions, regional, draft).write();
    for (Finding& finding : conform(draft.document)) {
        add_finding(draft.findings, in_row(std::move(finding), draft.stored_lines));
    }
    return draft;
}

std::string kind_of(const Issuer& issuer, const Decisions& decisions) {
    return first_not_blank({decisions.TipoDocumento, issuer.TipoDocumento, "TD06"});
}

std::string nature_of(const Issuer& issuer, const Decisions& decisions) {
    return first_not_blank({decisions.Natura, is_flat_rate(issuer.RegimeFiscale) ? "N2.2" : ""});
}

std::string nature_of_expenses(const StoredInvoice& invoice, const Decisions& decisions) {
    std::string article = lower_case(invoice.Articolo_Esenzione);
    std::erase(article, ' ');
    if (article.starts_with('(')) article.erase(0, 1);
    const bool article_15 = article.starts_with("art.15d"); // "D.p.r. 633/72", as the dialog writes it
    const bool article_10 = article.starts_with("art.10d");
    return first_not_blank({decisions.NaturaSpese, article_15 ? "N1" : article_10 ? "N4" : ""});
}

std::string law_of(std::string_view nature, std::string_view regime, std::string_view country) {
    if (nature == "N2.2" && regime == "RF19") return "Art. 1, commi 54-89, L. 190/2014 - regime forfettario";
    if (nature == "N2.2" && regime == "RF02") return "Art. 1, comma 100, L. 244/2007 - regime dei minimi";
    const Nature* const found = find_code(natures(), nature);
    if (!found) return {};
    if (nature != "N2.1") return std::string(found->law);
    return std::string(found->law) +
           (in_european_union(country) ? " - inversione contabile" : " - operazione non soggetta");
}

bool is_without_vat(const StoredInvoice& invoice) { return leading_number(invoice.Aliquota_IVA) == 0; }

int withholding_share(const StoredInvoice& invoice) {
    std::string_view text = invoice.Ritenuta_Su;
    if (is_blank(text)) {
        constexpr std::string_view mark = "(su ";
        const std::size_t at = invoice.Percentuale_Ritenuta.find(mark);
        if (at == std::string::npos) return 100;
        text = std::string_view(invoice.Percentuale_Ritenuta).substr(at + mark.size());
    }
    return static_cast<int>(std::clamp(std::round(leading_number(text)), 0.0, 1000.0));
}

} // namespace tarvello::e_invoice
