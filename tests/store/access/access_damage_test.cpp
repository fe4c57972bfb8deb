#include "store/access/access_support.h"

#include "store/statement.h"

#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <random>

namespace tarvello::testing {
namespace {

/// Damages of each sample. TARVELLO_ACCESS_DAMAGES=2000 makes it thorough.
int damages() {
    const char* wanted = std::getenv("TARVELLO_ACCESS_DAMAGES");
    return wanted != nullptr ? std::atoi(wanted) : 100;
}

class Damage {
public:
    explicit Damage(unsigned seed) : random_(seed) {}

    std::string of(std::string bytes) {
        switch (number(0, 7)) {
        case 0:
            bytes.resize(static_cast<std::size_t>(number(0, static_cast<int>(bytes.size()))));
            break;
        case 1:
            scatter(bytes, number(100, 3000));
            break;
        case 2:
            heads(bytes);
            break;
        case 3:
            copy_page(bytes);
            break;
        case 4:
            point_elsewhere(bytes, number(1, 30));
            break;
        case 5:
            definition(bytes);
            break;
        default:
            scatter(bytes, number(1, 40));
            break;
        }
        return bytes;
    }

private:
    int number(int low, int high) { return std::uniform_int_distribution(low, high)(random_); }
    int page(const std::string& bytes) { return number(0, static_cast<int>(bytes.size() / page_size) - 1); }

    void scatter(std::string& bytes, int count) {
        for (int i = 0; i < count; ++i) {
            bytes[static_cast<std::size_t>(number(0, static_cast<int>(bytes.size()) - 1))] =
                static_cast<char>(number(0, 255));
        }
    }
    /// Where pages keep their types, owners, neighbours, counts and slots.
    void heads(std::string& bytes) {
        for (int i = number(1, 10); i > 0; --i) {
            const auto at =
                static_cast<std::size_t>(page(bytes)) * page_size + static_cast<std::size_t>(number(0, 40));
            bytes[at] = static_cast<char>(number(0, 255));
        }
    }
    void copy_page(std::string& bytes) {
        const auto from = static_cast<std::size_t>(page(bytes)) * page_size;
        bytes.replace(static_cast<std::size_t>(page(bytes)) * page_size, page_size,
                      bytes.substr(from, page_size));
    }
    /// Numbers of pages that exist, put anywhere: chains that loop or join others.
    void point_elsewhere(std::string& bytes, int count) {
        for (int i = 0; i < count; ++i) {
            const int head[] = {4, 12, 16, 20, number(0, 4091)};
            const auto at = static_cast<std::size_t>(page(bytes)) * page_size +
                            static_cast<std::size_t>(head[number(0, 4)]);
            const int target = page(bytes);
            for (std::size_t byte = 0; byte < 4; ++byte)
                bytes[at + byte] = static_cast<char>(target >> (8 * byte));
        }
    }
    /// The definitions of tables, which everything else hangs on.
    void definition(std::string& bytes) {
        for (std::size_t at = 0; at < bytes.size(); at += page_size) {
            if (bytes[at] != 2 || number(0, 2) != 0) continue;
            for (int i = number(1, 20); i > 0; --i) {
                bytes[at + static_cast<std::size_t>(number(0, 2600))] = static_cast<char>(number(0, 255));
            }
        }
    }

    std::mt19937 random_;
};

/// Everything that a program may ask of a file. What fails must fail with words.
void use(const std::string& path) {
    std::unique_ptr<store::Engine> engine;
    if (description_of([&] { engine = open(path); }) != "(done)") return;
    for (const std::string sql :
         {"SELECT * FROM Clienti", "SELECT * FROM Fatture ORDER BY ID DESC", "SELECT * FROM DatiIntestazione",
          "SELECT * FROM Fatture WHERE Anno=2006",
          "SELECT * FROM Fatture WHERE Numero_Cliente=7 ORDER BY ID DESC",
          "SELECT * FROM Clienti WHERE Cognome_Ragione_Sociale LIKE '%ross%'",
          "INSERT INTO Clienti(Cognome_Ragione_Sociale,Appunti) VALUES('Rossi','inserito')",
          "UPDATE Clienti SET Cognome_Ragione_Sociale='Bianchi',Indirizzo='una via più lunga di prima' WHERE "
          "Numero_Cliente<9",
          "UPDATE Fatture SET Anno=1999,Pagamento='' WHERE ID<20", "DELETE * FROM Fatture WHERE ID>200",
          "DELETE * FROM DatiIntestazione", "SELECT * FROM Fatture", "(table)",
          "UPDATE Scadenze SET Codice='x',Nome='Bianchi' WHERE ID=3",
          "DELETE * FROM Scadenze WHERE Importo>5"}) {
        const std::string before = bytes_of(path);
        const std::string failure = description_of([&] {
            if (sql != "(table)") {
                run(*engine, sql);
                return;
            }
            store::TableDeclaration table = deadlines();
            table.columns.push_back({"Altro", store::ColumnKind::memo});
            table.indexes.push_back({"Per_tasso", {"Tasso"}});
            engine->tables();
            engine->create_table(table);
        });
        if (failure == "(done)") continue;
        EXPECT_TRUE(bytes_of(path) == before) << sql << " failed: " << failure;
    }
}

/// A sample, or one of them with a table of the program's own.
std::string sample_bytes(const std::string& sample) {
    if (sample != "scadenze") return bytes_of(access_sample(sample));
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "archivio.mdb");
    const auto engine = open(path);
    engine->create_table(deadlines());
    for (const std::string& sql : inserts_of_deadlines(1, 150)) run(*engine, sql);
    return bytes_of(path);
}

class AccessDamage : public ::testing::TestWithParam<const char*> {};

TEST_P(AccessDamage, FailsWithWordsAndInTime) {
    const TemporaryFolder folder;
    const std::string sample = sample_bytes(GetParam());
    const std::string path = folder.in("damaged.mdb");
    write_bytes(path, sample);
    use(path);
    for (int i = 0; i < damages(); ++i) {
        write_bytes(path, Damage(static_cast<unsigned>(i)).of(sample));
        const std::clock_t start = std::clock(); // of the processor: others may have the machine
        use(path);
        ASSERT_LT(std::clock() - start, 3 * CLOCKS_PER_SEC) << "damage " << i;
        std::filesystem::remove(path + "-undo");
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, AccessDamage,
                         ::testing::Values("vuoto.mdb", "archivio.mdb", "indici.mdb", "scadenze"),
                         [](const auto& sample) {
                             return std::string(sample.param).substr(0, std::string(sample.param).find('.'));
                         });

} // namespace
} // namespace tarvello::testing
