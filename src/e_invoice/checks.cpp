#include "e_invoice/checks.h"

#include "e_invoice/conformity.h"
#include "e_invoice/control.h"
#include "e_invoice/row_amounts.h"

#include <utility>

namespace tarvello::e_invoice {

std::vector<Finding> check(const Draft& draft, const Circumstances& circumstances) {
    std::vector<Finding> findings = draft.findings;
    const bool amounts_read = !any_refusal(findings);
    const Case subject{draft.document, circumstances};
    for (const auto controls : {controls_of_parties(), controls_of_document(), controls_of_amounts()}) {
        for (const SdiControl& control : controls) {
            if (control.of_sums && !amounts_read) continue;
            for (const Spot& spot : control.find(subject)) {
                std::string words = control.words;
                if (!spot.seen.empty()) words += " " + spot.seen;
                add_finding(findings,
                            in_row({control.severity, control.code, control.field, spot.line, words},
                                   draft.stored_lines));
            }
        }
    }
    for (Finding& fault : faults_of_structure(draft.document)) {
        add_finding(findings, in_row(std::move(fault), draft.stored_lines));
    }
    return findings;
}

} // namespace tarvello::e_invoice
