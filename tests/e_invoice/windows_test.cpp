#include "documents/letterhead_form.h"
#include "e_invoice/code_choice.h"
#include "e_invoice/customer_data_form.h"
#include "e_invoice/desk.h"
#include "e_invoice/e_invoice_form.h"
#include "e_invoice/e_invoice_list_form.h"
#include "e_invoice/entry_faults.h"
#include "e_invoice/issuer_data_form.h"
#include "e_invoice/parties.h"
#include "e_invoice/receipt_support.h"
#include "e_invoice/sample.h"
#include "invoices/invoice_form.h"
#include "program/doors.h"
#include "support/program_test.h"

#include <gmock/gmock.h>

#include <filesystem>

namespace tarvello::e_invoice {
namespace {

using testing::bytes_of;
using ::testing::HasSubstr;
using ::testing::Not;

/// The windows of electronic invoices on an archive with the first worked invoice and nothing set up.
struct EInvoiceWindows : testing::ProgramTest {
    EInvoiceWindows() {
        fake.clock.now = soon_after;
        store_letterhead(connection(), worked.issuer);
        add_invoice();
        std::filesystem::create_directory(out);
    }

    Connection& connection() { return program->database().dbConnection; }
    void add_invoice() { store_row(connection(), worked.invoice); }
    Records records() { return Records(connection()); }
    /// Everything that is asked once was told.
    void set_up() {
        records().save_issuer(worked.issuer);
        records().save_customer(1, worked.customer);
    }
    void open(int invoice, const std::function<void(frmFatturaElettronica&)>& user) {
        windows().expect_modal("frmFatturaElettronica",
                               [&](Form& form) { user(static_cast<frmFatturaElettronica&>(form)); });
        program->doors().open_e_invoice(invoice);
        windows().expect_none_left();
    }
    void create(int invoice) {
        if (records().files().empty()) fake.dialogs.answer_next(out);
        open(invoice, [&](frmFatturaElettronica& window) {
            boxes().expect_any();
            window.cmdCrea.click();
            boxes().expect_none_left();
        });
    }
    frmFattureElettroniche& list() {
        auto& window = program->form<frmFattureElettroniche>();
        return window;
    }
    std::string state(std::size_t row = 0) { return std::string(list().lstFatture.rows().cell(row, 4)); }
    /// Lets the list read this receipt from a file.
    std::string take(const std::string& name, const std::string& text) {
        testing::write_bytes(fake.program_directory + "/" + name, text);
        fake.dialogs.answer_next(fake.program_directory + "/" + name);
        boxes().expect_any();
        list().cmdRicevuta.click();
        return boxes().last().text;
    }
    static std::string receipt(const std::string& root, const std::string& name,
                               const std::string& more = {}) {
        return testing::receipt_text(root, testing::private_namespace,
                                     "<IdentificativoSdI>" + std::to_string(root.size()) +
                                         "</IdentificativoSdI><NomeFile>" + name + "</NomeFile>" + more);
    }

    Sample worked = sample(firm);
    const std::string out = fake.program_directory + "/fatture";
};

constexpr const char* first_file = "ITDNGNCL75E14F205Y_00001.xml";
constexpr const char* second_file = "ITDNGNCL75E14F205Y_00002.xml";

TEST(EntryFaults, AreTold) {
    const auto office = [](std::string_view code) { return recipient_fault(code, true); };
    const auto private_code = [](std::string_view code) { return recipient_fault(code, false); };
    const auto short_text = [](std::string_view text) { return text_fault(text, 5); };
    const struct {
        std::function<std::string(std::string_view)> check;
        std::vector<const char*> good, wrong;
    } cases[] = {
        {short_text, {"", "àèìòù"}, {"àèìòùx", "Γειά"}},
        {cap_fault, {"", " 20122 "}, {"2012", "201222", "2012A"}},
        {province_fault, {"", "mi"}, {"MIL", "M1", "M"}},
        {iban_fault, {"", "IT60 X054 2811 1010 0000 0123 456"}, {"IT60X0542811101000000123457", "IT"}},
        {partita_iva_fault, {"", "IT 01234560157"}, {"01234560158"}},
        {codice_fiscale_fault, {"", "dngncl75e14f205y"}, {"DNGNCL75E14F205X"}},
        {private_code, {"", "abc1234", "0000000"}, {"ABC123", "ABC-123*"}},
        {office, {"", "UFABC1"}, {"ABC1234"}},
        {pec_fault,
         {"", "a@b.it"},
         {"a", "a@b", "@b.it", "è@b.it", "a b@c.it", "a@b@c.it", "a@b.it.", "sdi01@pec.fatturapa.it"}}};
    for (const auto& c : cases) {
        for (const char* text : c.good) EXPECT_EQ(c.check(text), "") << text;
        for (const char* text : c.wrong) EXPECT_NE(c.check(text), "") << text;
    }
}

TEST(ProposedIssuer, IsReadOutOfTheLetterhead) {
    const auto proposed = [](const char* name, const char* address) {
        Issuer issuer;
        issuer.Nome_Azienda = name;
        issuer.Codice_Fiscale = "DNGNCL75E14F205Y";
        issuer.Indirizzo = address;
        issuer = proposed_issuer(issuer);
        return issuer.Titolo + "|" + issuer.Nome + "|" + issuer.Cognome + "|" + issuer.CAP + "|" +
               issuer.Comune + "|" + issuer.Provincia + "|" + parts_of(issuer.Indirizzo).street;
    };
    EXPECT_EQ(proposed("Dott.ssa Elena Ferri", "Via Cavour 21 - 50129 Firenze"),
              "Dott.ssa|Elena|Ferri|50129|Firenze||Via Cavour 21");
    EXPECT_EQ(proposed("Niccolò De Luca", "P.za Libertà, 3/a, 67100 L'Aquila (aq)"),
              "|Niccolò|De Luca|67100|L'Aquila|AQ|P.za Libertà, 3/a");
    EXPECT_EQ(proposed("Anna Alò", "Via 24 Maggio, 12345"), "|Anna|Alò||||Via 24 Maggio, 12345");
}

TEST_F(EInvoiceWindows, WhoIssuesIsProposedCheckedAndKept) {
    auto& window = program->form<frmDatiFatturaElettronica>();
    EXPECT_EQ(window.txtNome.text() + "|" + window.txtCognome.text() + "|" + window.txtTitolo.text(),
              "Niccolò|D'Angelo|Ing.");
    EXPECT_EQ(window.txtIBAN.text(), "IT60X0542811101000000123456");
    EXPECT_THAT(window.cboRegime.text(), HasSubstr("(RF01)"));
    EXPECT_THAT(window.cboTipoRitenuta.text(), HasSubstr("(RT01)"));
    EXPECT_EQ(window.lblAvviso.caption(), "");

    boxes().expect("Inserire il CAP di chi emette la fattura.");
    window.cmdSalva.click();
    EXPECT_EQ(window.focus(), &window.txtCAP);
    window.txtCAP.type("201");
    window.txtComune.enter();
    window.txtProvincia.enter();
    EXPECT_EQ(window.lblAvviso.caption(), "Il CAP ha cinque cifre.");
    window.txtCAP.set_text("20122");
    window.txtComune.type("Milano");
    window.txtProvincia.type("mi");
    window.txtCapitale.type("molto");
    boxes().expect("Il capitale si scrive come 10.000,00.");
    window.cmdSalva.click();
    window.txtCapitale.set_text("10.000,00");
    window.cboNumero.choose(1);
    boxes().expect("Dati per la fattura elettronica salvati correttamente.");
    window.cmdSalva.click();

    const Issuer kept = records().issuer();
    EXPECT_EQ(kept.CAP + kept.Comune + kept.Provincia, "20122MilanoMI");
    EXPECT_EQ(kept.IscrizioneREA.CapitaleSociale, 1'000'000);
    EXPECT_EQ(kept.number_form, NumberForm::plain);
    EXPECT_EQ(program->form<frmDatiFatturaElettronica>().cboNumero.list_index(), 1);
}

TEST_F(EInvoiceWindows, ACustomersDataAreCheckedAndKept) {
    windows().expect_modal("frmDatiClienteElettronica", [&](Form& form) {
        auto& window = static_cast<frmDatiClienteElettronica&>(form);
        EXPECT_EQ(window.lblCliente.caption(), "Comune di Prova");
        EXPECT_FALSE(window.txtIVAEstera.enabled()) << "of customers abroad";
        window.chkPA.click();
        boxes().expect("Di una pubblica amministrazione serve il codice ufficio: si trova nell'indice IPA.");
        window.cmdSalva.click();
        window.txtCodice.type("abc1234");
        boxes().expect_any();
        window.cmdSalva.click();
        window.txtCodice.set_text("uf abc1");
        window.cmdSalva.click();
        EXPECT_EQ(program->loaded<frmDatiClienteElettronica>(), nullptr);
    });
    program->doors().edit_e_invoice_customer(4, "Comune di Prova");
    EXPECT_EQ(records().customer(4).CodiceDestinatario, "UFABC1");
    EXPECT_TRUE(records().customer(4).public_administration);

    auto& window = program->form<frmDatiClienteElettronica>();
    window.edit(5, "Müller GmbH");
    window.cboNazione.choose(static_cast<int>(
        std::find(window.cboNazione.items().begin(), window.cboNazione.items().end(), "Germania (DE)") -
        window.cboNazione.items().begin()));
    window.txtIVAEstera.type("DE129273398");
    window.cmdSalva.click();
    EXPECT_EQ(records().customer(5).Nazione, "DE");
    EXPECT_EQ(records().customer(5).IdCodice, "DE129273398");
}

TEST_F(EInvoiceWindows, TheFirstInvoiceAsksForWhatIsMissingAndWritesTheFile) {
    windows().expect_modal("frmDatiFatturaElettronica", [&](Form& form) {
        auto& window = static_cast<frmDatiFatturaElettronica&>(form);
        window.txtCAP.type("20122");
        window.txtComune.type("Milano");
        window.txtProvincia.set_text("MI");
        window.cboCassa.choose(12);
        boxes().expect_any();
        window.cmdSalva.click();
    });
    windows().expect_modal("frmDatiClienteElettronica", [&](Form& form) {
        auto& window = static_cast<frmDatiClienteElettronica&>(form);
        window.txtCodice.type("ABC1234");
        window.cmdSalva.click();
    });
    fake.dialogs.answer_next(out);
    open(1, [&](frmFatturaElettronica& window) {
        EXPECT_EQ(window.lblTitolo.caption(), "Fattura n. 1 del 10/03/2026 a Officine Riunite S.r.l.");
        EXPECT_THAT(window.txtVista.html(), HasSubstr("Sopralluogo"));
        boxes().expect_any();
        window.cmdCrea.click();
        EXPECT_THAT(boxes().last().text, HasSubstr(first_file));
        EXPECT_THAT(window.lblStato.caption(), HasSubstr("Stato: creata"));
    });
    EXPECT_EQ(bytes_of(out + "/" + first_file), worked.xml);
    EXPECT_EQ(fake.settings.get("FatturaElettronica", "progressivo_DNGNCL75E14F205Y"), "1");
}

TEST_F(EInvoiceWindows, WhatIsWrongLeadsToItsField) {
    set_up();
    worked.invoice.CAP = "";
    add_invoice();
    open(2, [&](frmFatturaElettronica& window) {
        EXPECT_EQ(window.lstControlli.rows().cell(0, 0), "Errore");
        EXPECT_EQ(window.lstControlli.rows().cell(0, 2), "CAP del cliente");
        boxes().expect("La fattura elettronica non si può creare: correggere prima gli errori elencati.");
        window.cmdCrea.click();
        window.cmdCorreggi.click();
        EXPECT_EQ(program->loaded<frmFatturaElettronica>(), nullptr);
    });
    auto& invoice = program->form<frmTarvello>();
    EXPECT_EQ(invoice.txtCurrent_ID.text(), "2");
    EXPECT_EQ(invoice.focus(), &invoice.customer.txtAnagrafica[CustomerBlock::cap]);
    EXPECT_TRUE(std::filesystem::is_empty(out));
}

TEST_F(EInvoiceWindows, WhatWasToldOnceIsMendedWhereItWasTold) {
    set_up();
    connection().execute("UPDATE FE_Emittente SET Comune=''");
    connection().execute("UPDATE FE_Clienti SET PECDestinatario='no',CodiceDestinatario=''");
    connection().execute("UPDATE DatiIntestazione SET Partita_IVA='01234560158'");
    open(1, [&](frmFatturaElettronica& window) {
        const auto mend = [&](std::string_view field) {
            for (std::size_t row = 0; row < window.lstControlli.rows().size(); ++row) {
                if (window.lstControlli.rows().cell(row, 2) == field) window.lstControlli.set_selected(row);
            }
            window.cmdCorreggi.click();
        };
        windows().expect_modal("frmDatiFatturaElettronica", [&](Form& form) {
            auto& issuer = static_cast<frmDatiFatturaElettronica&>(form);
            EXPECT_EQ(issuer.focus(), &issuer.txtComune);
            EXPECT_THAT(issuer.lblIntestazione.caption(),
                        HasSubstr("La partita IVA 01234560158 non è valida."));
        });
        mend("comune di chi emette la fattura");
        windows().expect_modal("frmDatiClienteElettronica", [&](Form& form) {
            EXPECT_EQ(form.focus(), &static_cast<frmDatiClienteElettronica&>(form).txtPEC);
        });
        mend("PEC del cliente");
        mend("partita IVA dell'intestazione");
    });
    auto& letterhead = program->form<frmIntestazioneFatture>();
    EXPECT_EQ(letterhead.focus(), &letterhead.Text1[frmIntestazioneFatture::partita_iva]);
}

TEST_F(EInvoiceWindows, TheLastNatureIsProposedToWhoSeesItAndNotToManyAtOnce) {
    set_up();
    worked.invoice.Aliquota_IVA = "Esente";
    add_invoice();
    add_invoice();
    open(2, [&](frmFatturaElettronica& window) {
        EXPECT_EQ(window.decisions.cboNatura.text(), "da scegliere");
        EXPECT_FALSE(window.decisions.chkBollo.checked());
        choose_code(window.decisions.cboNatura, "N4");
        EXPECT_TRUE(window.decisions.chkBollo.checked()) << "it goes with the nature";
        EXPECT_THAT(window.decisions.txtCausale.text(), HasSubstr("bollo"));
        window.decisions.txtCausale.set_text("Lezioni");
        window.decisions.chkBollo.click();
        choose_code(window.decisions.cboNatura, "N2.1");
        choose_code(window.decisions.cboNatura, "N4");
        EXPECT_FALSE(window.decisions.chkBollo.checked()) << "the user has decided otherwise";
        EXPECT_EQ(window.decisions.txtCausale.text(), "Lezioni");
        window.cmdChiudi.enter();
    });
    open(3, [&](frmFatturaElettronica& window) {
        EXPECT_THAT(window.decisions.cboNatura.text(), HasSubstr("(N4)"));
    });
    Desk desk(*program);
    EXPECT_EQ(desk.source(*desk.invoice(3)).decisions.Natura, "");
}

TEST_F(EInvoiceWindows, AFileThatIsOlderThanItsInvoiceIsNotSentUnseen) {
    set_up();
    create(1);
    auto& window = list();
    sql("UPDATE Fatture SET Prestazione1='Altro'");
    open(1, [&](frmFatturaElettronica& shown) {
        EXPECT_THAT(shown.lblStato.caption(), HasSubstr("crearlo di nuovo"));
    });
    boxes().expect_any(Answer::no);
    window.cmdInviata.click();
    EXPECT_EQ(state(), "creata");
    create(1);
    boxes().expect_any(Answer::no); // the mail
    window.cmdInviata.click();
    EXPECT_EQ(state(), "inviata");
}

TEST_F(EInvoiceWindows, DecisionsChangeTheDocumentAndAreKept) {
    set_up();
    worked.invoice.Aliquota_IVA = "Esente";
    add_invoice();
    open(2, [&](frmFatturaElettronica& window) {
        window.decisions.cboNatura.choose(0);
        window.decisions.txtCausale.set_text("prima\n\n seconda ");
        window.decisions.txtDataCollegata.type("ieri");
        window.cmdChiudi.enter();
        EXPECT_THAT(window.txtVista.html(), HasSubstr("seconda"));
        const ListRows& rows = window.lstControlli.rows();
        bool told = false;
        for (std::size_t row = 0; row < rows.size(); ++row) {
            told = told || rows.cell(row, 1).find("non è una data") != std::string::npos;
        }
        EXPECT_TRUE(told);
        window.cmdChiudi.click();
    });
    EXPECT_EQ(records().newest(2)->decisions.Causale, (std::vector<std::string>{"prima", "seconda"}));
    EXPECT_EQ(records().newest(2)->state, DeliveryState::to_create);
}

TEST_F(EInvoiceWindows, ARejectionIsToldAndCured) {
    set_up();
    create(1);
    auto& window = list();
    EXPECT_EQ(state(), "creata");
    EXPECT_EQ(window.lstFatture.rows().cell(0, 5), "2") << "twelve days from the tenth";
    boxes().expect_any(Answer::yes);
    window.cmdInviata.click();
    ASSERT_EQ(fake.desktop.opened.size(), 1u);
    EXPECT_THAT(fake.desktop.opened[0], HasSubstr("mailto:sdi01@pec.fatturapa.it?subject="));
    EXPECT_EQ(state(), "inviata");
    EXPECT_FALSE(window.cmdFirmato.enabled());

    EXPECT_THAT(take("altrui.xml", receipt("RicevutaConsegna", "IT01234567890_00001.xml")),
                HasSubstr("registrate: 0"));
    EXPECT_EQ(state(), "inviata");
    const std::string rejection =
        receipt("RicevutaScarto", first_file,
                "<ListaErrori><Errore><Codice>00305</Codice><Descrizione>Partita IVA &lt;ignota&gt;"
                "</Descrizione></Errore></ListaErrori>");
    EXPECT_THAT(take("scarto.xml", rejection), HasSubstr("registrate: 1"));
    EXPECT_EQ(state(), "scartata");
    EXPECT_THAT(window.txtRicevute.html(), HasSubstr("<b>00305</b> Partita IVA &lt;ignota&gt;"));
    boxes().expect_any();
    window.lstFatture.drop_files({fake.program_directory + "/scarto.xml"});
    EXPECT_THAT(boxes().last().text, HasSubstr("registrate: 0")) << "it has come before";

    create(1);
    EXPECT_TRUE(std::filesystem::exists(out + "/" + second_file));
    const std::string folder = fake.program_directory + "/ricevute";
    std::filesystem::create_directory(folder);
    testing::write_bytes(folder + "/x.xml", receipt("RicevutaConsegna", second_file));
    testing::write_bytes(folder + "/y.XML", "rotto");
    records().save_state(2, DeliveryState::sent, soon_after);
    fake.dialogs.answer_next(folder);
    boxes().expect_any();
    window.cmdRicevute.click();
    EXPECT_THAT(boxes().last().text, HasSubstr("registrate: 1"));
    EXPECT_EQ(state(), "consegnata");
    EXPECT_EQ(window.lstFatture.rows().cell(0, 6), second_file);

    // What has arrived is not changed or deleted without a word.
    auto& invoice = program->form<frmTarvello>();
    boxes().expect_any(Answer::no);
    invoice.cmdModificaDati.click();
    EXPECT_THAT(boxes().last().text, HasSubstr("risulta consegnata"));
    EXPECT_EQ(invoice.cmdModificaDati.caption(), "Modifica Dati");
    boxes().expect("\nEliminare la fattura?", Answer::yes);
    boxes().expect_any(Answer::no);
    invoice.cmdEliminaFattura.click();
    EXPECT_EQ(sql("SELECT * FROM Fatture").size(), 1u);
    boxes().expect_any(Answer::yes);
    invoice.cmdModificaDati.click();
    EXPECT_EQ(invoice.cmdModificaDati.caption(), "Aggiorna Dati");
}

TEST_F(EInvoiceWindows, TheFileForAnAdministrationWaitsForItsSignature) {
    set_up();
    Customer office;
    office.public_administration = true;
    office.CodiceDestinatario = "UFABC1";
    records().save_customer(1, office);
    create(1);
    auto& window = list();
    EXPECT_EQ(state(), "da firmare");
    EXPECT_FALSE(window.cmdInviata.enabled());
    std::string file = bytes_of(out + "/" + first_file);
    file.insert(file.rfind("</"), "<ds:Signature xmlns:ds=\"http://www.w3.org/2000/09/xmldsig#\"/>");
    const auto choose = [&](const std::string& name) {
        testing::write_bytes(fake.program_directory + "/" + name, file);
        fake.dialogs.answer_next(fake.program_directory + "/" + name);
        boxes().expect_any();
        window.cmdFirmato.click();
        return state();
    };
    EXPECT_EQ(choose(second_file), "da firmare") << "another file's name";
    EXPECT_EQ(choose(first_file), "creata");
    EXPECT_TRUE(window.cmdInviata.enabled());
}

TEST_F(EInvoiceWindows, TheListIsNarrowedSortedCreatedAtOnceAndExported) {
    set_up();
    worked.invoice.Numero_Fattura = "2";
    worked.invoice.Numero_Cliente = 2; // told nothing yet
    worked.invoice.Cognome_Ragione_Sociale = "Bianchi S.p.A.";
    add_invoice();
    worked.invoice.Numero_Fattura = "3";
    worked.invoice.Numero_Cliente = 1;
    worked.invoice.Cognome_Ragione_Sociale = "Officine Riunite S.r.l.";
    add_invoice();
    auto& window = list();
    EXPECT_EQ(window.cboAnno.text(), "2026");
    ASSERT_EQ(window.lstFatture.rows().size(), 3u);
    window.txtFiltro.type("bianchi");
    EXPECT_EQ(window.lstFatture.rows().size(), 1u);
    window.txtFiltro.clear();
    window.cboOrdine.choose(3);
    EXPECT_EQ(window.lstFatture.rows().cell(0, 0), "2");
    window.chkDecrescente.click();
    EXPECT_EQ(window.lstFatture.rows().cell(2, 0), "2");

    boxes().expect("Creare i file di 3 fatture?", Answer::yes);
    fake.dialogs.answer_next(out);
    boxes().expect_any();
    window.cmdCreaTutte.click();
    EXPECT_THAT(boxes().last().text, HasSubstr("create: 2"));
    EXPECT_THAT(boxes().last().text, HasSubstr("n. 2: mancano i dati del cliente"));
    EXPECT_EQ(records().counter(), 2);
    window.cboStato.choose(1);
    ASSERT_EQ(window.lstFatture.rows().size(), 1u);
    EXPECT_EQ(window.lstFatture.rows().cell(0, 0), "2");

    const std::string exported = fake.program_directory + "/elenco.csv";
    fake.dialogs.answer_next(exported);
    boxes().expect_any();
    window.cmdEsporta.click();
    EXPECT_THAT(bytes_of(exported), HasSubstr("Bianchi S.p.A."));
    EXPECT_THAT(bytes_of(exported), Not(HasSubstr("Officine")));
}

TEST_F(EInvoiceWindows, TheCourtesyCopyGoesToTheCustomer) {
    set_up();
    given_customer({{"email", "ufficio@officine.example"}});
    const std::string path = fake.program_directory + "/copia";
    fake.dialogs.answer_next(path);
    open(1, [&](frmFatturaElettronica& window) {
        boxes().expect("La copia di cortesia è stata salvata in:\n" + path + ".pdf");
        window.cmdMail.click();
    });
    EXPECT_THAT(bytes_of(path + ".pdf"), HasSubstr("copia di cortesia"));
    ASSERT_EQ(fake.desktop.opened.size(), 1u);
    EXPECT_THAT(fake.desktop.opened[0], HasSubstr("mailto:ufficio@officine.example?subject=Parcella%20"));
}

TEST_F(EInvoiceWindows, WithoutADatabaseTheMenusSaySo) {
    connection().close();
    for (MenuItem* item :
         {&program->form<MDIForm1>().mnuFattureElettroniche, &program->form<MDIForm1>().mnuDatiElettronica}) {
        boxes().expect("Nessun database connesso.");
        item->click();
    }
}

} // namespace
} // namespace tarvello::e_invoice
