#include "documents/print_reports.h"

#include "documents/printing_test.h"

namespace tarvello {
namespace {

struct PrintReports : testing::PrintingTest {
    PrintReports() { program->session().txtModelloReport.set_text("1"); }

    Report printed() {
        form().cmdStampaFattura.click();
        if (fake.reports.shown.empty()) return {};
        return fake.reports.shown.back();
    }
    static std::string text(Report& report, const std::string& name) {
        for (ReportSection& section : report.sections) {
            for (ReportControl& control : section.controls) {
                if (control.name == name) return std::get<ReportLabel>(control.look).text;
            }
        }
        return "no such control";
    }
};

TEST_F(PrintReports, ShowsWhatIsStored) {
    given(full_letterhead(), full_invoice());
    form().PrestazioneSingola[0].set_text("not saved yet");
    Report report = printed();
    EXPECT_EQ(report.caption, "Anteprima di stampa");
    const std::map<std::string, std::string> expected{
        {"NomeDitta", "Studio Bianchi"},
        {"DescrizioneAttività", "Ingegneria civile"},
        {"Label1", "Tel."},
        {"TelefonoDitta", "06 1234"},
        {"Data", "05/03/2006"},
        {"Cognome", "Rossi Luigi"},
        {"Indirizzo2", "20100 - Milano (MI)"},
        {"PICliente", "09876543210"},
        {"NumeroFattura", "7/2006"},
        {"Descrizione1", "Progetto della struttura"},
        {"Importo1", "€ 1.000,00"},
        {"Descrizione5", "Quinta"},
        {"Rivalsa", "Rivalsa INPS 2%"},
        {"ImportoRivalsa", "€ 24,69"},
        {"AliquotaIVA", "IVA 20% su € 1.259,25"},
        {"SpeseAnticipate", "Spese Anticipate art. 15"},
        {"ImportoSpeseAnticipate", "€ 14,62"},
        {"RitenutaAcconto", "Dedotta R.A. 20% su 100% Imponibile"},
        {"ImportoRitenuta", "€ 246,91"},
        {"label", "Totale Dovuto"},
        {"TotaleDovuto", "€ 1.278,81"},
        {"TitoloPagamento", "Pagamento"},
        {"Pagamento", "Banca di Roma\nABI: 03002\nCAB: 03200\nC/C: 000123"}};
    for (const auto& [name, value] : expected) EXPECT_EQ(text(report, name), value) << name;
    EXPECT_TRUE(text(report, "Label6").starts_with("Fattura Realizzata con TARVELLO 4 - "));
    EXPECT_FALSE(program->database().rsReport.is_open());
}

TEST_F(PrintReports, FixedWordsStayWhateverFollowsThem) {
    auto letterhead = full_letterhead();
    letterhead["Telefono"] = "";
    given(letterhead, bare_invoice());
    Report report = printed();
    EXPECT_EQ(text(report, "RitenutaAcconto"), "Dedotta R.A. % su % Imponibile");
    EXPECT_EQ(text(report, "ImportoRitenuta"), "");
    EXPECT_EQ(text(report, "SpeseAnticipate"), " art. 15");
    EXPECT_EQ(text(report, "ImportoSpeseAnticipate"), "");
    EXPECT_EQ(text(report, "Rivalsa"), "Rivalsa INPS %");
    EXPECT_EQ(text(report, "Label1"), "Tel.");
    EXPECT_EQ(text(report, "TelefonoDitta"), "");
    EXPECT_EQ(text(report, "TitoloPagamento"), "");
}

TEST_F(PrintReports, TheTwoDifferInFontsAlone) {
    Report first = DataReport1();
    const Report second = DataReport2();
    ASSERT_EQ(first.sections.size(), second.sections.size());
    int height = 0;
    int other_fonts = 0;
    for (std::size_t s = 0; s < first.sections.size(); ++s) {
        const auto& left = first.sections[s];
        const auto& right = second.sections[s];
        EXPECT_EQ(left.height, right.height);
        height += left.height;
        ASSERT_EQ(left.controls.size(), right.controls.size());
        for (std::size_t c = 0; c < left.controls.size(); ++c) {
            const ReportControl& control = left.controls[c];
            EXPECT_EQ(control.name, right.controls[c].name);
            EXPECT_EQ(control.box, right.controls[c].box);
            EXPECT_LE(control.box.right(), first.width) << control.name;
            EXPECT_LE(control.box.bottom(), left.height) << control.name;
            const auto* label = std::get_if<ReportLabel>(&control.look);
            if (!label) continue;
            const auto& font = std::get<ReportLabel>(right.controls[c].look).font;
            EXPECT_EQ(label->font.family, "Arial") << control.name;
            if (font.family != "Arial") ++other_fonts;
            if (control.name == "label") {
                EXPECT_EQ(font, (ReportFont{"Tahoma", 8.25, true, false}));
                EXPECT_EQ(label->font, (ReportFont{"Arial", 8.25, false, false}));
            } else if (control.name == "EMail") {
                EXPECT_EQ(font, (ReportFont{"Tahoma", 8.25, false, true}));
            } else if (control.name == "NomeDitta") {
                EXPECT_EQ(font, (ReportFont{"Tahoma", 11.25, true, false}));
            } else if (control.name == "Data") {
                EXPECT_EQ(font, label->font);
            }
        }
    }
    EXPECT_EQ(other_fonts, 51) << "all but Data, NumeroFattura and Label6";
    EXPECT_LE(height + 2 * first.margin, 16838) << "one page of A4";
}

TEST_F(PrintReports, TheLayoutIsTheOneInForce) {
    given(full_letterhead(), full_invoice());
    TextBox& layout = program->session().txtModelloReport;
    layout.set_text("2");
    EXPECT_EQ(printed().name, "DataReport2");
    for (const char* other : {"3", "1,5", "99999"}) {
        layout.set_text(other);
        printed();
        EXPECT_EQ(fake.reports.shown.size(), 1u) << other << ": nothing comes, without a word";
    }
    for (const char* none : {"", "due"}) {
        layout.set_text(none);
        boxes().expect({"Impossibile eseguire la stampa.", "Tarvello 4", BoxIcon::critical});
        printed();
    }
    EXPECT_EQ(fake.reports.shown.size(), 1u);
}

TEST_F(PrintReports, TheLogo) {
    given(full_letterhead(), full_invoice());
    EXPECT_EQ(printed().image("ImageLogo").path, "");
    TextBox& path = program->session().txtPercorsoLogo;
    path.set_text("/logo.gif");
    boxes().expect({"Impossibile eseguire la stampa.", "Tarvello 4", BoxIcon::critical});
    printed();
    fake.pictures.sizes["/logo.gif"] = {100, 100};
    EXPECT_EQ(printed().image("ImageLogo").size_mode, ReportSizeMode::clip);
    fake.settings.set("CheckAdattaLogo", "value", "1");
    EXPECT_EQ(printed().image("ImageLogo").size_mode, ReportSizeMode::stretch);
}

TEST_F(PrintReports, FailuresOfTheData) {
    given({}, full_invoice());
    boxes().expect({"Per eseguire la stampa è necessario inserire i dati di intestazione", "Tarvello 4",
                    BoxIcon::information});
    printed();
    given({{"Nome_Azienda", "Studio"}}, full_invoice()); // all other columns are null
    boxes().expect({"La colonna \"Indirizzo\" non ha un valore.\n", "Tarvello 4", BoxIcon::critical});
    printed();
    given(full_letterhead(), full_invoice());
    form().txtCurrent_ID.set_text("999");
    boxes().expect({"Nessuna riga corrente.\n", "Tarvello 4", BoxIcon::critical});
    printed();
    EXPECT_TRUE(fake.reports.shown.empty());
    EXPECT_FALSE(program->database().rsFatture.is_open());
}

} // namespace
} // namespace tarvello
