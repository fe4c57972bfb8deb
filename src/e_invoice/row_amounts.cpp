#include "e_invoice/row_amounts.h"

#include "e_invoice/from_row.h"
#include "text/letter_case.h"
#include "text/numbers.h"

#include <cmath>
#include <cstdlib>
#include <numeric>

namespace tarvello::e_invoice {
namespace {

class RowReading {
public:
    RowReading(const StoredInvoice& invoice, const RegionalSettings& regional, std::vector<Finding>& findings)
        : invoice_(invoice), regional_(regional), findings_(findings) {}

    RowAmounts read() {
        RowAmounts amounts;
        for (std::size_t i = 0; i < StoredInvoice::lines; ++i) {
            const int line = static_cast<int>(i) + 1;
            if (!is_blank(invoice_.Importo[i]))
                amounts.lines[i] = amount(invoice_.Importo[i], Field::importo, line);
        }
        if (!is_blank(invoice_.Rivalsa)) {
            amounts.surcharge = amount(invoice_.Importo_Rivalsa, Field::importo_rivalsa);
            amounts.surcharge_rate = rate(invoice_.Percentuale_Rivalsa, Field::percentuale_rivalsa);
        }
        amounts.taxable = amount(invoice_.Imponibile, Field::imponibile);
        amounts.rate = rate(invoice_.Aliquota_IVA, Field::aliquota_iva);
        amounts.vat = amount(invoice_.Imposta_IVA, Field::imposta_iva);
        if (!is_blank(invoice_.Spese))
            amounts.expenses = amount(invoice_.Importo_Spese, Field::importo_spese);
        amounts.total = amount(invoice_.Totale_Fattura, Field::totale);
        if (!is_blank(invoice_.Ritenuta)) {
            amounts.withholding = amount(invoice_.Importo_Ritenuta, Field::importo_ritenuta);
            amounts.withholding_rate = rate(invoice_.Percentuale_Ritenuta, Field::percentuale_ritenuta);
        }
        amounts.net = amount(invoice_.Importo_Netto, Field::importo_netto);
        look_for_excluded_surcharge(amounts);
        return amounts;
    }

private:
    Cents amount(const std::string& text, Field field, int line = 0) {
        const std::optional<Cents> read = read_cents(text, regional_);
        if (read) return *read;
        tell(field, line, is_blank(text) ? "L'importo manca" : "\"" + text + "\" non è un importo",
             " (" + std::string(facts_of(field).words) +
                 "). Correggerlo nella fattura e salvarla, poi ripetere.");
        return 0;
    }

    Rate rate(const std::string& text, Field field) {
        const std::optional<Rate> read = read_rate(text);
        if (read) return *read;
        tell(field, 0, "\"" + text + "\" non va bene come " + std::string(facts_of(field).words),
             ": la fattura elettronica ammette due decimali e al massimo 100. Correggerla nella fattura e "
             "salvarla, poi ripetere.");
        return 0;
    }

    void look_for_excluded_surcharge(const RowAmounts& amounts) {
        const Cents services = amounts.services();
        if (amounts.surcharge == 0 || amounts.taxable != services) return;
        tell(Field::imponibile, 0,
             "La rivalsa di " + shown_amount(amounts.surcharge) + " è esclusa dall'imponibile e dal totale",
             ": una fattura elettronica così non può esistere. In \"Impostazioni\" togliere il segno da "
             "\"Esludi la "
             "rivalsa dal calcolo dell'imponibile\", poi aggiornare la fattura; oppure togliere la rivalsa.");
    }

    void tell(Field field, int line, const std::string& what, const std::string& remedy) {
        add_finding(findings_, {Severity::refusal, "", field, line, what + remedy});
    }

    const StoredInvoice& invoice_;
    const RegionalSettings& regional_;
    std::vector<Finding>& findings_;
};

void turn(RowAmounts& amounts) {
    for (Cents& line : amounts.lines) line = -line;
    for (Cents* const amount : {&amounts.surcharge, &amounts.taxable, &amounts.vat, &amounts.expenses,
                                &amounts.total, &amounts.withholding, &amounts.net}) {
        *amount = -*amount;
    }
}

} // namespace

Cents RowAmounts::services() const { return std::accumulate(lines.begin(), lines.end(), Cents{0}); }

RowAmounts read_row(const StoredInvoice& invoice, bool credit_note, const RegionalSettings& regional,
                    std::vector<Finding>& findings) {
    RowAmounts amounts = RowReading(invoice, regional, findings).read();
    if (credit_note && amounts.total < 0) turn(amounts);
    return amounts;
}

bool is_surcharge_withheld(const StoredInvoice& invoice, const RowAmounts& amounts, std::string_view fund) {
    if (amounts.withholding == 0) return false;
    // Only an older row has expenses with VAT, which counted in the base.
    const std::string vat_of_expenses = trim(invoice.IVA_Spese);
    const bool with_expenses = !vat_of_expenses.empty() && vat_of_expenses != "0";
    const Cents base = amounts.services() + (with_expenses ? amounts.expenses : 0);
    const auto distance = [&](Cents whole_base) {
        const double tax = static_cast<double>(whole_base) * withholding_share(invoice) / 100 *
                           amounts.withholding_rate / 10'000;
        return std::llabs(amounts.withholding - std::llround(tax));
    };
    const auto with = distance(base + amounts.surcharge);
    const auto without = distance(base);
    return with == without ? fund == "TC22" : with < without;
}

Finding in_row(Finding finding, const std::vector<int>& stored_lines) {
    if (finding.line == 0) return finding;
    const auto place = static_cast<std::size_t>(finding.line) - 1;
    const int stored = place < stored_lines.size() ? stored_lines[place] : finding.line;
    const bool of_one_line = finding.field == Field::prestazione || finding.field == Field::importo;
    finding.line = stored != expenses_line && of_one_line ? stored : 0;
    if (stored != expenses_line) return finding;
    switch (finding.field) {
    case Field::prestazione:
        finding.field = Field::descrizione_spese;
        break;
    case Field::importo:
        finding.field = Field::importo_spese;
        break;
    default:
        finding.field = Field::natura_spese;
        break;
    }
    return finding;
}

} // namespace tarvello::e_invoice
