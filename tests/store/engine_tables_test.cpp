// Tables of the program's own, values beside statements, and several statements as one: on each engine.

#include "store/store_fixture.h"

#include <sys/stat.h>

namespace tarvello::testing {
namespace {

using store::ColumnKind;
using store::TableDeclaration;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

const TableDeclaration instalments{"Rate",
                                   {{"ID", ColumnKind::autonumber},
                                    {"Fattura", ColumnKind::whole},
                                    {"Mezzo", ColumnKind::text, 10},
                                    {"Note", ColumnKind::memo},
                                    {"Importo", ColumnKind::currency},
                                    {"Scadenza", ColumnKind::date},
                                    {"Pagata", ColumnKind::yes_no},
                                    {"Tasso", ColumnKind::number}},
                                   {"ID"},
                                   {{"Rate_Fattura", {"Fattura"}}, {"Rate_Mezzo", {"Mezzo"}, true}}};

class EngineTablesTest : public ::testing::TestWithParam<EngineKind> {
protected:
    EngineTablesTest() {
        GetParam().make(path);
        connection.open(path);
    }

    std::vector<Row> sql(const std::string& statement, const Parameters& parameters = {}) {
        return run(connection, statement, parameters);
    }
    void insert(const Parameters& row) {
        sql("INSERT INTO Rate (Fattura,Mezzo,Note,Importo,Scadenza,Pagata,Tasso) VALUES (?,?,?,?,?,?,?)",
            row);
    }
    /// The keys of the rows that a condition finds.
    std::vector<std::string> found(const std::string& condition, const Parameters& parameters = {}) {
        std::vector<std::string> keys;
        for (const Row& row : sql("SELECT * FROM Rate WHERE " + condition, parameters))
            keys.push_back(row[0]);
        return keys;
    }

    TemporaryFolder folder;
    const std::string path = folder.in("archivio.mdb");
    RegionalSettings regional;
    Connection connection{regional};
};

INSTANTIATE_TEST_SUITE_P(Engines, EngineTablesTest, ::testing::ValuesIn(engine_kinds), name_of_kind);

TEST_P(EngineTablesTest, ATableOfOursKeepsEveryKindOfValueExactly) {
    connection.need_table(instalments);
    connection.need_table(instalments);
    const std::string long_text(5000, 'x');
    const Amount most{9'223'372'036'854'775'806};
    insert({std::int64_t{7}, "d'oro", long_text, most, make_date(2024, 2, 29), true, 0.1});
    EXPECT_EQ(connection.inserted_key(), 1);
    insert({"8", "Ri.Ba.", "", "€ 1.234,5678", "05/03/2006", std::int64_t{0}, "12,5"});
    EXPECT_EQ(connection.inserted_key(), 2);
    insert({{}, {}, {}, {}, {}, {}, {}});

    Recordset rows;
    rows.open("SELECT * FROM Rate", connection);
    EXPECT_EQ(rows.whole("Fattura"), 7);
    EXPECT_EQ(rows.text("Mezzo"), "d'oro");
    EXPECT_EQ(rows.text("Note"), long_text);
    EXPECT_EQ(rows.amount("Importo"), most);
    EXPECT_EQ(rows.text("Importo"), "922337203685477,5806");
    EXPECT_EQ(rows.date("Scadenza"), make_date(2024, 2, 29));
    EXPECT_TRUE(rows.yes("Pagata"));
    EXPECT_EQ(std::get<double>(rows.value(rows.column("Tasso"))), 0.1);
    EXPECT_THROW(rows.amount("Tasso"), Failure);
    rows.move_next();
    EXPECT_EQ(rows.amount("Importo"), Amount{12'345'678});
    EXPECT_EQ(rows.date("Scadenza"), make_date(2006, 3, 5));
    EXPECT_FALSE(rows.yes("Pagata"));
    EXPECT_EQ(rows.text("Tasso"), "12,5");
    rows.move_next();
    for (const char* column : {"Fattura", "Importo", "Scadenza", "Tasso"})
        EXPECT_TRUE(rows.is_null(column)) << column;
    for (const char* column : {"Mezzo", "Note"})
        EXPECT_EQ(rows.is_null(column), GetParam().null_texts) << column;
    EXPECT_FALSE(rows.yes("Pagata")) << "a yes or no is never null";

    connection.close();
    connection.open(path);
    connection.need_table(instalments);
    EXPECT_EQ(sql("SELECT * FROM rate").size(), 3U);
}

TEST_P(EngineTablesTest, ConditionsReachEveryColumn) {
    connection.need_table(instalments);
    for (int i = 1; i <= 6; ++i) {
        insert({std::int64_t{i % 3}, "Mezzo " + std::to_string(i), "", Amount{i * 1005},
                make_date(2024, 1, 6U - i + 1), i % 2 == 0, i / 2.0});
    }
    insert({{}, {}, {}, {}, {}, {}, {}});
    EXPECT_THAT(found("Importo>0.2010"), ElementsAre("3", "4", "5", "6"));
    EXPECT_THAT(found("Importo>0.20101"), ElementsAre("3", "4", "5", "6"));
    EXPECT_THAT(found("Importo>=0.20101"), ElementsAre("3", "4", "5", "6"));
    EXPECT_THAT(found("Importo=?", {Amount{2010}}), ElementsAre("2"));
    EXPECT_THAT(found("Importo='€ 0,201'"), ElementsAre("2"));
    EXPECT_THAT(found("Scadenza<=?", {make_date(2024, 1, 2)}), ElementsAre("5", "6"));
    EXPECT_THAT(found("Pagata=?", {true}), ElementsAre("2", "4", "6"));
    EXPECT_THAT(found("Pagata<>?", {true}), ElementsAre("1", "3", "5", "7"));
    EXPECT_THAT(found("Fattura<>1"), ElementsAre("2", "3", "5", "6"));
    EXPECT_THAT(found("Fattura IN (0,?) AND Tasso<2.5", {std::int64_t{2}}), ElementsAre("2", "3"));
    EXPECT_THAT(found("Mezzo IN ('MEZZO 4','mezzo 1','altro')"), ElementsAre("1", "4"));
    EXPECT_THAT(found("Mezzo<>'mezzo 4' AND ID<7"), ElementsAre("1", "2", "3", "5", "6"));
    EXPECT_THAT(found("Mezzo LIKE ?", {"%ZO [25]"}), ElementsAre("2", "5"));
    EXPECT_THAT(found("Importo IN (0.1005,0.402)"), ElementsAre("1", "4"));
    for (const char* nothing : {"Mezzo=?", "Importo<?", "Scadenza<>?", "Pagata=?", "Fattura IN (?)"})
        EXPECT_THAT(found(nothing, {{}}), IsEmpty()) << nothing;
    EXPECT_THAT(found("ID>1 ORDER BY Scadenza"), ElementsAre("7", "6", "5", "4", "3", "2"));
    EXPECT_THAT(found("ID<9 ORDER BY Importo DESC"), ElementsAre("6", "5", "4", "3", "2", "1", "7"));

    sql("UPDATE Rate SET Importo=?,Pagata=? WHERE Fattura=?", {Amount{1}, true, std::int64_t{0}});
    EXPECT_THAT(found("Importo=0.0001 AND Pagata<>0"), ElementsAre("3", "6"));
    sql("DELETE * FROM Rate WHERE Pagata=?", {false});
    EXPECT_THAT(found("ID>0"), ElementsAre("2", "3", "4", "6"));
}

TEST_P(EngineTablesTest, WhatDoesNotFitIsRefusedAndChangesNothing) {
    connection.need_table(instalments);
    insert({std::int64_t{1}, "Bonifico", "", Amount{1}, make_date(2024, 1, 1), true, 1.0});
    const std::vector<Row> before = sql("SELECT * FROM Rate");
    const std::pair<const char*, store::Value> cases[] = {{"Mezzo", "undici lett"},
                                                          {"Importo", "1.000.000.000.000.000,00"},
                                                          {"Importo", "dieci"},
                                                          {"Importo", 1e300},
                                                          {"Scadenza", "30/02/2024"},
                                                          {"Scadenza", std::int64_t{5}},
                                                          {"Fattura", 3e9},
                                                          {"Fattura", make_date(2024, 1, 1)},
                                                          {"Pagata", make_date(2024, 1, 1)},
                                                          {"Pagata", "forse"}};
    for (const auto& [column, value] : cases) {
        SCOPED_TRACE(column);
        EXPECT_THAT(failure_of([&] {
                        sql(std::string("UPDATE Rate SET Note='cambiata',") + column + "=?", {value});
                    }),
                    HasSubstr(column));
    }
    EXPECT_THROW(insert({std::int64_t{2}, "BONIFICO", "", {}, {}, {}, {}}), Failure)
        << "unique, whatever the case";
    EXPECT_EQ(sql("SELECT * FROM Rate"), before);
    EXPECT_THROW(sql("INSERT INTO Rate (Fattura) VALUES (?)", {}), Failure);
    insert({{}, {}, {}, {}, {}, {}, {}});
    insert({{}, {}, {}, {}, {}, {}, {}});
    EXPECT_EQ(sql("SELECT * FROM Rate").size(), 3U) << "nulls do not repeat each other";
}

TEST_P(EngineTablesTest, AnInvoiceIsWrittenWithValuesThatNoApostropheBreaks) {
    sql("INSERT INTO Fatture (Numero_Fattura,Data_Fattura,Anno,Pagamento,Importo1) VALUES (?,?,?,?,?)",
        {"12", "05/03/2006", std::int64_t{2006}, "'--\"?", "€ 1,00"});
    EXPECT_EQ(connection.inserted_key(), 1);
    sql("UPDATE Fatture SET Pagamento=?,Nome=? WHERE ID=?", {"l'altro", {}, std::int64_t{1}});
    Recordset rows;
    rows.open("SELECT * FROM Fatture WHERE Pagamento=? AND Data_Fattura=?", connection,
              {"L'ALTRO", "05/03/2006"});
    EXPECT_EQ(rows.text("Importo1"), "€ 1,00");
    EXPECT_EQ(rows.text_or_empty("Nome"), "");
    rows.move_next();
    rows.move_first();
    EXPECT_EQ(rows.text("Numero_Fattura"), "12");
    sql("INSERT INTO DatiIntestazione (Nome_Azienda) VALUES (?)", {"x"});
    EXPECT_THROW(connection.inserted_key(), Failure);
}

TEST_P(EngineTablesTest, AKeyMayBeATextOrSeveralColumns) {
    connection.need_table(
        {"Codici", {{"Codice", ColumnKind::text, 20}, {"Valore", ColumnKind::whole}}, {"Codice"}, {}});
    for (const char* code : {"b", "À", "a"}) sql("INSERT INTO Codici (Codice) VALUES (?)", {code});
    EXPECT_THROW(sql("INSERT INTO Codici (Codice) VALUES ('B')"), Failure);
    EXPECT_THROW(sql("INSERT INTO Codici (Valore) VALUES (1)"), Failure);
    EXPECT_EQ(sql("SELECT * FROM Codici WHERE Codice='à'").size(), 1U);

    connection.need_table({"Progressivi",
                           {{"Anno", ColumnKind::whole}, {"Numero", ColumnKind::whole}},
                           {"Anno", "Numero"},
                           {}});
    for (const char* row : {"2024,2", "2023,9", "2024,1"})
        sql(std::string("INSERT INTO Progressivi (Anno,Numero) VALUES (") + row + ")");
    EXPECT_THAT(sql("SELECT * FROM Progressivi"),
                ElementsAre(Row{"2023", "9"}, Row{"2024", "1"}, Row{"2024", "2"}));
    EXPECT_THROW(sql("INSERT INTO Progressivi (Anno,Numero) VALUES (2024,2)"), Failure);
    EXPECT_THROW(sql("INSERT INTO Progressivi (Anno) VALUES (2025)"), Failure);
}

TEST_P(EngineTablesTest, AReadOnlyFileGetsNoTableAndTheCallerHearsWhy) {
    connection.close();
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    const std::string before = bytes_of(path);
    connection.open(path);
    EXPECT_THAT(failure_of([&] { connection.need_table(instalments); }), HasSubstr("sola lettura"));
    EXPECT_THAT(failure_of([&] { const Transaction transaction(connection); }), HasSubstr("sola lettura"));
    EXPECT_THROW(sql("SELECT * FROM Rate"), Failure);
    connection.close();
    EXPECT_EQ(bytes_of(path), before);
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    connection.open(path);
    connection.need_table(instalments);
    connection.close();
    ASSERT_EQ(::chmod(path.c_str(), 0444), 0);
    connection.open(path);
    connection.need_table(instalments);
}

TEST_P(EngineTablesTest, StatementsOfATransactionAreOne) {
    connection.need_table(instalments);
    Recordset half_read;
    for (int i = 1; i <= 3; ++i) insert({std::int64_t{i}, {}, {}, {}, {}, {}, {}});
    half_read.open("SELECT * FROM Rate", connection);
    {
        Transaction transaction(connection);
        insert({std::int64_t{4}, {}, {}, {}, {}, {}, {}});
        sql("UPDATE Rate SET Fattura=9 WHERE Fattura=1");
        EXPECT_THAT(found("Fattura>3"), ElementsAre("1", "4")) << "later statements see it";
        EXPECT_THAT(failure_of([&] { const Transaction nested(connection); }), HasSubstr("in corso"));
        transaction.commit();
        EXPECT_THROW(transaction.commit(), Failure);
    }
    EXPECT_THAT(found("Fattura>3"), ElementsAre("1", "4"));
    {
        const Transaction given_up(connection);
        sql("DELETE * FROM Rate");
    }
    half_read.move_next();
    EXPECT_EQ(half_read.text("ID"), "2");
    half_read.close();
    {
        const Transaction given_up(connection);
        sql("DELETE * FROM Rate");
        connection.need_table({"Altre", {{"ID", ColumnKind::autonumber}}, {"ID"}, {}});
        sql("INSERT INTO Clienti (Nome) VALUES ('Anna')");
    }
    EXPECT_THAT(found("Fattura>3"), ElementsAre("1", "4"));
    EXPECT_THAT(sql("SELECT * FROM Clienti"), IsEmpty());
    EXPECT_THROW(sql("SELECT * FROM Altre"), Failure);
    connection.need_table({"Altre", {{"ID", ColumnKind::autonumber}}, {"ID"}, {}});
    EXPECT_THAT(sql("SELECT * FROM Altre"), IsEmpty());
    {
        Transaction broken(connection);
        sql("DELETE * FROM Rate");
        EXPECT_THROW(sql("UPDATE Rate SET Scadenza='mai'"), Failure);
        EXPECT_THAT(failure_of([&] { sql("SELECT * FROM Rate"); }), HasSubstr("com'era"));
        EXPECT_THROW(broken.commit(), Failure);
    }
    EXPECT_EQ(sql("SELECT * FROM Rate").size(), 4U);
    {
        Transaction closed(connection);
        sql("DELETE * FROM Rate");
        connection.close();
        EXPECT_THROW(closed.commit(), Failure);
    }
    connection.open(path);
    EXPECT_EQ(sql("SELECT * FROM Rate").size(), 4U);
}

TEST(Declaration, SaysWhatNoEngineCouldMakeOfIt) {
    const TableDeclaration good{
        "T", {{"ID", ColumnKind::autonumber}, {"Nota", ColumnKind::memo}}, {"ID"}, {}};
    EXPECT_NO_THROW(store::check_declaration(good));
    const auto changed = [&](const std::function<void(TableDeclaration&)>& change) {
        TableDeclaration table = good;
        change(table);
        return failure_of([&] { store::check_declaration(table); });
    };
    EXPECT_THAT(changed([](auto& t) { t.name = "due parole"; }), HasSubstr("due parole"));
    EXPECT_THAT(changed([](auto& t) { t.name = "Order"; }), HasSubstr("Order"));
    EXPECT_THAT(changed([](auto& t) { t.columns[1].name = std::string(65, 'x'); }), HasSubstr("ammesso"));
    EXPECT_THAT(changed([](auto& t) { t.columns[1].name = "id"; }), HasSubstr("due volte"));
    EXPECT_THAT(changed([](auto& t) { t.columns.clear(); }), HasSubstr("colonne"));
    EXPECT_THAT(changed([](auto& t) { t.columns[1].kind = ColumnKind::text; }), HasSubstr("larghezza"));
    EXPECT_THAT(changed([](auto& t) {
                    t.columns.push_back({"X", ColumnKind::text, 256});
                }),
                HasSubstr("larghezza"));
    EXPECT_THAT(changed([](auto& t) { t.primary_key.clear(); }), HasSubstr("chiave"));
    EXPECT_THAT(changed([](auto& t) { t.indexes = {{"T_Manca", {"Manca"}}}; }), HasSubstr("Manca\""));
    EXPECT_THAT(changed([](auto& t) { t.indexes = {{"T_Nota", {"Nota"}}}; }), HasSubstr("indice"));
    EXPECT_THAT(changed([](auto& t) { t.indexes = {{"T_Nota", {}}}; }), HasSubstr("T_Nota"));
}

} // namespace
} // namespace tarvello::testing
