#include "documents/print_reports.h"

#include "documents/printing_test.h"
#include "documents/report_table.h"
#include "program/maker_site.h"

namespace tarvello {
namespace {

using testing::PrintedText;

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
    EXPECT_EQ(report.document, "Fattura 7-2006");
    for (const PrintedText& expected : testing::printed_texts) {
        const bool address = std::string(expected.name) == "Label6";
        EXPECT_EQ(text(report, expected.name), expected.text + (address ? maker_host() : ""))
            << expected.name;
    }
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

ReportFont font_of(char style, bool second) {
    const bool other = second && style != 'a';
    return {other ? "Tahoma" : "Arial",
            style == 'N'   ? 11.25
            : style == 'D' ? 9
                           : 8.25,
            style == 'N' || style == 'b' || (style == 'd' && second),
            style == 'D' || (style == 'i' && second)};
}

TEST_F(PrintReports, BothLayoutsHaveTheSamePlacesAndTheirOwnFonts) {
    for (const bool second : {false, true}) {
        Report report = second ? DataReport2() : DataReport1();
        EXPECT_EQ(report.width, 9630);
        EXPECT_EQ(report.margin, 1000);
        EXPECT_EQ(report.window, (ReportBox{60, 450, 13000, 10000}));
        std::map<std::string, ReportControl> controls;
        int top = 0;
        for (ReportSection& section : report.sections) {
            for (ReportControl& control : section.controls) {
                control.box.top += top;
                EXPECT_TRUE(controls.emplace(control.name, control).second) << control.name;
            }
            top += section.height;
        }
        EXPECT_EQ(top, 14355);
        const auto take = [&](const std::string& name, ReportBox box) {
            SCOPED_TRACE(name);
            const ReportControl control = controls[name];
            EXPECT_EQ(controls.erase(name), 1u);
            EXPECT_EQ(control.box, box);
            return control.look;
        };
        for (const PrintedText& expected : testing::printed_texts) {
            const auto label = std::get<ReportLabel>(take(expected.name, expected.box));
            EXPECT_EQ(label.font, font_of(expected.font, second)) << expected.name;
            EXPECT_EQ("lrc"[static_cast<int>(label.alignment)], expected.alignment) << expected.name;
            const bool grey = std::string(expected.name) == "Label6";
            EXPECT_EQ(label.color, grey ? (Color{128, 128, 128}) : (Color{0, 0, 0})) << expected.name;
        }
        take("ImageLogo", {6945, 45, 2640, 2025});
        const int body = testing::section2_top;
        for (const auto& [name, box] :
             std::map<std::string, ReportBox>{{"Shape4", {0, 3000, 9630, 1770}},
                                              {"Shape3", {0, body, 9630, 405}},
                                              {"Shape1", {0, body + 405, 9630, 345}},
                                              {"Shape2", {0, body + 750, 9630, 5100}},
                                              {"Shape5", {0, body + 5850, 9630, 1395}}}) {
            const auto frame = std::get<ReportRectangle>(take(name, box));
            EXPECT_EQ(frame.border, (Color{128, 128, 128}));
            EXPECT_EQ(frame.fill, name == "Shape1" ? std::optional(Color{224, 224, 224}) : std::nullopt);
        }
        for (const auto& [name, box] :
             std::map<std::string, ReportBox>{{"Line2", {5795, 3000, 0, 1770}},
                                              {"Line3", {0, body + 2865, 9630, 0}},
                                              {"Line4", {0, body + 4470, 9630, 0}},
                                              {"Line1", {0, body + 5265, 9630, 0}},
                                              {"Line7", {7275, body + 420, 0, 5445}}}) {
            EXPECT_EQ(std::get<ReportLine>(take(name, box)).color, (Color{128, 128, 128}));
        }
        EXPECT_TRUE(controls.empty()) << controls.begin()->first;
    }
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
