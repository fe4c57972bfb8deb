#include "store/access/access_support.h"

#include "store/statement.h"
#include "support/program_test.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <random>

namespace tarvello::testing {
namespace {

using ::testing::HasSubstr;

/// The steps of a run. TARVELLO_ACCESS_STEPS=20000 makes it thorough.
int steps() {
    const char* wanted = std::getenv("TARVELLO_ACCESS_STEPS");
    return wanted != nullptr ? std::atoi(wanted) : 1500;
}

/// Statements that insert, change and delete rows with values of all lengths.
class Statements {
public:
    explicit Statements(unsigned seed) : random_(seed) {}

    std::string next() {
        const int kind = number(0, 99);
        if (kind < 45) return insert();
        if (kind < 78) return update();
        if (kind < 97) return remove();
        return many();
    }

private:
    int number(int low, int high) { return std::uniform_int_distribution(low, high)(random_); }

    /// A text of letters that the sort codes know, apostrophes doubled.
    std::string text(int length) {
        static const std::vector<std::string> letters = {"a", "b", "E", "o", "s", "T", "à",
                                                         "È", "ç", "ü", "ß", " ", "-", "''",
                                                         ".", "1", "9", "€", "%", "æ", "n"};
        std::string result = "'";
        for (int i = 0; i < length; ++i) result += letters[static_cast<std::size_t>(number(0, 20))];
        return result + "'";
    }
    std::string name() {
        const int longest[] = {0, 1, 4, 12, 12, 30, 60, 200};
        return text(number(0, longest[number(0, 7)]));
    }
    std::string memo() {
        const int longest[] = {0, 6, 31, 33, 300, 512, 2040, 4500, 20000};
        return text(number(0, longest[number(0, 8)]));
    }
    std::string year() { return std::to_string(2000 + number(0, 14)); }
    std::string date() {
        return "'" + std::to_string(number(1, 28)) + "/" + std::to_string(number(1, 12)) + "/" + year() + "'";
    }
    std::string customer() { return std::to_string(number(1, 1500)); }
    std::string invoice() { return std::to_string(number(1, 2500)); }

    std::string deadline() { return std::to_string(number(1, 1200)); }
    std::string amount() {
        return "'" + std::to_string(number(-90000, 90000)) + "," + std::to_string(number(0, 9999)) + "'";
    }

    std::string insert() {
        if (number(0, 3) == 0) return inserts_of_deadlines(number(1, 3000), 1).front();
        if (number(0, 1) == 0) {
            return "INSERT INTO Clienti(Cognome_Ragione_Sociale,Nome,Codice_Fiscale,Città,Appunti) VALUES(" +
                   name() + "," + name() + "," + text(16) + "," + name() + "," + memo() + ")";
        }
        return "INSERT INTO Fatture "
               "(Numero_Fattura,Data_Fattura,Anno,Numero_Cliente,Nome,Prestazione1,Importo1,"
               "Pagamento) VALUES ('" +
               std::to_string(number(-5, 40000)) + "'," + date() + ",'" + year() + "'," + customer() + "," +
               name() + "," + memo() + "," + text(number(0, 50)) + "," + text(number(0, 120)) + ")";
    }
    std::string update() {
        switch (number(0, 5)) {
        case 4:
            return "UPDATE Scadenze SET Codice=" + text(number(0, 24)) + ",Note=" + memo() +
                   ",Importo=" + amount() + " WHERE ID=" + deadline();
        case 5:
            return "UPDATE Scadenze SET Nome=" + name() + ",Giorno=" + date() + ",Pagata=1 WHERE Importo<" +
                   amount() + " AND Fattura<" + customer();
        case 0:
            return "UPDATE Clienti SET Cognome_Ragione_Sociale=" + name() + ",Appunti=" + memo() +
                   " WHERE Numero_Cliente=" + customer();
        case 1:
            return "UPDATE Clienti SET Codice_Fiscale=" + name() + ",Indirizzo=" + name() +
                   " WHERE Numero_Cliente=" + customer();
        case 2:
            return "UPDATE Fatture SET Anno='" + year() + "',Prestazione2=" + memo() + ",Nome=" + name() +
                   " WHERE ID=" + invoice();
        default:
            return "UPDATE Fatture SET Cognome_Ragione_Sociale=" + name() + ",Numero_Cliente=" + customer() +
                   " WHERE Numero_Cliente=" + customer();
        }
    }
    std::string remove() {
        if (number(0, 3) == 0) return "DELETE * FROM Scadenze WHERE Fattura=" + customer();
        if (number(0, 1) == 0) return "DELETE * FROM Clienti WHERE Numero_Cliente=" + customer();
        return "DELETE * FROM Fatture WHERE ID=" + invoice();
    }
    std::string many() {
        switch (number(0, 6)) {
        case 6:
            return "DELETE * FROM Scadenze WHERE Giorno>" + date() + " AND Tasso>" + deadline();
        case 0:
            return "DELETE * FROM Fatture WHERE Anno=" + year();
        case 1:
            return "DELETE * FROM Clienti WHERE Numero_Cliente>" + std::to_string(number(100, 3000));
        case 2:
            return "UPDATE Fatture SET Pagamento=" + memo() + " WHERE Anno=" + year();
        case 3:
            return "DELETE * FROM DatiIntestazione";
        case 4:
            return "INSERT INTO DatiIntestazione (Nome_Azienda,CC) VALUES (" + name() + "," + name() + ")";
        default:
            return "UPDATE Clienti SET Città=" + name() + " WHERE Codice_Fiscale LIKE '%a%'";
        }
    }

    std::mt19937 random_;
};

/// Puts the rows of the Access file into the empty embedded one, keys and nulls included.
void mirror(store::Engine& from, store::Engine& to) {
    for (const char* table : {"Clienti", "Fatture", "DatiIntestazione"}) {
        const auto rows = from.run(store::parse_statement(std::string("SELECT * FROM ") + table));
        while (rows->next()) {
            store::Statement insert;
            insert.kind = store::StatementKind::insert;
            insert.table = table;
            for (std::size_t i = 0; i < rows->columns().size(); ++i) {
                const store::ValueView value = rows->value(i);
                if (std::holds_alternative<std::monostate>(value)) continue;
                insert.assignments.push_back(
                    {rows->columns()[i].name, {store::value_text(value, RegionalSettings()), true}});
            }
            to.run(insert);
        }
    }
}

class AccessRandom : public ::testing::TestWithParam<const char*> {};

TEST_P(AccessRandom, StaysEqualToTheEmbeddedEngineAndSound) {
    const ScratchFolder folder;
    const std::string sample = GetParam();
    const std::string path = folder.copy_of(sample);
    auto access = open(path);
    make_database(folder.path("embedded.mdb"));
    const auto embedded = open(folder.path("embedded.mdb"));
    mirror(*access, *embedded);
    for (store::Engine* engine : {access.get(), embedded.get()}) engine->create_table(deadlines());
    // The next automatic number follows the last one given, not the highest that is left.
    for (const auto& [table, key] : {std::pair("Clienti", "Numero_Cliente"), std::pair("Fatture", "ID")}) {
        for (store::Engine* engine : {access.get(), embedded.get()}) {
            run(*engine, std::string("INSERT INTO ") + table + "(" + key + ") VALUES(1000)");
        }
    }
    Statements statements(static_cast<unsigned>(sample.size()));
    const int compare_every = 1000;
    for (int step = 1; step <= steps(); ++step) {
        const std::string sql = statements.next();
        const std::string access_failure = failure_of(*access, sql);
        if (access_failure == "(done)") {
            ASSERT_EQ(failure_of(*embedded, sql), "(done)") << sql;
        } else {
            // What the file has no room or no order for the embedded engine might take, so it is not asked.
            ASSERT_THAT(access_failure,
                        ::testing::AnyOf(HasSubstr("troppo lung"), HasSubstr("non può ripetersi"),
                                         HasSubstr("non si conosce il posto")));
        }
        if (step % compare_every != 0 && step != steps()) continue;
        ASSERT_EQ(everything(*access), everything(*embedded)) << "after " << step << " steps";
        expect_sound(path, access_sample(sample));
        ASSERT_FALSE(HasFailure()) << "after " << step << " steps";
        if (step % (3 * compare_every) == 0) {
            access.reset();
            access = open(path);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Samples, AccessRandom, ::testing::ValuesIn(access_samples), [](const auto& sample) {
    return std::string(sample.param).substr(0, std::string(sample.param).find('.'));
});

} // namespace
} // namespace tarvello::testing
