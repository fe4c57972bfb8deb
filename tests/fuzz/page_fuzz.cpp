// The readers of pages: definitions, catalogue, usage maps, data pages, long values. A sample with patches is
// opened and read from end to end, and gets a table.
#include "patched_file.h"

#include "failure.h"
#include "store/engine.h"
#include "store/statement.h"

#include <cstdlib>

using namespace tarvello;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const RegionalSettings regional;
    const PatchedFile file(TARVELLO_TEST_DATA "/data/access/archivio.mdb", data, size);
    try {
        const auto engine = store::open_engine(file.path(), regional);
        for (const char* sql :
             {"SELECT * FROM Clienti", "SELECT * FROM Fatture WHERE ID<30", "SELECT * FROM DatiIntestazione",
              "INSERT INTO Clienti(Appunti) VALUES('a')", "DELETE * FROM Fatture WHERE ID<9",
              "UPDATE Clienti SET Appunti='un testo che sta fuori dalla riga, su una pagina sua' "
              "WHERE Numero_Cliente<5"}) {
            try {
                const auto rows = engine->run(store::parse_statement(sql));
                while (rows && rows->next()) {
                    for (std::size_t i = 0; i < rows->columns().size(); ++i) rows->value(i);
                }
            } catch (const Failure& failure) {
                if (failure.description().empty()) std::abort();
            }
        }
        engine->tables();
        engine->create_table({"Scadenze",
                              {{"ID", store::ColumnKind::autonumber}, {"Note", store::ColumnKind::memo}},
                              {"ID"},
                              {},
                              0});
    } catch (const Failure& failure) {
        if (failure.description().empty()) std::abort();
    }
    return 0;
}
