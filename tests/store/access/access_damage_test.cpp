#include "store/access/access_support.h"

#include "failure.h"
#include "store/statement.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>
#include <sys/resource.h>

namespace tarvello::testing {
namespace {

// AddressSanitizer does, so that memory says nothing.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool keeps_freed_memory = true;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool keeps_freed_memory = true;
#else
constexpr bool keeps_freed_memory = false;
#endif
#else
constexpr bool keeps_freed_memory = false;
#endif

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
    try {
        engine = open(path);
    } catch (const Failure& failure) {
        EXPECT_FALSE(failure.description().empty());
        return;
    }
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
        const std::string before = file_bytes(path);
        std::string failure = "(done)";
        try {
            if (sql == "(table)") {
                store::TableDeclaration table = deadlines();
                table.columns.push_back({"Altro", store::ColumnKind::memo});
                table.indexes.push_back({"Per_tasso", {"Tasso"}});
                engine->tables();
                engine->create_table(table);
            } else {
                run(*engine, sql);
            }
        } catch (const Failure& caught) {
            failure = caught.description();
            EXPECT_FALSE(failure.empty());
            EXPECT_TRUE(file_bytes(path) == before) << sql << " failed: " << failure;
        }
    }
}

/// A sample, or one of them with a table of the program's own.
std::string bytes_of(const std::string& sample) {
    if (sample != "scadenze") return file_bytes(access_sample(sample));
    const ScratchFolder folder;
    const std::string path = folder.copy_of("archivio.mdb");
    const auto engine = open(path);
    engine->create_table(deadlines());
    for (const std::string& sql : inserts_of_deadlines(1, 150)) run(*engine, sql);
    return file_bytes(path);
}

long peak_kilobytes() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

class AccessDamage : public ::testing::TestWithParam<const char*> {};

TEST_P(AccessDamage, FailsWithWordsAndInTime) {
    const ScratchFolder folder;
    const std::string sample = bytes_of(GetParam());
    const std::string path = folder.path("damaged.mdb");
    write_file(path, sample);
    use(path);
    const long memory_before = peak_kilobytes();
    for (int i = 0; i < damages(); ++i) {
        write_file(path, Damage(static_cast<unsigned>(i)).of(sample));
        const auto start = std::chrono::steady_clock::now();
        use(path);
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        ASSERT_LT(taken.count(), 2.0) << "damage " << i;
        std::filesystem::remove(path + "-undo");
    }
    if (!keeps_freed_memory) {
        EXPECT_LT(peak_kilobytes() - memory_before, static_cast<long>(sample.size() / 1024) + 64 * 1024);
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, AccessDamage,
                         ::testing::Values("vuoto.mdb", "archivio.mdb", "indici.mdb", "scadenze"),
                         [](const auto& sample) {
                             return std::string(sample.param).substr(0, std::string(sample.param).find('.'));
                         });

} // namespace
} // namespace tarvello::testing
