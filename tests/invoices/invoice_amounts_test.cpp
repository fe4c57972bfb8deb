#include "failure.h"
#include "invoices/invoice_form_fixture.h"

namespace tarvello::testing {
namespace {

struct InvoiceAmounts : InvoiceFormTest {
    InvoiceAmounts() {
        given_invoice();
        settings().txtProfessione.set_text("Rivalsa INPS");
        settings().txt_IVA_default.set_text("20");
    }

    struct Inputs {
        std::vector<std::string> lines = {};
        std::string rivalsa = {};  ///< rate; empty for none
        std::string spese = {};    ///< expenses; empty for none
        std::string ritenuta = {}; ///< rate; empty for none
        std::string ritenuta_su = {};
        bool in_withholding = false;
        std::string iva = "20";
    };

    void calculate(const Inputs& inputs) {
        fake.settings.set("Check1", "value", inputs.in_withholding ? "1" : "0");
        start_invoice();
        for (std::size_t i = 0; i < inputs.lines.size(); ++i) {
            if (!inputs.lines[i].empty()) fill_line(i, "Consulenza", inputs.lines[i]);
        }
        form().ComboIVAApplicata.set_text(inputs.iva);
        if (!inputs.rivalsa.empty()) {
            form().CheckRivalsa.click();
            form().ComboPercentualeRivalsa.set_text(inputs.rivalsa);
        }
        if (!inputs.spese.empty()) {
            windows().expect_modal("frmArticoloEsenzione", [](Form& dialog) {
                auto& articles = dynamic_cast<frmArticoloEsenzione&>(dialog);
                articles.Option2.click();
                articles.OKButton.click();
            });
            form().CheckSpese.click();
            fill(form().txtImportoSpeseAnticipate, inputs.spese);
        }
        if (!inputs.ritenuta.empty()) {
            form().CheckRitenuta.click();
            form().ComboRitenuta.set_text(inputs.ritenuta);
            form().ComboRitenutaSu.set_text(inputs.ritenuta_su);
        }
        form().cmdCalcola.click();
    }

    /// rivalsa, imponibile, IVA, total, base of the withholding, withholding, net
    std::vector<std::string> results() {
        EXPECT_EQ(form().LabelImponibile.caption(), form().txtImponibile.text());
        return {
            form().txtImportoRivalsa.text(), form().txtImponibile.text(),    form().txtIVA.text(),
            form().txtTotaleFattura.text(),  form().LabelRitenuta.caption(), form().txtRitenutaAcconto.text(),
            form().txtImportoNetto.text()};
    }
    using Results = std::vector<std::string>;
};

TEST_F(InvoiceAmounts, WorkedInvoices) {
    calculate({.lines = {"1000", "234,56"},
               .rivalsa = "2",
               .spese = "14,62",
               .ritenuta = "20",
               .ritenuta_su = "100",
               .in_withholding = true});
    EXPECT_EQ(results(), (Results{"€ 24,69", "€ 1.259,25", "€ 251,85", "€ 1.525,72", "€ 1.234,56", "€ 246,91",
                                  "€ 1.278,81"}));
    press("Annulla");
    calculate({.lines = {"1000", "234,56"},
               .rivalsa = "4",
               .ritenuta = "20",
               .ritenuta_su = "100",
               .in_withholding = true});
    EXPECT_EQ(results(), (Results{"€ 49,38", "€ 1.283,94", "€ 256,79", "€ 1.540,73", "€ 1.283,94", "€ 256,79",
                                  "€ 1.283,94"}));
    press("Annulla");
    calculate({.lines = {"100,25"}, .rivalsa = "2", .ritenuta = "20", .ritenuta_su = "75"});
    EXPECT_EQ(results(),
              (Results{"€ 2,01", "€ 102,26", "€ 20,45", "€ 122,71", "€ 75,19", "€ 15,04", "€ 107,67"}));
    form().cmdCalcola.click();
    EXPECT_EQ(form().txtImportoNetto.text(), "€ 107,67") << "the button may be pressed again";
}

TEST_F(InvoiceAmounts, OnlyASurchargeOfFourEntersTheWithholding) {
    calculate({.lines = {"1000"}, .rivalsa = "4", .ritenuta = "20", .ritenuta_su = "100"});
    EXPECT_EQ(form().LabelRitenuta.caption(), "€ 1.000,00") << "not asked for in the preferences";

    fake.settings.set("Check1", "value", "1"); // saved while the invoice is open
    form().cmdCalcola.click();
    EXPECT_EQ(form().LabelRitenuta.caption(), "€ 1.040,00");

    for (const char* rate : {"4.0", "2", "4 "}) {
        form().ComboPercentualeRivalsa.set_text(rate);
        form().cmdCalcola.click();
        EXPECT_EQ(form().LabelRitenuta.caption(), "€ 1.000,00") << rate;
    }
    form().ComboPercentualeRivalsa.set_text("4");
    settings().CheckEscludiRivalsaImponibile.set_checked(true);
    form().cmdCalcola.click();
    EXPECT_EQ(results(), (Results{"€ 40,00", "€ 1.000,00", "€ 200,00", "€ 1.200,00", "€ 1.000,00", "€ 200,00",
                                  "€ 1.000,00"}))
        << "an excluded surcharge is shown, and counts nowhere";
}

TEST_F(InvoiceAmounts, ExpensesWithVatEnterTheWithholding) {
    calculate({.lines = {"1000"}, .spese = "100", .ritenuta = "20", .ritenuta_su = "50"});
    EXPECT_EQ(results(),
              (Results{"", "€ 1.000,00", "€ 200,00", "€ 1.300,00", "€ 500,00", "€ 100,00", "€ 1.200,00"}));
    form().ComboIVASpeseAnticipate.set_text("20"); // as an older row has it
    form().cmdCalcola.click();
    EXPECT_EQ(form().LabelRitenuta.caption(), "€ 550,00");
    EXPECT_EQ(form().txtIVA.text(), "€ 200,00");
}

TEST_F(InvoiceAmounts, RatesAreReadByTheirLeadingNumber) {
    calculate({.lines = {"", "", "", "100"}, .iva = "22"});
    EXPECT_EQ(results(), (Results{"", "€ 100,00", "€ 22,00", "€ 122,00", "", "", "€ 122,00"}));
    for (const char* rate : {"Esente", "Esente ", "esente", "abc"}) {
        form().ComboIVAApplicata.set_text(rate);
        form().cmdCalcola.click();
        EXPECT_EQ(form().txtIVA.text(), "€ 0,00") << rate;
    }
    form().ComboIVAApplicata.set_text("21");
    fill(form().txtImportoPrestazioni[3], "631682847794,45");
    form().cmdCalcola.click();
    EXPECT_EQ(form().txtIVA.text(), "€ 132.653.398.036,84") << "divided by a hundred first, then multiplied";
    fill(form().txtImportoPrestazioni[3], "100");
    form().ComboIVAApplicata.set_text("19,5");
    form().CheckRivalsa.click();
    form().ComboPercentualeRivalsa.set_text("");
    form().CheckRitenuta.click();
    form().ComboRitenuta.set_text("20% (su 75% imp.)");
    form().ComboRitenutaSu.set_text("100");
    form().cmdCalcola.click();
    EXPECT_EQ(results(),
              (Results{"€ 0,00", "€ 100,00", "€ 19,00", "€ 119,00", "€ 100,00", "€ 20,00", "€ 99,00"}));
}

TEST_F(InvoiceAmounts, AnAmountIsReadWhenItsFieldIsLeft) {
    const std::vector<std::pair<std::string, std::string>> amounts = {
        {"10,125", "€ 10,13"},
        {"12.50", "€ 1.250,00"},
        {"2,005", "€ 2,01"},
        {"-3", "-€ 3,00"},
        {"-999999999999,99", "-€ 999.999.999.999,99"},
        {"€ 7", "€ 7,00"},
        {"1.2.3,4", "€ 123,40"}};
    start_invoice();
    for (const auto& [typed, shown] : amounts) {
        fill(form().txtImportoPrestazioni[4], typed);
        EXPECT_EQ(form().txtImportoPrestazioni[4].text(), shown) << typed;
    }
    for (const char* typed : {"abc", "1e5", "1,2,3", "12 euro", "--3", "⑤"}) {
        boxes().expect(warning("L'importo inserito non è valido!"));
        form().txtImportoPrestazioni[1].enter();
        form().txtImportoPrestazioni[1].set_text(typed);
        form().PrestazioneSingola[0].enter();
        EXPECT_EQ(form().txtImportoPrestazioni[1].text(), "");
        EXPECT_EQ(form().focus(), &form().txtImportoPrestazioni[1]) << typed;
        EXPECT_TRUE(form().ShapeImporto[1].visible());
    }
}

TEST_F(InvoiceAmounts, WhatIsTooLargeToBeShownIsRefusedWhereItIsTyped) {
    for (TextBox* field : {&form().txtImportoPrestazioni[0], &form().txtImportoSpeseAnticipate}) {
        start_invoice();
        windows().expect_modal("frmArticoloEsenzione"); // closed by its close box: the expenses stay
        form().CheckSpese.click();
        field->enter();
        field->set_text("1000000000000");
        boxes().expect(warning("L'importo inserito è troppo grande: il massimo è € 999.999.999.999,99."));
        form().PrestazioneSingola[0].enter();
        EXPECT_EQ(form().focus(), field);
        EXPECT_EQ(field->text(), "1000000000000") << "it stays for correction";
        form().Toolbar1.press("Annulla");
    }
}

TEST_F(InvoiceAmounts, UnreadableExpensesStayForCorrection) {
    calculate({.lines = {"100"}, .spese = "14,625"});
    EXPECT_EQ(form().txtImportoSpeseAnticipate.text(), "€ 14,63");
    form().txtImportoSpeseAnticipate.enter();
    form().txtImportoSpeseAnticipate.set_text("quindici");
    boxes().expect(warning("L'importo inserito non è valido"));
    form().cmdCalcola.click();
    EXPECT_EQ(form().txtImportoSpeseAnticipate.text(), "quindici");
    EXPECT_EQ(form().focus(), &form().txtImportoSpeseAnticipate);
    EXPECT_EQ(form().txtTotaleFattura.text(), "€ 134,63") << "the press was lost";
}

TEST_F(InvoiceAmounts, GuardsInTheirOrder) {
    start_invoice();
    form().ComboIVAApplicata.clear();
    windows().expect_modal("frmArticoloEsenzione"); // closed by its close box: the expenses stay
    form().CheckSpese.click();
    boxes().expect(warning("Inserire l'importo relativo alle spese anticipate."));
    form().cmdCalcola.click();
    EXPECT_EQ(form().focus(), &form().txtImportoSpeseAnticipate);

    fill(form().txtImportoSpeseAnticipate, "10");
    fill_line(4, "Consulenza", "100"); // an amount on the fifth line alone is none
    boxes().expect(warning("Inserire almeno un importo!"));
    form().cmdCalcola.click();
    EXPECT_EQ(form().focus(), &form().PrestazioneSingola[0]);

    fill_line(3, "Consulenza", "100");
    boxes().expect(warning("Impossibile calcolare l'imposta IVA.Selezionare l'aliquota IVA"));
    form().cmdCalcola.click();
    EXPECT_EQ(form().focus(), &form().ComboIVAApplicata);
    EXPECT_EQ(form().txtTotaleFattura.text(), "");
    boxes().expect_none_left();
}

TEST_F(InvoiceAmounts, AStepThatFailsTellsOrEndsTheProgram) {
    // The surcharge tells, and the taxable base that reads the same line ends the program.
    start_invoice();
    fill_line(0, "Consulenza", "100");
    form().CheckRivalsa.click();
    form().txtImportoPrestazioni[1].set_text("abc"); // never left
    boxes().expect(warning("Errore nell'inserimento dell'aliquota Rivalsa INPS. Controllare l'aliquota "
                           "Rivalsa INPS"));
    expect_process_end([&] { form().cmdCalcola.click(); }, "Il testo \"abc\" non è un importo.");
    boxes().expect_none_left();
}

TEST_F(InvoiceAmounts, AResultBeyondAllNumbersTells) {
    calculate({.lines = {"100"}});
    form().CheckRivalsa.click();
    form().ComboPercentualeRivalsa.set_text(std::string(400, '9'));
    form().ComboIVAApplicata.set_text(std::string(400, '9'));
    form().txtImportoRivalsa.set_text("€ 1,00");
    boxes().expect(warning("Errore nell'inserimento dell'aliquota Rivalsa INPS. Controllare l'aliquota "
                           "Rivalsa INPS"));
    boxes().expect(warning("Errore nell'inserimento dell'aliquota IVA. COntrollare l'aliquota IVA."));
    form().cmdCalcola.click();
    EXPECT_EQ(form().txtTotaleFattura.text(), "€ 121,00") << "later steps go on with what the fields held";
}

TEST_F(InvoiceAmounts, BoxesSetTheirFields) {
    settings().txt_RIVALSA_default.set_text("4");
    settings().txt_Ritenuta_default.set_text("20");
    settings().txt_RitenutaSu_default.set_text("100");
    start_invoice();
    EXPECT_FALSE(form().ComboPercentualeRivalsa.enabled());
    EXPECT_FALSE(form().ComboRitenuta.enabled());

    form().CheckRivalsa.enter();
    form().CheckRivalsa.press_key(keys::enter);
    EXPECT_EQ(form().ComboPercentualeRivalsa.text(), "4");
    EXPECT_EQ(form().ComboPercentualeRivalsa.back_color(), colors::white);
    form().CheckRitenuta.press_key(keys::enter);
    EXPECT_EQ(form().ComboRitenuta.text(), "20");
    EXPECT_EQ(form().ComboRitenutaSu.text(), "100");
    form().ComboRitenuta.enter();
    form().ComboRitenuta.type("a2,5%");
    EXPECT_EQ(form().ComboRitenuta.text(), "2520") << "digits only";

    fill_line(0, "Consulenza", "100");
    form().cmdCalcola.click();
    const std::string total = form().txtTotaleFattura.text();
    form().CheckRivalsa.press_key(keys::enter);
    form().CheckRitenuta.click();
    EXPECT_EQ(form().ComboPercentualeRivalsa.text(), "");
    EXPECT_EQ(form().ComboPercentualeRivalsa.back_color(), colors::grey);
    expect_shown("txtImportoRivalsa=; txtRitenutaAcconto=; LabelRitenuta=");
    EXPECT_EQ(form().ComboRitenutaSu.text(), "100") << "the share stays";
    EXPECT_EQ(form().txtTotaleFattura.text(), total) << "nothing is calculated but by the button";
}

} // namespace
} // namespace tarvello::testing
