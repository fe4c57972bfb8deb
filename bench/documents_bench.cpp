// Documents and files: a document from a template, a copy of a large database.

#include "row.h"

#include "platform/office/office_word_processor.h"
#include "platform/posix/posix_files.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

namespace tarvello::bench {
namespace {

std::string in_folder(const std::string& name) {
    std::filesystem::create_directories(TARVELLO_BENCH_FOLDER);
    return std::string(TARVELLO_BENCH_FOLDER) + "/" + name;
}

/// A file of 100 MB that does not shrink: no file system can make holes of it.
const std::string& large_file() {
    static const std::string path = [] {
        const std::string made = in_folder("large.mdb");
        std::ofstream file(made, std::ios::binary);
        std::string block(1 << 20, '\0');
        unsigned state = 1;
        for (int megabyte = 0; megabyte < 100; ++megabyte) {
            for (char& byte : block) byte = static_cast<char>((state = state * 1664525 + 1013904223) >> 24);
            file << block;
        }
        return made;
    }();
    return path;
}

void copy_ours(benchmark::State& state) {
    const std::string source = large_file();
    const std::string target = in_folder("copy.mdb");
    PosixFiles files;
    for (auto _ : state) files.copy(source, target);
}

void copy_floor(benchmark::State& state) {
    const std::string target = in_folder("copy.mdb");
    const std::string command = "cp '" + large_file() + "' '" + target + "' && sync '" + target + "'";
    for (auto _ : state) {
        if (std::system(command.c_str()) != 0) state.SkipWithError("cp failed");
    }
}

void document(benchmark::State& state, const std::string& name) {
    PosixFiles files;
    OfficeWordProcessor processor({TARVELLO_OFFICE_HELPER, {}}, files,
                                  [](const std::string&) { return true; });
    processor.start(); // warm from here on
    for (auto _ : state) {
        const auto application = processor.start();
        application->open_read_only(std::string(TARVELLO_TEMPLATES "/") + name);
        for (int i = 1; i <= 5; ++i) {
            for (const char* word : {"Descrizione", "Importo", "NomeDitta", "Imponibile", "TotaleFattura",
                                     "Pagamento", "CogRagSoc", "Rivalsa", "e-mail"}) {
                application->replace_all("%" + std::string(word) + std::to_string(i) + "%", "€ 1.234,56");
            }
        }
        application->save_as(in_folder("fattura"));
        application->quit();
    }
}

void rtf_document(benchmark::State& state) { document(state, "Moderno.rtf"); }
void doc_document(benchmark::State& state) { document(state, "Standard.doc"); }

const bool registered = [] {
    row("copy of a database of 100 MB beside cp and sync", copy_ours, copy_floor, 1.2, Clock::wall);
    row_within("document from a template, rtf, warm", rtf_document, 500'000, Clock::wall);
    row_within("document from a template, doc, warm", doc_document, 500'000, Clock::wall);
    return true;
}();

} // namespace
} // namespace tarvello::bench
