#include "customers/customer_form.h"
#include "desktop/desktop_test.h"

#include <QApplication>
#include <QClipboard>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QPalette>
#include <QTest>

namespace tarvello::testing {
namespace {

const char* const form = "frmCalcolaCF";

/// The calculator as the user reaches it: from the register of customers.
struct FiscalCodeWindow : DesktopTest {
    /// Opens the calculator for a new customer, called Rossi Mario, and acts in it.
    void calculate(const std::function<void()>& acts) {
        user.expect_modal("frmClienti", [this, acts] {
            user.settle(); // until the keyboard has come to the window
            user.click("frmClienti", "Toolbar1_1");
            user.type("frmClienti", "txtfields_11", "Rossi");
            user.type("frmClienti", "txtfields_1", "Mario");
            user.expect_modal(form, acts);
            user.click("frmClienti", "cmdCalcolaCF");
            code_of_customer = user.shown("frmClienti", "txtfields_0");
        });
        user.choose_menu("MDIForm1", "mnuAnagrafica_Clienti");
        user.expect_none_left();
    }
    QLineEdit* comune() { return user.widget<QLineEdit>(form, "txtComune"); }
    std::string shown(const std::string& control) { return user.shown(form, control); }

    std::string code_of_customer;
};

TEST_F(FiscalCodeWindow, TheCodeLandsInTheBoxOfTheCustomer) {
    start();
    calculate([this] {
        EXPECT_EQ(shown("txtCognome") + shown("txtNome") + shown("cboSesso"), "RossiMarioMaschio");
        user.click(form, "txtNome");
        user.press(Qt::Key_Tab);
        user.type("29021981");
        user.expect_box("La data di nascita non e' valida.");
        user.press(Qt::Key_Tab);
        EXPECT_EQ(user.focus(), "DTPicker1");
        user.type("01011980");
        user.type(form, "txtComune", "roma");
        EXPECT_EQ(shown("txtProvincia"), "RM");
        user.choose(form, "cboSesso", 1);
        user.click(form, "cmdElabora");
        EXPECT_FALSE(user.widget(form, "cmdElabora")->isEnabled());
        user.take_picture(form, "calcolo-codice-fiscale");
        user.click(form, "cmdExit");
    });
    EXPECT_EQ(code_of_customer, "RSSMRA80A41H501Y");
}

TEST_F(FiscalCodeWindow, TheSearchFollowsTheTextAndNotTheKeys) {
    start();
    calculate([this] {
        user.type(form, "txtComune", "ROM");
        EXPECT_EQ(shown("txtComune"), "Roma");
        EXPECT_EQ(comune()->selectedText(), "a");
        user.press(Qt::Key_Backspace);
        EXPECT_EQ(shown("txtComune") + shown("txtCodice"), "RomH501");
        user.expect_box("Comune non in elenco.");
        user.type("x");
        user.expect_none_left();
        user.type("y"); // told once
        EXPECT_EQ(shown("txtComune") + shown("txtCodice"), "Romxy?");
        EXPECT_EQ(comune()->palette().color(QPalette::Text).hslHue(), QColor(Qt::red).hslHue());
        EXPECT_EQ(user.focus(), "txtComune");
        user.take_picture(form, "comune-non-in-elenco");

        // Fast hands: a key goes down before the one before it is up.
        user.press(Qt::Key_A, Qt::ControlModifier);
        QTest::keyPress(comune(), 'm');
        QTest::keyPress(comune(), 'i');
        QTest::keyRelease(comune(), 'm');
        QTest::keyPress(comune(), 'l');
        QTest::keyRelease(comune(), 'i');
        QTest::keyRelease(comune(), 'l');
        EXPECT_EQ(shown("txtComune"), "Milano");
        EXPECT_EQ(comune()->selectedText(), "ano");
        EXPECT_NE(comune()->palette().color(QPalette::Text).hslHue(), QColor(Qt::red).hslHue());
        user.press(Qt::Key_A, Qt::ControlModifier);
        EXPECT_EQ(comune()->selectedText(), "Milano") << "a shortcut changes no text";
        QTest::keyPress(comune(), Qt::Key_Shift);
        QTest::keyPress(comune(), 'R', Qt::ShiftModifier);
        QTest::keyRelease(comune(), 'R', Qt::ShiftModifier);
        QTest::keyRelease(comune(), Qt::Key_Shift);
        EXPECT_EQ(comune()->selectedText(), "abbi") << "the end of Shift is no key of its own";
        QApplication::clipboard()->setText("forl\n");
        user.press(Qt::Key_A, Qt::ControlModifier);
        user.press(Qt::Key_V, Qt::ControlModifier);
        QInputMethodEvent composed;
        composed.setCommitString(QStringLiteral("ì"));
        QApplication::sendEvent(comune(), &composed);
        EXPECT_EQ(shown("txtComune") + shown("txtCodice"), "ForlìD704");
    });
}

} // namespace
} // namespace tarvello::testing
