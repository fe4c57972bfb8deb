#include "invoices/invoice_form_fixture.h"
#include "places.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

namespace tarvello::testing {
namespace {

const std::filesystem::path top = std::filesystem::path(TARVELLO_TEST_DATA).parent_path();

std::string text_of(const std::filesystem::path& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::vector<std::string> matches(const std::string& text, const std::string& pattern) {
    const std::regex wanted(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator it(text.begin(), text.end(), wanted), end; it != end; ++it)
        found.push_back((*it)[1]);
    return found;
}

/// Every text that the program can show, between quotes or <string> marks: literals that go on in the next
/// line are joined, and the marks of access keys taken out.
std::string texts_of_the_program() {
    std::string texts;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(top / "src")) {
        const std::string kind = entry.path().extension().string();
        if (kind == ".cpp" || kind == ".h" || kind == ".ui") texts += text_of(entry.path());
    }
    texts = std::regex_replace(texts, std::regex("\"\\s*\\n\\s*\""), "");
    texts = std::regex_replace(texts, std::regex("&amp;|&"), "");
    return std::regex_replace(texts, std::regex("\\\\\""), "\"");
}

/// What the guide says must stay true when the windows change.
struct Guide : InvoiceFormTest {
    const std::string guide = text_of(top / "docs/guida.md");

    /// The texts between two marks. What stands in backquotes is the reader's, and a bold sentence that opens
    /// a paragraph is a heading.
    std::vector<std::string> marked(const std::string& mark) const {
        const std::string plain = std::regex_replace(guide, std::regex("`[^`]*`"), "");
        std::vector<std::string> found;
        std::istringstream lines(plain);
        for (std::string line; std::getline(lines, line);) {
            line = std::regex_replace(line, std::regex("\\\\\\*"), "\x01");
            for (const std::string& text : matches(line, mark)) {
                const bool heading =
                    line.starts_with("**" + text) && text.ends_with('.') && !text.ends_with("...");
                if (!heading) found.push_back(std::regex_replace(text, std::regex("\x01"), "*"));
            }
        }
        EXPECT_GT(found.size(), 20u);
        return found;
    }
};

TEST_F(Guide, NamesWhatTheWindowsShow) {
    const std::string texts = texts_of_the_program();
    for (const std::string& name : marked("\\*\\*([^*]+)\\*\\*")) {
        const bool shown =
            texts.find('"' + name + '"') != std::string::npos ||
            texts.find('>' + name + '<') != std::string::npos ||
            texts.find('"' + name + "   ") != std::string::npos; // a menu entry with its blanks
        EXPECT_TRUE(shown) << "no window shows " << name;
    }
    for (const std::string& message : marked("(?:^|[^*])\\*([^* ][^*]*)\\*(?!\\*)")) {
        EXPECT_NE(texts.find(message), std::string::npos) << "no message says " << message;
    }
}

TEST_F(Guide, LeadsToPicturesAndChaptersThatAreThere) {
    for (const std::string& picture : matches(guide, "\\]\\((pictures/[^)]+)\\)")) {
        EXPECT_TRUE(std::filesystem::exists(top / "docs" / picture)) << picture;
    }
    std::vector<std::string> chapters;
    for (std::string chapter : matches(guide, "\\n##? ([^\\n]+)")) {
        std::erase_if(chapter, [](char c) { return c == ',' || c == '\''; });
        std::replace(chapter.begin(), chapter.end(), ' ', '-');
        std::transform(chapter.begin(), chapter.end(), chapter.begin(),
                       [](unsigned char c) { return std::tolower(c); });
        chapters.push_back(chapter);
    }
    for (const std::string& link : matches(guide, "\\]\\(#([^)]+)\\)")) {
        EXPECT_TRUE(std::find(chapters.begin(), chapters.end(), link) != chapters.end()) << link;
    }
}

TEST_F(Guide, ShowsTheAmountsThatTheProgramComputes) {
    given_invoice();
    const auto calculate = [this](const std::string& rivalsa_in_withholding) {
        fake.settings.set("Check1", "value", rivalsa_in_withholding);
        form().cmdCalcola.click();
    };
    start_invoice();
    fill_line(0, "Analisi del sistema informativo", "1250");
    fill_line(1, "Formazione del personale, 3 ore", "337,5");
    form().CheckRivalsa.click();
    form().ComboPercentualeRivalsa.set_text("4");
    form().ComboIVAApplicata.set_text("22");
    windows().expect_modal("frmArticoloEsenzione", [](Form& dialog) {
        dynamic_cast<frmArticoloEsenzione&>(dialog).OKButton.click();
    });
    form().CheckSpese.click();
    fill(form().txtImportoSpeseAnticipate, "32");
    form().CheckRitenuta.click();
    form().ComboRitenuta.set_text("20");
    form().ComboRitenutaSu.set_text("100");
    calculate("1");
    const std::pair<const char*, TextBox*> rows[] = {{"Rivalsa 4%", &form().txtImportoRivalsa},
                                                     {"Imponibile", &form().txtImponibile},
                                                     {"I.V.A. 22%", &form().txtIVA},
                                                     {"Spese anticipate", &form().txtImportoSpeseAnticipate},
                                                     {"Totale fattura", &form().txtTotaleFattura},
                                                     {"Ritenuta d'acconto 20%", &form().txtRitenutaAcconto},
                                                     {"Importo netto", &form().txtImportoNetto}};
    for (const auto& [row, amount] : rows) {
        EXPECT_THAT(matches(guide, "\\| " + std::string(row) + " \\| [^|]* \\| ([^|]*) \\|"),
                    ::testing::ElementsAre(amount->text()))
            << row;
    }
    calculate("0");
    for (TextBox* amount : {&form().txtRitenutaAcconto, &form().txtImportoNetto}) {
        EXPECT_NE(guide.find(amount->text()), std::string::npos) << amount->text();
    }
}

} // namespace
} // namespace tarvello::testing
