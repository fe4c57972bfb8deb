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

/// Statements that insert, change and delete rows with values of all lengths. What a value is to be stands
/// behind a dollar sign, see Statements::value.
struct Group {
    int percent;
    std::vector<std::string> statements;
};
const std::string add_customer =
    "INSERT INTO Clienti(Cognome_Ragione_Sociale,Nome,Codice_Fiscale,Città,Appunti) "
    "VALUES($n,$n,$s,$n,$m)";
const std::string add_invoice = "INSERT INTO Fatture (Numero_Fattura,Data_Fattura,Anno,Numero_Cliente,Nome,"
                                "Prestazione1,Importo1,Pagamento) VALUES ($i,$d,$y,$c,$n,$m,$s,$n)";
const std::string end_customer = "DELETE * FROM Clienti WHERE Numero_Cliente=$c";
const std::string end_invoice = "DELETE * FROM Fatture WHERE ID=$i";
const Group groups[] = {
    {45, {"$r", add_customer, add_invoice, add_customer, add_invoice}},
    {33,
     {"UPDATE Scadenze SET Codice=$s,Note=$m,Importo=$a WHERE ID=$l",
      "UPDATE Scadenze SET Nome=$n,Giorno=$d,Pagata=1 WHERE Importo<$a AND Fattura<$c",
      "UPDATE Clienti SET Cognome_Ragione_Sociale=$n,Appunti=$m WHERE Numero_Cliente=$c",
      "UPDATE Clienti SET Codice_Fiscale=$n,Indirizzo=$n WHERE Numero_Cliente=$c",
      "UPDATE Fatture SET Anno=$y,Prestazione2=$m,Nome=$n WHERE ID=$i",
      "UPDATE Fatture SET Cognome_Ragione_Sociale=$n,Numero_Cliente=$c WHERE Numero_Cliente=$c"}},
    {19, {"DELETE * FROM Scadenze WHERE Fattura=$c", end_customer, end_invoice, end_customer, end_invoice}},
    {3,
     {"DELETE * FROM Scadenze WHERE Giorno>$d AND Tasso>$l", "DELETE * FROM Fatture WHERE Anno=$y",
      "DELETE * FROM Clienti WHERE Numero_Cliente>$k", "UPDATE Fatture SET Pagamento=$m WHERE Anno=$y",
      "DELETE * FROM DatiIntestazione", "INSERT INTO DatiIntestazione (Nome_Azienda,CC) VALUES ($n,$n)",
      "UPDATE Clienti SET Città=$n WHERE Codice_Fiscale LIKE '%a%'"}}};

class Statements {
public:
    explicit Statements(unsigned seed) : random_(seed) {}

    std::string next() {
        const Group* group = groups;
        for (int kind = number(1, 100); kind > group->percent; ++group) kind -= group->percent;
        std::string sql = one_of(group->statements);
        for (std::size_t at = 0; (at = sql.find('$', at)) != std::string::npos;) {
            const std::string put = value(sql[at + 1]);
            sql.replace(at, 2, put);
            at += put.size();
        }
        return sql;
    }

private:
    int number(int low, int high) { return std::uniform_int_distribution(low, high)(random_); }
    template <typename Value>
    Value one_of(const std::vector<Value>& values) {
        return values[static_cast<std::size_t>(number(0, static_cast<int>(values.size()) - 1))];
    }

    /// A text of letters that the sort codes know, apostrophes doubled.
    std::string text(int length) {
        static const std::vector<std::string> letters = {"a", "b", "E", "o", "s", "T", "à",
                                                         "È", "ç", "ü", "ß", " ", "-", "''",
                                                         ".", "1", "9", "€", "%", "æ", "n"};
        std::string result = "'";
        for (int i = 0; i < length; ++i) result += one_of(letters);
        return result + "'";
    }
    std::string value(char kind) {
        static const std::vector<int> names = {0, 1, 4, 12, 12, 30, 60, 200};
        static const std::vector<int> memos = {0, 6, 31, 33, 300, 512, 2040, 4500, 20000};
        const auto year = [&] { return std::to_string(number(2000, 2014)); };
        switch (kind) {
        case 'n': // a name
            return text(number(0, one_of(names)));
        case 'm':
            return text(number(0, one_of(memos)));
        case 's': // short
            return text(number(0, 20));
        case 'd':
            return "'" + std::to_string(number(1, 28)) + "/" + std::to_string(number(1, 12)) + "/" + year() +
                   "'";
        case 'y':
            return year();
        case 'a': // an amount
            return "'" + std::to_string(number(-90000, 90000)) + "," + std::to_string(number(0, 9999)) + "'";
        case 'r': // a row of deadlines
            return inserts_of_deadlines(number(1, 3000), 1).front();
        case 'k': // a key above which there are few
            return std::to_string(number(100, 3000));
        default: // a key: of a customer, a deadline, an invoice
            return std::to_string(number(1, kind == 'c' ? 1500 : kind == 'l' ? 1200 : 2500));
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
    const TemporaryFolder folder;
    const std::string sample = GetParam();
    const std::string path = copy_of(folder, sample);
    auto access = open(path);
    make_database(folder.in("embedded.mdb"));
    const auto embedded = open(folder.in("embedded.mdb"));
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
    expect_agreement(*access, path, {"Clienti", "Fatture", "DatiIntestazione", "Scadenze"});
}

INSTANTIATE_TEST_SUITE_P(Samples, AccessRandom, ::testing::ValuesIn(access_samples), [](const auto& sample) {
    return std::string(sample.param).substr(0, std::string(sample.param).find('.'));
});

} // namespace
} // namespace tarvello::testing
