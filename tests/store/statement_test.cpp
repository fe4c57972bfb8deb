#include "store/statement.h"

#include "failure.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace tarvello::store {
namespace {

using ::testing::HasSubstr;

std::string failure_of(std::string_view sql) {
    try {
        parse_statement(sql);
    } catch (const Failure& failure) {
        return failure.description();
    }
    return "accepted";
}

Statement statement(StatementKind kind, const char* table) {
    Statement result;
    result.kind = kind;
    result.table = table;
    return result;
}

TEST(Statement, ReadsEverySelectOfTheForms) {
    const auto select = [](std::string_view sql) { return parse_statement(sql); };

    Statement expected = statement(StatementKind::select, "Clienti");
    EXPECT_EQ(select("SELECT * FROM Clienti"), expected);
    expected.top = 1;
    EXPECT_EQ(select("SELECT TOP 1 * FROM Clienti"), expected);

    expected = statement(StatementKind::select, "Clienti");
    expected.order_by = "Numero_Cliente";
    expected.descending = true;
    EXPECT_EQ(select("SELECT * FROM Clienti ORDER BY Numero_Cliente DESC"), expected);
    expected.conditions = {{"Numero_Cliente", Comparison::less_or_equal, {"7", false}}};
    EXPECT_EQ(select("SELECT * FROM Clienti WHERE Numero_Cliente <=7 ORDER BY Numero_Cliente DESC"),
              expected);
    expected.order_by.clear();
    expected.descending = false;
    expected.conditions[0].comparison = Comparison::greater_or_equal;
    EXPECT_EQ(select("SELECT * FROM Clienti WHERE Numero_Cliente>=7"), expected);

    expected = statement(StatementKind::select, "Fatture");
    expected.order_by = "ID";
    expected.conditions = {{"ID", Comparison::greater, {"12", false}}};
    EXPECT_EQ(select("SELECT * FROM Fatture WHERE ID >12 ORDER BY ID ASC"), expected);
    EXPECT_EQ(select("select * from Fatture\r\n\twhere ID > 12 order by ID"), expected);
    expected.top = 1;
    expected.conditions = {{"Anno", Comparison::less, {"2006", false}}};
    expected.descending = true;
    EXPECT_EQ(select("SELECT TOP 1 * FROM Fatture WHERE Anno<2006 ORDER BY ID DESC"), expected);

    expected.top.reset();
    expected.table = "FATTURE";
    expected.conditions = {{"Nome", Comparison::like, {"%Rossi's 100%%", true}},
                           {"Anno", Comparison::equal, {"2006", false}}};
    EXPECT_EQ(
        select("SELECT * FROM FATTURE WHERE Nome LIKE '%Rossi''s 100%%' AND Anno=2006 ORDER BY ID DESC"),
        expected);
}

TEST(Statement, ReadsEveryWriteOfTheForms) {
    Statement expected = statement(StatementKind::insert, "Clienti");
    expected.assignments = {{"Cognome_Ragione_Sociale", {"D'Amico; -- \"x\"", true}},
                            {"Città", {"", true}},
                            {"email", {"a\r\nb", true}}};
    EXPECT_EQ(parse_statement("INSERT INTO Clienti(Cognome_Ragione_Sociale, Città,email) "
                              "VALUES('D''Amico; -- \"x\"','','a\r\nb')"),
              expected);
    EXPECT_EQ(parse_statement("INSERT INTO Clienti (Cognome_Ragione_Sociale,Città, email) "
                              "VALUES ('D''Amico; -- \"x\"' , '','a\r\nb' )"),
              expected);

    expected = statement(StatementKind::update, "Fatture");
    expected.assignments = {
        {"Numero_Fattura", {"12", true}}, {"CAP", {"''", true}}, {"Anno", {"-1.5E3", false}}};
    expected.conditions = {{"Numero_Cliente", Comparison::equal, {"3", false}}};
    EXPECT_EQ(parse_statement(
                  "UPDATE Fatture SET Numero_Fattura='12', CAP='''''',Anno=-1.5E3 WHERE Numero_Cliente=3"),
              expected);

    expected = statement(StatementKind::remove, "Fatture");
    EXPECT_EQ(parse_statement("DELETE * FROM Fatture"), expected);
    expected.conditions = {{"ID", Comparison::equal, {"40000", false}}};
    EXPECT_EQ(parse_statement("DELETE * FROM Fatture WHERE ID=40000"), expected);
}

TEST(Statement, TakesValuesThatStandBesideIt) {
    Statement read =
        parse_statement("UPDATE Rate SET Testo=?,Importo=? WHERE ID<>? AND Anno IN (?,2006) AND Nome LIKE ?");
    const Amount amount = Amount::of_cents(150);
    const std::vector<Value> values{"d'oro", amount, std::int64_t{7}, {}, "%x"};
    bind_parameters(read, values);
    Statement expected = statement(StatementKind::update, "Rate");
    expected.assignments = {{"Testo", {"d'oro", true}}, {"Importo", {"", false, amount}}};
    expected.conditions = {{"ID", Comparison::not_equal, {"", false, std::int64_t{7}}},
                           {"Anno", Comparison::in, {}, {{"", false, Value()}, {"2006", false}}},
                           {"Nome", Comparison::like, {"%x", true}}};
    EXPECT_EQ(read, expected);

    const auto bind = [](const char* sql, const std::vector<Value>& given) {
        Statement one = parse_statement(sql);
        bind_parameters(one, given);
    };
    EXPECT_THROW(bind("DELETE * FROM Rate WHERE ID=?", {}), Failure);
    EXPECT_THROW(bind("DELETE * FROM Rate WHERE ID=?", {true, true}), Failure);
    EXPECT_THROW(bind("DELETE * FROM Rate", {true}), Failure);
    EXPECT_THROW(bind("DELETE * FROM Rate WHERE Nome LIKE ?", {std::int64_t{1}}), Failure);
}

TEST(Statement, SaysWhatIsWrongAndWhere) {
    const auto at = [](int character, const char* what) {
        return AllOf(HasSubstr("al carattere " + std::to_string(character) + ":"), HasSubstr(what));
    };
    EXPECT_THAT(failure_of(""), at(1, "SELECT, INSERT, UPDATE o DELETE"));
    EXPECT_THAT(failure_of("DROP TABLE Clienti"), at(1, "SELECT, INSERT, UPDATE o DELETE"));
    EXPECT_THAT(failure_of("SELECT Nome FROM Clienti"), at(8, "asterisco"));
    EXPECT_THAT(failure_of("SELECT TOP x * FROM Clienti"), at(12, "TOP"));
    EXPECT_THAT(failure_of("SELECT TOP 0 * FROM Clienti"), at(12, "TOP"));
    EXPECT_THAT(failure_of("SELECT * FROM WHERE ID=1"), at(15, "nome della tabella"));
    EXPECT_THAT(failure_of("SELECT * FROM Clienti WHERE Numero_Cliente="), at(44, "manca un valore"));
    EXPECT_THAT(failure_of("SELECT * FROM Fatture WHERE Città=Roma"), at(35, "manca un valore"))
        << "characters are counted, not bytes";
    EXPECT_THAT(failure_of("SELECT * FROM Fatture WHERE Anno=2,5"), at(35, "di troppo"));
    EXPECT_THAT(failure_of("SELECT * FROM Fatture WHERE Anno=20x6"), at(34, "manca un valore"));
    EXPECT_THAT(failure_of("SELECT * FROM Fatture WHERE Anno=>2006"), at(34, "manca un valore"));
    EXPECT_THAT(failure_of("SELECT * FROM Fatture WHERE Anno IN 2006"), at(37, "apre l'elenco"));
    EXPECT_THAT(failure_of("SELECT * FROM Fatture WHERE Anno IN ()"), at(38, "manca un valore"));
    EXPECT_THAT(failure_of("SELECT * FROM Fatture WHERE Anno IN (1 2)"), at(40, "chiude l'elenco"));
    EXPECT_THAT(failure_of("SELECT * FROM Fatture WHERE Anno LIKE 2006"), at(39, "dopo LIKE"));
    EXPECT_THAT(failure_of("SELECT * FROM Fatture WHERE Anno"), at(33, "manca il confronto"));
    EXPECT_THAT(failure_of("SELECT * FROM Fatture;"), at(22, "di troppo"));
    EXPECT_THAT(failure_of("SELECT * FROM Fatture; DROP TABLE Fatture"), at(22, "di troppo"));
    EXPECT_THAT(failure_of("DELETE FROM Fatture"), at(8, "asterisco"));
    EXPECT_THAT(failure_of("DELETE * FROM Fatture WHERE ID=1 OR ID=2"), at(34, "di troppo"));
    EXPECT_THAT(failure_of("INSERT INTO Clienti (Nome,Fax) VALUES ('a')"), at(43, "meno delle colonne"));
    EXPECT_THAT(failure_of("INSERT INTO Clienti (Nome) VALUES ('a','b')"), at(39, "più delle colonne"));
    EXPECT_THAT(failure_of("UPDATE Clienti SET WHERE Numero_Cliente=1"), at(20, "nome della colonna"));
    EXPECT_THAT(failure_of("UPDATE Clienti SET Nome='a', WHERE ID=1"), at(30, "nome della colonna"));
    EXPECT_THAT(failure_of("UPDATE Clienti SET Nome 'a'"), at(25, "segno ="));
    // An apostrophe that nobody doubled.
    EXPECT_THAT(failure_of("SELECT * FROM Clienti WHERE Nome LIKE '%D'Amico%'"), at(43, ""));
    EXPECT_THAT(failure_of("INSERT INTO DatiIntestazione (Nome_Azienda,CC) VALUES ('L'Oasi','')"),
                at(59, ""));
    EXPECT_THAT(failure_of("SELECT * FROM Clienti WHERE Nome='abc"), at(34, "il testo"));
    EXPECT_THAT(failure_of("SELECT * FROM Clienti WHERE Nome='x' OR '1'='1'"), at(38, "di troppo"));
}

} // namespace
} // namespace tarvello::store
