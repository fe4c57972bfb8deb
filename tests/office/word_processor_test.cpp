#include "office_test.h"

#include "failure.h"
#include "platform/office/document_format.h"

#include <algorithm>
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <thread>

#include <sys/stat.h>

namespace tarvello {
namespace {

using namespace std::chrono_literals;

/// A document with a table, formatting inside a placeholder, and placeholders in another letter case.
const char* const sample = R"({\rtf1\ansi\ansicpg1252\deff0{\fonttbl{\f0 Arial;}}
\trowd\cellx5000\cellx9000\pard\intbl %Nome{\b Cli\i e}nte%\cell prima %Pagamento2% dopo\cell\row\pard
A %nomecliente% B\par [%Vuoto%]\par %Descrizione\u224?% %Altro%\par x%Lungo%x\par})";

/// The processes started meanwhile keep their temporary files in this folder.
struct TemporaryFilesIn {
    explicit TemporaryFilesIn(const std::string& folder) {
        if (const char* before = std::getenv("TMPDIR")) before_ = before;
        ::setenv("TMPDIR", folder.c_str(), 1);
    }
    ~TemporaryFilesIn() { before_ ? ::setenv("TMPDIR", before_->c_str(), 1) : ::unsetenv("TMPDIR"); }

private:
    std::optional<std::string> before_;
};

struct WordProcessing : testing::OfficeTest {
    OfficeWordProcessor processor = make(settings);

    /// Fills the template and gives the text of what was saved.
    std::string filled(const std::string& path,
                       const std::vector<std::pair<std::string, std::string>>& values,
                       const std::string& saved = "fattura.rtf") {
        const auto application = processor.start();
        application->open_read_only(path);
        for (const auto& [name, value] : values) application->replace_all(name, value);
        application->save_as(folder + "/" + saved);
        application->quit();
        return text_of(folder + "/" + saved);
    }
};

TEST_F(WordProcessing, ReplacesWhateverStandsInAValue) {
    const std::string strange = "Ro\"ssi \\ & {x} $1 \\n ^p < \t€ Ω 漢 😀 %NomeCliente%";
    const std::string original = sample;
    const std::string path = file("modello.rtf", original);
    const std::string text = filled(path, {{"%NomeCliente%", strange},
                                           {"%Pagamento2%", "Banca\r\nABI: 1\nCAB\rC/C"},
                                           {"%Vuoto%", ""},
                                           {"%DescrizioneÀ%", "perch\xC3\xA9 \x01\x02\x07\xEF\xBF\xB9no"},
                                           {"%Lungo%", std::string(10'000, 'z')}});
    EXPECT_LT(text.find(strange), text.find("prima")) << "also where the formatting changes inside it\n"
                                                      << text;
    EXPECT_NE(text.find("A " + strange + " B"), std::string::npos) << "without regard to letter case";
    EXPECT_NE(text.find("prima Banca\nABI: 1\nCAB\nC/C dopo"), std::string::npos) << text;
    EXPECT_NE(text.find("[]"), std::string::npos);
    EXPECT_NE(text.find("perché no %Altro%"), std::string::npos) << "other texts in percent signs stay";
    EXPECT_NE(text.find("x" + std::string(10'000, 'z') + "x"), std::string::npos);
    EXPECT_EQ(fake.files.read(path), original);
    EXPECT_EQ(fake.files.files_in(folder, "*"), (std::vector<std::string>{"fattura.rtf", "modello.rtf"}));
}

TEST_F(WordProcessing, TheFormatIsThatOfTheTemplate) {
    const std::string rtf = file("modello.rtf", sample);
    filled(rtf, {}, "fattura.doc");
    EXPECT_TRUE(fake.files.read(folder + "/fattura.doc").starts_with("{\\rtf"));
    const std::string doc = converted(rtf, "doc");
    filled(doc, {{"%Altro%", "uno"}}, "fattura.rtf");
    EXPECT_TRUE(fake.files.read(folder + "/fattura.rtf").starts_with("\xD0\xCF\x11\xE0"));
    std::filesystem::rename(folder + "/fattura.rtf", folder + "/senza estensione");
    EXPECT_NE(text_of(folder + "/senza estensione").find("uno"), std::string::npos);
}

TEST_F(WordProcessing, OneHelperServesOneDocumentAfterTheOther) {
    const std::string path = file("modello.rtf", sample);
    for (int run = 0; run < 3; ++run) filled(path, {{"%Vuoto%", "x"}});
    EXPECT_EQ(helpers().size(), 1u);
}

TEST_F(WordProcessing, TwoDocumentsAtOnceDoNotMeet) {
    const auto first = processor.start();
    first->open_read_only(file("uno.rtf", "{\\rtf1 uno %x%}"));
    const auto second = processor.start();
    second->open_read_only(file("due.rtf", "{\\rtf1 due %x%}"));
    first->replace_all("%x%", "1");
    second->replace_all("%x%", "2");
    first->save_as(folder + "/a.rtf");
    second->save_as(folder + "/b.rtf");
    EXPECT_EQ(text_of(folder + "/a.rtf"), "uno 1\n");
    EXPECT_EQ(text_of(folder + "/b.rtf"), "due 2\n");
}

TEST_F(WordProcessing, ShowsACopyThatTheDesktopKnows) {
    const auto application = processor.start();
    application->open_read_only(file("modello.doc", sample));
    application->save_as(folder + "/anteprima");
    application->show();
    EXPECT_EQ(shown, std::vector{folder + "/anteprima.rtf"});
    EXPECT_EQ(fake.files.read(folder + "/anteprima"), fake.files.read(folder + "/anteprima.rtf"));

    // The user has left it open: the next one must not look like it.
    file(".~lock.anteprima.rtf#", "");
    const auto next = processor.start();
    next->open_read_only(file("modello.doc", sample));
    next->save_as(folder + "/anteprima");
    next->show();
    EXPECT_EQ(shown.back(), folder + "/anteprima-2.rtf");
}

TEST_F(WordProcessing, HostileTemplates) {
    const std::string doc = fake.files.read(converted(file("modello.rtf", sample), "doc"));
    const auto open = [&](const std::string& name, const std::string& content) {
        const auto application = processor.start();
        application->open_read_only(file(name, content));
        application->replace_all("%Altro%", "uno");
        application->save_as(folder + "/fattura.doc");
    };
    // An empty file is an empty document.
    open("vuoto.doc", "");
    EXPECT_EQ(text_of(folder + "/fattura.doc"), "\n");
    // What is no document is refused without a try.
    const std::string picture = std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) + std::string(300, '\x7f');
    EXPECT_NE(failure_of([&] { open("foto.doc", picture); }).find("non è un documento"), std::string::npos);
    EXPECT_NE(failure_of([&] {
                  open("foto2.doc", "\xFF\xD8\xFF\xE0" + std::string("\0\x10JFIF", 6));
              }).find("non è un documento"),
              std::string::npos);
    EXPECT_FALSE(failure_of([&] {
                     const auto application = processor.start();
                     application->open_read_only(folder + "/manca.rtf");
                 }).empty());
    // Truncated and garbled ones open or fail; the word processor must live through it.
    for (const std::size_t keep : {std::size_t{9}, std::size_t{512}, doc.size() / 3, doc.size() - 700}) {
        skip_failures([&] { open("troncato.doc", doc.substr(0, keep)); });
        skip_failures([&] { open("troncato.rtf", std::string(sample).substr(0, keep % 300 + 6)); });
    }
    open("modello.rtf", sample);
    EXPECT_NE(text_of(folder + "/fattura.doc").find("uno"), std::string::npos);
}

TEST_F(WordProcessing, ATemplateThatTakesForEverIsGivenUp) {
    std::string rtf = "{\\rtf1\\ansi ";
    while (rtf.size() < (std::size_t{20} << 20)) rtf += "Una riga di testo che si ripete.\\par\n";
    settings.patience = 8s; // in which the office must start, on a busy machine too
    OfficeWordProcessor hasty = make(settings);
    const auto application = hasty.start();
    EXPECT_FALSE(failure_of([&] { application->open_read_only(file("grande.rtf", rtf + "}")); }).empty());
    EXPECT_TRUE(helpers().empty());
}

TEST_F(WordProcessing, AHelperThatDies) {
    const std::string path = file("modello.rtf", sample);
    auto application = processor.start();
    application->open_read_only(path);
    ASSERT_EQ(helpers().size(), 1u);
    ::kill(helpers()[0], SIGKILL);
    EXPECT_EQ(failure_of([&] { application->replace_all("%Altro%", "x"); }),
              "Il programma di scrittura si è chiuso in modo imprevisto.");
    EXPECT_EQ(failure_of([&] { application->save_as(folder + "/fattura.rtf"); }),
              "Il programma di scrittura non è più in funzione.");
    EXPECT_FALSE(fake.files.exists(folder + "/fattura.rtf"));
    application.reset();
    EXPECT_NE(filled(path, {{"%Altro%", "di nuovo"}}).find("di nuovo"), std::string::npos)
        << "the next one is a new one";

    ::kill(helpers().at(0), SIGKILL); // while it waits for work
    while (!helpers().empty()) std::this_thread::yield();
    EXPECT_NE(filled(path, {{"%Altro%", "ancora"}}).find("ancora"), std::string::npos);
}

TEST_F(WordProcessing, AHelperThatHangsIsEnded) {
    settings.patience = 6s;
    OfficeWordProcessor hasty = make(settings);
    const auto application = hasty.start();
    application->open_read_only(file("modello.rtf", sample));
    const auto running = helpers();
    ASSERT_EQ(running.size(), 1u);
    ::kill(running[0], SIGSTOP);
    EXPECT_EQ(failure_of([&] { application->replace_all("%Altro%", "x"); }),
              "Il programma di scrittura non ha risposto in tempo ed è stato chiuso.");
    EXPECT_TRUE(helpers().empty());
}

TEST_F(WordProcessing, NothingIsLeftBehind) {
    // Other programs of this machine may have a word processor at work: this one keeps its files elsewhere.
    const TemporaryFilesIn own_folder(folder);
    const auto folders = [] {
        const auto entries = std::filesystem::directory_iterator(std::filesystem::temp_directory_path());
        return std::count_if(begin(entries), end(entries), [](const auto& entry) {
            return entry.path().filename().string().starts_with("tarvello-office-");
        });
    };
    const auto before = folders();
    {
        OfficeWordProcessor other = make(settings);
        const auto application = other.start();
        EXPECT_EQ(folders(), before + 1);
    }
    EXPECT_EQ(folders(), before);
    EXPECT_TRUE(helpers().empty());
    // A helper that has nothing to do ends by itself, and cleans up.
    settings.idle = 1s;
    OfficeWordProcessor idle = make(settings);
    idle.start();
    for (int wait = 0; wait < 600 && folders() != before; ++wait) std::this_thread::sleep_for(100ms);
    EXPECT_EQ(folders(), before);
}

TEST_F(WordProcessing, WithoutLibreOfficeOrItsHelper) {
    settings.office_folder = folder;
    OfficeWordProcessor without_office = make(settings);
    EXPECT_EQ(failure_of([&] { without_office.start(); }),
              "Impossibile avviare il programma di scrittura: LibreOffice non è installato.");
    settings.helper = folder + "/tarvello-office";
    OfficeWordProcessor without_helper = make(settings);
    EXPECT_EQ(failure_of([&] { without_helper.start(); }),
              "Impossibile avviare il programma di scrittura: manca il programma \"" + settings.helper +
                  "\".");
    // A program that is no helper of ours talks nonsense, or nothing.
    settings.helper =
        file("tarvello-office", "#!/bin/sh\nprintf 'ciao a tutti e buona giornata' >&3\nsleep 1\n");
    ::chmod(settings.helper.c_str(), 0755);
    OfficeWordProcessor nonsense = make(settings);
    EXPECT_EQ(failure_of([&] { nonsense.start(); }),
              "Il programma di scrittura si è chiuso in modo imprevisto.");
}

TEST(DocumentFormat, IsKnownByTheContent) {
    using office::document_format;
    EXPECT_EQ(document_format("{\\rtf1 x}"), "rtf");
    EXPECT_EQ(document_format("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1..."), "doc");
    EXPECT_EQ(document_format("PK\x03\x04....mimetypeapplication/vnd.oasis.opendocument.text"), "odt");
    EXPECT_EQ(document_format("PK\x03\x04....[Content_Types].xml"), "docx");
    EXPECT_EQ(document_format("PK\x03\x04....any.zip"), "");
    EXPECT_EQ(document_format("  <!DOCTYPE HTML>"), "html");
    EXPECT_EQ(document_format("Fattura %Anno%\r\n"), "txt");
    EXPECT_EQ(document_format(""), "txt");
    EXPECT_EQ(document_format(std::string_view("a\0b", 3)), "");
}

} // namespace
} // namespace tarvello
