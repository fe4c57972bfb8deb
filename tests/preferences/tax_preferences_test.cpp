#include "preferences/tax_preferences.h"

#include "support/program_test.h"

namespace tarvello::testing {
namespace {

struct TaxPreferences : ProgramTest {
    MDIForm1& main = program->form<MDIForm1>();

    frmImpostazioni& form() { return program->form<frmImpostazioni>(); }
    void reopen() {
        form().unload();
        form().show();
    }
    bool nothing_to_save() {
        return !form().Command1.enabled() && !form().Command3.enabled() && !form().Command4.enabled();
    }
    void save(CommandButton& button, const std::string& text) {
        boxes().expect({text, "Tarvello 4", BoxIcon::information});
        button.click();
        EXPECT_FALSE(button.enabled());
    }
    void save_surcharge() { save(form().Command1, "Impostazioni rivalsa salvate correttamente."); }
};

TEST_F(TaxPreferences, FirstOpening) {
    main.session.txtProfessione.set_text("False");
    form().show();
    EXPECT_EQ(form().Label13.caption(), "False");
    for (const Label* label : {&form().Label14, &form().Label17, &form().Label18}) {
        EXPECT_EQ(label->caption(), "---");
    }
    EXPECT_TRUE(nothing_to_save());
    EXPECT_TRUE(form().Option1.selected());
    EXPECT_FALSE(form().Text1.enabled());
}

TEST_F(TaxPreferences, TheWording) {
    form().Option2.click();
    EXPECT_EQ(form().Text1.text(), "Indicare la dicitura desiderata");
    save_surcharge();
    EXPECT_EQ(main.session.txtProfessione.text(), "Indicare la dicitura desiderata");
    form().Text1.place_caret(0, 100);
    form().Text1.type("Cassa geometri");
    save_surcharge();
    EXPECT_EQ(main.session.txtProfessione.text(), "Cassa geometri");
    reopen();
    EXPECT_EQ(form().Label13.caption(), "Cassa geometri");
    form().CheckEscludiRivalsaImponibile.click();
    save_surcharge();
    EXPECT_EQ(main.session.txtProfessione.text(), "Rivalsa") << "a load chooses the first option again";
}

TEST_F(TaxPreferences, RateAndBoxGoTogether) {
    form().ComboRivalsa.choose(1);
    EXPECT_EQ(form().ComboRivalsa.text(), "2");
    form().Check1.click();
    EXPECT_EQ(form().ComboRivalsa.text(), "4");
    form().ComboRivalsa.choose(1);
    EXPECT_FALSE(form().Check1.checked());
    form().Check1.click();
    form().ComboRivalsa.place_caret(0, 1);
    form().ComboRivalsa.type("3");
    EXPECT_TRUE(form().Check1.checked()) << "only exactly 2 unticks it";
    save_surcharge();
    EXPECT_EQ(main.session.txt_RIVALSA_default.text(), "3");
    EXPECT_EQ(fake.settings.get("Check1", "value"), "1");

    reopen();
    EXPECT_TRUE(form().Check1.checked());
    EXPECT_EQ(form().ComboRivalsa.text(), "4") << "the tick that the load reads brings its rate";
    EXPECT_EQ(form().Label18.caption(), "---") << "the box with another rate leaves the label";
    EXPECT_TRUE(nothing_to_save());

    main.session.txt_RIVALSA_default.set_text("4");
    reopen();
    EXPECT_EQ(form().Label18.caption(), "4 % (Inclusa nel calcolo R.A.)");
    form().Check1.click();
    save_surcharge();
    EXPECT_EQ(form().Label18.caption(), "4 % (Inclusa nel calcolo R.A.)") << "not before the next load";
    reopen();
    EXPECT_EQ(form().Label18.caption(), "4 %");
}

TEST_F(TaxPreferences, TheExclusionReachesTheMainWindowBeforeTheSave) {
    form().CheckEscludiRivalsaImponibile.click();
    EXPECT_TRUE(main.session.CheckEscludiRivalsaImponibile.checked());
    EXPECT_FALSE(fake.settings.get("CheckEscludiRivalsaImponibile", "value"));
    reopen();
    EXPECT_FALSE(form().CheckEscludiRivalsaImponibile.checked()) << "the store knows nothing of it";
    EXPECT_TRUE(main.session.CheckEscludiRivalsaImponibile.checked());
    form().CheckEscludiRivalsaImponibile.click();
    save_surcharge();
    EXPECT_EQ(fake.settings.get("CheckEscludiRivalsaImponibile", "value"), "1");
}

TEST_F(TaxPreferences, VatAndWithholding) {
    form().ComboIVAApplicata.choose(2);
    EXPECT_TRUE(form().Command3.enabled());
    save(form().Command3, "Impostazioni IVA salvate correttamente.");
    form().ComboRitenutaSu.type("80");
    form().ComboRitenuta.choose(0);
    save(form().Command4, "Impostazioni Ritenuta d'Acconto salvate correttamente.");
    EXPECT_EQ(main.session.txt_IVA_default.text(), "Esente");
    EXPECT_EQ(main.session.txt_RitenutaSu_default.text(), "80");
    EXPECT_FALSE(fake.settings.get("txt_IVA_default")) << "the rates are stored at closing";
    reopen();
    EXPECT_EQ(form().Label14.caption(), "Esente %");
    EXPECT_EQ(form().Label17.caption(), "20% su 80% Imponibile");
    form().Command2.click();
    EXPECT_FALSE(program->loaded<frmImpostazioni>());
}

} // namespace
} // namespace tarvello::testing
