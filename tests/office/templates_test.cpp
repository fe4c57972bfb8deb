#include "office_test.h"

#include "documents/printing_test.h"
#include "places.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace tarvello {
namespace {

/// The shipped templates, filled by the whole program through the real word processor.
struct Templates : testing::PrintingTest, ::testing::WithParamInterface<const char*> {
    OfficeWordProcessor office{
        {TARVELLO_OFFICE_HELPER, {}}, fake.files, [](const std::string&) { return true; }};

    /// The program on a platform whose word processor is the real one.
    Templates() {
        Platform platform = fake.platform();
        Platform with_office{platform.boxes,
                             platform.dialogs,
                             platform.settings,
                             platform.clock,
                             platform.desktop,
                             platform.windows,
                             platform.files,
                             platform.copy_dialog,
                             platform.pictures,
                             office,
                             platform.reports,
                             platform.regional,
                             platform.program_directory,
                             platform.shipped_directory,
                             platform.state_directory,
                             platform.separator};
        program = std::make_unique<Program>(with_office);
        program->form<MDIForm1>();
        program->session().txtDatabaseRoute.set_text(database_path);
        program->session().txtProfessione.set_text("Rivalsa INPS");
        program->database().dbConnection.open(database_path);
    }

    /// Makes the document of the invoice. @return its path
    std::string filled() {
        const std::string folder = fake.program_directory + "/modelli";
        std::filesystem::copy_file(std::string(TARVELLO_TEMPLATES "/") + GetParam(),
                                   folder + "/" + GetParam());
        fake.files.write(folder + "/print.conf", folder + "/" + GetParam() + "\r\n");
        const std::string path =
            fake.program_directory + "/fattura" + std::filesystem::path(GetParam()).extension().string();
        fake.dialogs.answer_next(path);
        boxes().expect(
            "File di Microsoft Word correttamente compilato.\n\nLa fattura è stata salvata in: \n" + path);
        form().StampaWord.click();
        return path;
    }
    /// The same as it lies on paper, with a form feed behind each page.
    std::string filled_pages() {
        const std::string pdf = testing::convert(filled(), "pdf", fake.program_directory);
        const std::string text = pdf + ".txt";
        EXPECT_EQ(std::system(("pdftotext -layout '" + pdf + "' '" + text + "'").c_str()), 0);
        return fake.files.read(text);
    }
};

TEST_P(Templates, HoldEveryPlaceholder) {
    given(full_letterhead(), full_invoice());
    std::string text = testing::plain_text(filled(), fake.program_directory);
    const char* const values[] = {"5/3/2006",
                                  "Studio Bianchi",
                                  "Ingegneria civile",
                                  "Tel. 06 1234",
                                  "Fax. 06 5678",
                                  "e-mail: studio@bianchi.it",
                                  "Via Roma 1 - 00100 Roma",
                                  "C.F. BNCMRA80A01H501U",
                                  "P.I. 01234567890",
                                  "Rossi Luigi",
                                  "Corso Italia 12",
                                  "20100 Milano MI",
                                  "C.F. RSSLGU70B02F205X",
                                  "P.I. 09876543210",
                                  "7/2006",
                                  "Progetto della struttura",
                                  "Direzione dei lavori",
                                  "Terza",
                                  "Quarta",
                                  "Quinta",
                                  "€ 1.000,00",
                                  "€ 234,56",
                                  "€ 3,00",
                                  "€ 4,00",
                                  "€ 5,00",
                                  "20%",
                                  "esenti IVA art. 15",
                                  "Rivalsa INPS",
                                  "2%",
                                  "€ 24,69",
                                  "€ 1.259,25",
                                  "€ 251,85",
                                  "€ 1.525,72",
                                  "Spese Anticipate",
                                  "€ 14,62",
                                  "€ 246,91",
                                  "Dedotta R.A.",
                                  "20% su 100% Imponibile",
                                  "€ 1.278,81",
                                  "Banca d'appoggio: ",
                                  "Banca di Roma\nABI: 03002\nCAB: 03200\nC/C: 000123"};
    std::replace(text.begin(), text.end(), '\t', ' '); // columns
    for (const char* value : values) EXPECT_NE(text.find(value), std::string::npos) << value << "\n" << text;
    // A percent sign stands behind a rate and nowhere else: no placeholder is left.
    std::size_t signs = 0;
    for (const char c : text) signs += c == '%';
    EXPECT_EQ(signs, 4u) << text;
}

TEST_P(Templates, LiveWithWhatIsMissing) {
    auto letterhead = full_letterhead();
    letterhead["Telefono"] = letterhead["Fax"] = "";
    auto invoice = bare_invoice();
    for (int i = 1; i <= 5; ++i) { // so long that the amounts come to the end of the page
        std::string& service = invoice["Prestazione" + std::to_string(i)];
        for (int times = 0; times < 6; ++times) {
            service += "Consulenza professionale resa nel periodo indicato, con sopralluoghi, relazioni e "
                       "allegati al progetto. ";
        }
    }
    given(letterhead, invoice);
    const std::string text = filled_pages();
    EXPECT_EQ(text.find("Tel."), std::string::npos);
    EXPECT_EQ(text.find("Spese Anticipate"), std::string::npos);
    EXPECT_EQ(text.find("Banca"), std::string::npos);
    EXPECT_NE(text.find("Rivalsa INPS"), std::string::npos);
    EXPECT_NE(text.find("Dedotta R.A."), std::string::npos);
    std::size_t signs = 0;
    for (const char c : text) signs += c == '%';
    EXPECT_EQ(signs, 2u) << "the bare one of the surcharge, and that of the VAT rate\n" << text;
    const auto page_of = [&](const char* words) {
        return std::count(text.data(), text.data() + text.find(words), '\f');
    };
    EXPECT_EQ(page_of("Rivalsa INPS"), page_of("€ 1.278,81")) << "the amounts stay together\n" << text;
}

INSTANTIATE_TEST_SUITE_P(Shipped, Templates,
                         ::testing::Values("Standard.doc", "Classico.rtf", "Moderno.rtf", "Essenziale.rtf",
                                           "Elegante.doc", "Studio.doc"),
                         [](const auto& info) { return std::filesystem::path(info.param).stem().string(); });

} // namespace
} // namespace tarvello
