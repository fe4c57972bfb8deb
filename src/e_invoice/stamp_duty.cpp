#include "e_invoice/stamp_duty.h"

#include "e_invoice/code_lists.h"

namespace tarvello::e_invoice {
namespace {

constexpr Cents threshold = 7747;

} // namespace

StampBase stamp_base(const FatturaElettronicaType& document) {
    const std::string& regime =
        document.FatturaElettronicaHeader.CedentePrestatore.DatiAnagrafici.RegimeFiscale;
    StampBase base;
    base.counts = regime < "RF05" || regime > "RF11";
    for (const DettaglioLineeType& line : document.FatturaElettronicaBody.DatiBeniServizi.DettaglioLinee) {
        const Nature* const nature = find_code(natures(), line.Natura);
        if (nature && nature->on_stamp_list) base.listed += line.PrezzoTotale;
        if (nature && nature->under_stamp_law) base.by_law += line.PrezzoTotale;
    }
    const auto& general = document.FatturaElettronicaBody.DatiGenerali.DatiGeneraliDocumento;
    for (const DatiCassaPrevidenzialeType& fund : general.DatiCassaPrevidenziale) {
        const Nature* const nature = find_code(natures(), fund.Natura);
        if (nature && nature->under_stamp_law) base.by_law += fund.ImportoContributoCassa;
    }
    return base;
}

bool is_stamp_proposed(const StampBase& base) { return base.counts && base.listed > threshold; }

bool is_stamp_doubtful(const StampBase& base) { return !is_stamp_proposed(base) && base.by_law > threshold; }

std::string stamp_reason(const StampBase& base) {
    const std::string limit = shown_amount(threshold);
    if (is_stamp_proposed(base)) {
        return "Gli importi senza IVA (" + shown_amount(base.listed) + ") superano " + limit +
               ": l'imposta di bollo di 2 euro è dovuta.";
    }
    if (is_stamp_doubtful(base)) {
        return "Con le spese escluse o la rivalsa gli importi senza IVA (" + shown_amount(base.by_law) +
               ") superano " + limit + ": l'Agenzia non la chiede, ma l'imposta di bollo può essere dovuta.";
    }
    return "Gli importi senza IVA non superano " + limit + ": l'imposta di bollo non è dovuta.";
}

} // namespace tarvello::e_invoice
