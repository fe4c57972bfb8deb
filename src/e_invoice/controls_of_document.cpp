#include "e_invoice/code_lists.h"
#include "e_invoice/control.h"
#include "e_invoice/stamp_duty.h"
#include "text/ascii.h"

namespace tarvello::e_invoice {
namespace {

constexpr int days_to_send = 12;
constexpr std::size_t longest_progressive = 5;

bool has_digit(const std::string& text) { return text.find_first_of("0123456789") != std::string::npos; }

/// A letter or figure for each of at most five places.
bool is_progressive(const std::string& text) {
    return !text.empty() && text.size() <= longest_progressive &&
           std::all_of(text.begin(), text.end(), ascii::is_letter_or_digit);
}

/// A protocol of the tax office: seventeen digits, a sign, six digits.
bool has_protocol_form(const std::string& protocol) {
    constexpr std::size_t digits_before = 17;
    constexpr std::size_t size = 24;
    if (protocol.size() != size) return false;
    for (std::size_t i = 0; i < size; ++i) {
        const bool digit = ascii::is_digit(protocol[i]);
        if (i == digits_before ? protocol[i] != '-' && protocol[i] != '/' : !digit) return false;
    }
    return true;
}

bool is_letter_of_intent(const AltriDatiGestionaliType& data) { return data.TipoDato == "INTENTO"; }

bool cites_wrong_letter(const DettaglioLineeType& line) {
    return any(line.AltriDatiGestionali, [](const AltriDatiGestionaliType& data) {
        return is_letter_of_intent(data) &&
               (!has_protocol_form(data.RiferimentoTesto) || !data.RiferimentoData);
    });
}

bool is_credit_note(const Case& c) { return c.general.TipoDocumento == "TD04"; }
bool is_split(const DatiRiepilogoType& summary) { return summary.EsigibilitaIVA == "S"; }
bool is_withheld(const auto& part) { return !part.Ritenuta.empty(); }
bool is_without_vat(const auto& part) { return part.AliquotaIVA == 0; }

/// Nobody withholds who is no firm in Italy.
bool withholds_nothing(const Case& c) {
    return c.customer.Sede.Nazione != "IT" || (c.italian_vat().empty() && !c.to_administration() &&
                                               !c.customer.DatiAnagrafici.Anagrafica.Nome.empty());
}

template <typename Entries>
bool is_out_of_date(const Case& c, const Entries& entries, std::string_view code) {
    return find_code(entries, code) && !holds(entries, code, c.general.Data);
}

/// The natures that were given digits in 2021.
bool lacks_digit(const Case& c, const std::string& nature) {
    const bool undivided = nature == "N2" || nature == "N3" || nature == "N6";
    return undivided && c.general.Data > make_date(2020, 12, 31);
}

constexpr SdiControl document_controls[] = {
    {"00001", refusal, Field::nome_file,
     "Il progressivo del file deve essere di 5 lettere o cifre al massimo.",
     [](const Case& c) { return hit_if(!is_progressive(c.sending.ProgressivoInvio)); }},
    {"00425", refusal, Field::numero, "Il numero della fattura deve avere almeno una cifra.",
     [](const Case& c) { return hit_if(!has_digit(c.general.Numero)); }},
    {"00403", refusal, Field::data,
     "La data della fattura è nel futuro: il file si può creare da quel giorno, oppure con la data di oggi.",
     [](const Case& c) { return hit_if(c.general.Data > c.circumstances.today); }},
    {"00404", refusal, Field::numero,
     "Un'altra fattura dell'anno con lo stesso numero è già stata inviata: correggere il numero.",
     [](const Case& c) { return hit_if(c.circumstances.number_sent); }},
    {"00418", refusal, Field::fattura_collegata,
     "La nota di credito ha una data anteriore a quella della fattura a cui si riferisce: correggere una "
     "delle due.",
     [](const Case& c) {
         return hit_if(is_credit_note(c) && any(c.references.DatiFattureCollegate, [&](const auto& linked) {
                           return linked.Data && c.general.Data < *linked.Data;
                       }));
     }},
    {"", refusal, Field::tipo_documento,
     "Il totale è negativo: scegliere il tipo di documento TD04 (nota di credito), che volge gli importi in "
     "positivo.",
     [](const Case& c) { return hit_if(c.general.ImportoTotaleDocumento.value_or(0) < 0); }},
    {"00411", refusal, Field::importo_ritenuta,
     "Una riga è soggetta a ritenuta, ma i dati della ritenuta mancano.",
     [](const Case& c) {
         return hit_if(c.general.DatiRitenuta.empty() &&
                       any(c.lines, [](const auto& line) { return is_withheld(line); }));
     }},
    {"00415", refusal, Field::tipo_cassa,
     "La rivalsa è soggetta a ritenuta, ma i dati della ritenuta mancano.",
     [](const Case& c) {
         return hit_if(
             c.general.DatiRitenuta.empty() &&
             any(c.general.DatiCassaPrevidenziale, [](const auto& fund) { return is_withheld(fund); }));
     }},
    {"", refusal, Field::causale_pagamento,
     "La causale della ritenuta non vale alla data della fattura: sceglierne un'altra.",
     [](const Case& c) {
         return hit_if(any(c.general.DatiRitenuta, [&](const DatiRitenutaType& withholding) {
             return is_out_of_date(c, withholding_reasons(), withholding.CausalePagamento);
         }));
     }},
    {"00445", refusal, Field::natura,
     "Dal 2021 le nature N2, N3 e N6 non si usano senza la cifra dopo il punto: scegliere quella precisa.",
     [](const Case& c) {
         return lines_that(c, [&](const DettaglioLineeType& line) { return lacks_digit(c, line.Natura); });
     }},
    {"", refusal, Field::natura, "La natura non vale alla data della fattura: sceglierne un'altra.",
     [](const Case& c) {
         return lines_that(
             c, [&](const DettaglioLineeType& line) { return is_out_of_date(c, natures(), line.Natura); });
     }},
    {"00420", refusal, Field::esigibilita_iva,
     "La scissione dei pagamenti non va insieme all'inversione contabile (N6): scegliere un'altra "
     "esigibilità.",
     [](const Case& c) {
         return hit_if(any(c.summaries, [](const DatiRiepilogoType& summary) {
             return is_split(summary) && summary.Natura.starts_with("N6");
         }));
     }},
    {"00477", refusal, Field::dichiarazione_intento,
     "La dichiarazione d'intento non è indicata bene: occorrono la data e il protocollo, di 17 cifre, un "
     "trattino e 6 "
     "cifre.",
     [](const Case& c) { return hit_if(any(c.lines, cites_wrong_letter)); }},

    {"", warning, Field::numero,
     "Per un'altra fattura dell'anno con lo stesso numero esiste già una fattura elettronica: se è stata "
     "inviata, "
     "questa sarà scartata.",
     [](const Case& c) { return hit_if(c.circumstances.number_created && !c.circumstances.number_sent); }},
    {"", warning, Field::data,
     "Sono passati più di 12 giorni dalla data della fattura: il termine per inviarla è scaduto.",
     [](const Case& c) {
         return hit_if(c.general.Data.ok() && c.general.Data < c.circumstances.today &&
                       days_between(c.general.Data, c.circumstances.today) > days_to_send);
     }},
    {"", warning, Field::fattura_collegata,
     "La nota di credito non dice a quale fattura si riferisce: indicarne numero e data.",
     [](const Case& c) { return hit_if(is_credit_note(c) && c.references.DatiFattureCollegate.empty()); }},
    {"", warning, Field::importo_ritenuta,
     "Nel regime forfettario o dei minimi i compensi non sono soggetti a ritenuta: controllare.",
     [](const Case& c) { return hit_if(!c.general.DatiRitenuta.empty() && is_flat_rate(c.regime())); }},
    {"", warning, Field::importo_ritenuta,
     "Un privato o un cliente estero non opera ritenute: controllare se la ritenuta va tolta.",
     [](const Case& c) { return hit_if(!c.general.DatiRitenuta.empty() && withholds_nothing(c)); }},
    {"", warning, Field::aliquota_iva,
     "Nel regime forfettario o dei minimi la fattura è senza IVA: controllare l'aliquota.",
     [](const Case& c) {
         return hit_if(is_flat_rate(c.regime()) &&
                       any(c.lines, [](const auto& line) { return !is_without_vat(line); }));
     }},
    {"", warning, Field::esigibilita_iva,
     "La scissione dei pagamenti vale solo per le pubbliche amministrazioni e le società quotate, e non per "
     "i compensi "
     "soggetti a ritenuta; verificare anche che sia ancora autorizzata.",
     [](const Case& c) { return hit_if(any(c.summaries, is_split)); }},
    {"", warning, Field::bollo, "L'imposta di bollo risulta dovuta e non è indicata.",
     [](const Case& c) {
         const StampBase base = stamp_base(c.document);
         return hit_if(!c.general.DatiBollo && is_stamp_proposed(base), stamp_reason(base));
     }},
    {"", warning, Field::bollo, "L'imposta di bollo non è indicata e può essere dovuta.",
     [](const Case& c) {
         const StampBase base = stamp_base(c.document);
         return hit_if(!c.general.DatiBollo && is_stamp_doubtful(base), stamp_reason(base));
     }},
    {"", warning, Field::bollo, "L'imposta di bollo è indicata e non risulta dovuta.",
     [](const Case& c) {
         const StampBase base = stamp_base(c.document);
         return hit_if(c.general.DatiBollo && !is_stamp_proposed(base) && !is_stamp_doubtful(base),
                       stamp_reason(base));
     }},
    {"", warning, Field::riferimento_normativo,
     "La fattura senza IVA non dice in base a quale norma: indicare il riferimento normativo.",
     [](const Case& c) {
         return hit_if(any(c.summaries, [](const DatiRiepilogoType& summary) {
             return is_without_vat(summary) && summary.RiferimentoNormativo.empty();
         }));
     }},
    {"", warning, Field::dichiarazione_intento,
     "La natura N3.5 richiede la dichiarazione d'intento del cliente: indicarne protocollo e data.",
     [](const Case& c) {
         return hit_if(any(c.lines, [](const DettaglioLineeType& line) {
             return line.Natura == "N3.5" && !any(line.AltriDatiGestionali, is_letter_of_intent);
         }));
     }},
    {"", warning, Field::issuer_iban,
     "La fattura chiede un bonifico ma non indica un IBAN: completare le coordinate bancarie.",
     [](const Case& c) {
         return hit_if(any(c.payments, [](const DatiPagamentoType& payment) {
             return any(payment.DettaglioPagamento,
                        [](const DettaglioPagamentoType& way) { return way.IBAN.empty(); });
         }));
     }},
};

} // namespace

std::span<const SdiControl> controls_of_document() { return document_controls; }

} // namespace tarvello::e_invoice
