#include "desktop/desktop_test.h"

#include "e_invoice/delivery_state.h"

#include <QTabWidget>

#include <filesystem>

namespace tarvello::testing {
namespace {

/// Electronic invoices in their real windows, from the set-up to the list of a year.
class EInvoicesOnScreen : public DesktopTest {
protected:
    void given_archive() {
        Connection& connection = program().database().dbConnection;
        connection.execute(
            "INSERT INTO DatiIntestazione (Nome_Azienda,Indirizzo,Codice_Fiscale,Partita_IVA) VALUES "
            "(?,?,?,?)",
            {"Ing. Niccolò D'Angelo", "Via Santa Sofia, 12", "DNGNCL75E14F205Y", "01234560157"});
        connection.execute(
            "INSERT INTO Fatture (Numero_Fattura,Data_Fattura,Anno,Numero_Cliente,Partita_IVA,"
            "Cognome_Ragione_Sociale,Indirizzo,CAP,Provincia,Città,Prestazione1,Importo1,Imponibile,"
            "Aliquota_IVA,Imposta_IVA,Totale_Fattura,Importo_Netto) VALUES "
            "(?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?,?)",
            {"7", "10/03/2025", std::int64_t{2025}, std::int64_t{1}, "05432100963", "Officine Riunite S.r.l.",
             "Via dell'Industria 5", "24121", "BG", "Bergamo", "Consulenza tecnica", "€ 1.000,00",
             "€ 1.000,00", "22", "€ 220,00", "€ 1.220,00", "€ 1.220,00"});
        std::filesystem::create_directory(folder());
        program().platform().settings.write("Tarvello", "FatturaElettronica", "cartella", folder());
    }
    std::string folder() const { return program_folder() + "/fatture"; }

    void tell_the_issuer() {
        const std::string form = "frmDatiFatturaElettronica";
        user.expect_modal(form, [&] {
            EXPECT_EQ(user.shown(form, "txtCognome"), "D'Angelo");
            user.type(form, "txtCAP", "2012");
            user.type(form, "txtComune", "Milano");
            user.type(form, "txtIBAN", "IT60X0542811101000000123457");
            user.press(Qt::Key_Tab);
            EXPECT_NE(user.shown(form, "lblAvviso"), "");
            user.take_picture(form, "elettronica-emittente");
            user.type(form, "txtIBAN", "");
            user.type(form, "txtCAP", "20122");
            user.expect_box("Dati per la fattura elettronica salvati correttamente.");
            user.click(form, "cmdSalva");
        });
        user.choose_menu("MDIForm1", "mnuDatiElettronica");
    }

    void create() {
        const std::string customer = "frmDatiClienteElettronica";
        user.expect_modal(customer, [&] {
            user.type(customer, "txtCodice", "abc1234");
            user.take_picture(customer, "elettronica-cliente");
            user.click(customer, "cmdSalva");
        });
        const std::string form = "frmFatturaElettronica";
        user.expect_modal(form, [&] {
            user.take_picture(form, "elettronica-da-decidere");
            user.widget<QTabWidget>(form, "SSTab1")->setCurrentIndex(1);
            user.take_picture(form, "elettronica-documento");
            user.expect_box("La fattura elettronica è stata creata:\n" + file() + "\n\n" +
                            std::string(state_advice(e_invoice::DeliveryState::created)));
            user.click(form, "cmdCrea");
            user.click(form, "cmdChiudi");
        });
        user.choose_menu("MDIForm1", "mnuFatture");
        user.click("frmTarvello", "cmdElettronica");
        EXPECT_TRUE(std::filesystem::exists(file()));
    }
    std::string file() const { return folder() + "/ITDNGNCL75E14F205Y_00001.xml"; }
};

TEST_F(EInvoicesOnScreen, FromTheSetUpToTheListOfAYear) {
    start();
    given_archive();
    tell_the_issuer();
    create();
    user.choose_menu("MDIForm1", "mnuFattureElettroniche");
    EXPECT_EQ(user.shown("frmFattureElettroniche", "lblConsiglio"),
              std::string(state_advice(e_invoice::DeliveryState::created)));
    user.take_picture("frmFattureElettroniche", "elettronica-elenco");
}

} // namespace
} // namespace tarvello::testing
