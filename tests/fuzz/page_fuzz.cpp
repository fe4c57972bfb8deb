// The readers and writers of pages: definitions, catalogue, usage maps, data pages, long values, indexes. A
// sample with patches is opened, read from end to end and by its indexes both ways, written to, and gets a
// table.
#include "patched_file.h"

#include "failure.h"
#include "store/engine.h"
#include "store/statement.h"

#include <cstdlib>

using namespace tarvello;

namespace {

void or_say_why(const auto& act) {
    try {
        act();
    } catch (const Failure& failure) {
        if (failure.description().empty()) std::abort();
    }
}

/// Enough to cross from page to page of an index; more would cost inputs.
constexpr int most_rows = 200;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const RegionalSettings regional;
    if (size == 0) return 0;
    const bool indexed = data[0] % 2 != 0;
    const PatchedFile file(indexed ? TARVELLO_TEST_DATA "/data/access/indici.mdb"
                                   : TARVELLO_TEST_DATA "/data/access/archivio.mdb",
                           data + 1, size - 1);
    or_say_why([&] {
        const auto engine = store::open_engine(file.path(), regional);
        for (const char* sql :
             {"SELECT * FROM Clienti ORDER BY Cognome_Ragione_Sociale",
              "SELECT * FROM Fatture ORDER BY ID DESC", "SELECT * FROM Fatture WHERE Anno=2006",
              "SELECT * FROM Clienti WHERE Numero_Cliente<30", "SELECT * FROM DatiIntestazione",
              "INSERT INTO Clienti(Appunti,Cognome_Ragione_Sociale) VALUES('a','b')",
              "DELETE * FROM Fatture WHERE ID<9",
              "UPDATE Clienti SET Cognome_Ragione_Sociale='Zeta',Appunti='un testo che sta fuori dalla riga, "
              "su una "
              "pagina sua' WHERE Numero_Cliente<5"}) {
            or_say_why([&] {
                const auto rows = engine->run(store::parse_statement(sql));
                for (int left = most_rows; rows && left > 0 && rows->next(); --left)
                    for (std::size_t i = 0; i < rows->columns().size(); ++i) rows->value(i);
            });
        }
        engine->tables();
        engine->create_table({"Scadenze",
                              {{"ID", store::ColumnKind::autonumber}, {"Note", store::ColumnKind::memo}},
                              {"ID"},
                              {},
                              0});
    });
    return 0;
}
