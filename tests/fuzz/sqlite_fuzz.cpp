// Databases and lists of municipalities of the embedded engine: a sample with patches is looked at from end
// to end, read by its index, and written to.
#include "patched_file.h"

#include "failure.h"
#include "store/archive_check.h"
#include "store/engine.h"
#include "store/ordered_table.h"

#include <cstdlib>

#include <sqlite3.h>

using namespace tarvello;

namespace {

std::string sample() {
    const std::string path = "/dev/shm/tarvello-fuzz-sample-" + std::to_string(getpid());
    sqlite3* database = nullptr;
    sqlite3_open(path.c_str(), &database);
    sqlite3_exec(
        database,
        "CREATE TABLE Clienti (Numero_Cliente INTEGER PRIMARY KEY AUTOINCREMENT, Nome TEXT, Appunti TEXT);"
        "CREATE TABLE Comuni (COMU_DESCR TEXT, COMU_COD TEXT);"
        "CREATE INDEX COMUNI2L ON Comuni (COMU_DESCR);"
        "WITH n(i) AS (SELECT 1 UNION ALL SELECT i+1 FROM n WHERE i<200) INSERT INTO Clienti "
        "SELECT i, 'Nome '||i, hex(zeroblob(i)) FROM n;"
        "INSERT INTO Comuni SELECT Nome, Numero_Cliente FROM Clienti",
        nullptr, nullptr, nullptr);
    sqlite3_close(database);
    return path;
}

void or_say_why(const auto& act) {
    try {
        act();
    } catch (const Failure& failure) {
        if (failure.description().empty()) std::abort();
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const RegionalSettings regional;
    static const std::string original = sample();
    const PatchedFile file(original, data, size);
    or_say_why([&] { store::why_unsound(file.path(), regional); });
    or_say_why([&] { store::open_ordered_table(file.path(), "Comuni", "COMUNI2L", "COMU_DESCR"); });
    or_say_why([&] {
        const auto engine = store::open_engine(file.path(), regional);
        engine->run(store::parse_statement("INSERT INTO Clienti(Nome) VALUES('a')"));
    });
    unlink((file.path() + "-journal").c_str());
    return 0;
}
