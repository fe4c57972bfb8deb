// The invoice form without its window.

#include "archive.h"
#include "row.h"

#include "invoices/invoice_form.h"
#include "shell/main_window.h"
#include "support/fake_platform.h"

#include <gtest/gtest.h>

namespace tarvello::bench {
namespace {

/// The six steps on five lines, with all boxes ticked and the surcharge in the base of the withholding.
void calculation(benchmark::State& state) {
    testing::FakePlatform desktop;
    desktop.settings.set("Check1", "value", "1");
    Program program(desktop.platform());
    program.database().dbConnection.open(archive_path());
    program.form<MDIForm1>(); // holds the settings
    auto& form = program.form<frmTarvello>();
    const char* const amounts[] = {"€ 1.000,00", "€ 234,56", "€ 75,19", "€ 12.345,67", "€ 0,99"};
    for (std::size_t i = 0; i < frmTarvello::lines; ++i) form.txtImportoPrestazioni[i].set_text(amounts[i]);
    for (CheckBox* box : {&form.CheckRivalsa, &form.CheckSpese, &form.CheckRitenuta, &form.CheckPagamento}) {
        box->set_checked(true);
    }
    form.ComboPercentualeRivalsa.set_text("4");
    form.ComboIVAApplicata.set_text("20");
    form.txtImportoSpeseAnticipate.set_text("€ 14,62");
    form.ComboRitenuta.set_text("20");
    form.ComboRitenutaSu.set_text("75");

    for (auto _ : state) form.Calcola();
    if (form.txtImportoNetto.text() != "€ 14.927,42") state.SkipWithError("another result");
}

const bool registered = [] {
    GTEST_FLAG_SET(throw_on_failure, true); // a box that comes ends the run with its text
    row_within("one full calculation: six steps, five lines, all boxes ticked", calculation, 10);
    return true;
}();

} // namespace
} // namespace tarvello::bench
