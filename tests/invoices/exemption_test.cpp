#include "invoices/invoice_form_fixture.h"

namespace tarvello::testing {
namespace {

struct Exemption : InvoiceFormTest {
    Exemption() {
        given_invoice();
        start_invoice();
    }

    void tick_expenses(const std::function<void(frmArticoloEsenzione&)>& user) {
        windows().expect_modal("frmArticoloEsenzione",
                               [=](Form& dialog) { user(dynamic_cast<frmArticoloEsenzione&>(dialog)); });
        form().CheckSpese.click();
        windows().expect_none_left();
    }
    void expect_expenses(const std::string& article) {
        EXPECT_TRUE(form().CheckSpese.checked());
        EXPECT_EQ(form().txtArticoloEsenzione.text(), article);
        EXPECT_TRUE(form().txtImportoSpeseAnticipate.visible());
        EXPECT_TRUE(form().txtImportoSpeseAnticipate.enabled());
        EXPECT_EQ(form().ShapeImportoSpeseAnticipate.back_color(), colors::white);
    }
    void expect_no_expenses() {
        EXPECT_FALSE(form().CheckSpese.checked());
        EXPECT_EQ(form().txtArticoloEsenzione.text(), "");
        EXPECT_EQ(form().txtImportoSpeseAnticipate.text(), "");
        EXPECT_FALSE(form().txtImportoSpeseAnticipate.visible());
        EXPECT_EQ(form().ShapeImportoSpeseAnticipate.back_color(), colors::grey);
        EXPECT_FALSE(form().ShapeImportoSpeseAnticipate.visible());
    }
};

TEST_F(Exemption, AnArticleIsWrittenInParentheses) {
    OptionButton frmArticoloEsenzione::*const options[] = {
        &frmArticoloEsenzione::Option1, &frmArticoloEsenzione::Option2, &frmArticoloEsenzione::Option3};
    const char* const articles[] = {"(Art. 10 D.p.r. 633/72)", "(Art. 15 D.p.r. 633/72)",
                                    "(Art. 74 D.p.r. 633/72)"};
    for (std::size_t i = 0; i < 3; ++i) {
        tick_expenses([&](frmArticoloEsenzione& dialog) {
            dialog.Option4.click();
            (dialog.*options[i]).click();
            EXPECT_FALSE(dialog.txtEsenzioneIVA.enabled());
            EXPECT_EQ(dialog.txtEsenzioneIVA.back_color(), colors::grey);
            dialog.OKButton.click();
        });
        expect_expenses(articles[i]);
        EXPECT_TRUE(form().ShapeImportoSpeseAnticipate.visible());
        fill(form().txtImportoSpeseAnticipate, "10");
        form().CheckSpese.click();
        expect_no_expenses();
    }
}

TEST_F(Exemption, WordsOfTheUsersOwnAndNone) {
    tick_expenses([](frmArticoloEsenzione& dialog) {
        dialog.txtEsenzioneIVA.type("not yet");
        dialog.Option4.click();
        EXPECT_EQ(dialog.txtEsenzioneIVA.back_color(), colors::white);
        dialog.txtEsenzioneIVA.type("Art. 26");
        dialog.OKButton.click();
    });
    expect_expenses("Art. 26");
    form().CheckSpese.click();
    expect_no_expenses();
    tick_expenses([](frmArticoloEsenzione& dialog) {
        dialog.Option4.click();
        dialog.OKButton.click();
    });
    expect_expenses("");
    form().CheckSpese.click();
    tick_expenses([](frmArticoloEsenzione& dialog) { dialog.OKButton.click(); });
    expect_expenses("");
}

TEST_F(Exemption, CancellingTakesTheExpensesAway) {
    tick_expenses([](frmArticoloEsenzione& dialog) { dialog.CancelButton.click(); });
    expect_no_expenses();
    press("Annulla");
    expect_no_expenses();
}

TEST_F(Exemption, ChoosingTheRateOfTheExpenses) {
    form().txtArticoloEsenzione.set_text("(Art. 15 D.p.r. 633/72)");
    form().ComboIVASpeseAnticipate.set_text("");
    windows().expect_modal("frmArticoloEsenzione", [](Form& dialog) {
        EXPECT_EQ(dynamic_cast<frmArticoloEsenzione&>(dialog).txtparam.text(), "1");
    });
    form().ComboIVASpeseAnticipate.set_list_index(0);
    EXPECT_EQ(form().txtArticoloEsenzione.text(), "");
}

} // namespace
} // namespace tarvello::testing
