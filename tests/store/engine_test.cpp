// What every engine must do, whatever the file: one suite, run on each of them.

#include "store/store_fixture.h"
#include "text/letter_case.h"

namespace tarvello::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;

class EngineTest : public ::testing::TestWithParam<EngineKind> {
protected:
    EngineTest() {
        GetParam().make(path);
        connection.open(path);
    }

    std::vector<Row> sql(const std::string& statement) { return run(connection, statement); }
    /// The numbers, or whatever a column holds.
    std::vector<std::string> of(const std::string& name, const std::string& statement) {
        return column(connection, statement, name);
    }
    void customer(const std::string& surname, const std::string& fiscal_code = "",
                  const std::string& name = "") {
        sql("INSERT INTO Clienti(Cognome_Ragione_Sociale, Nome, Codice_Fiscale, Partita_IVA, Indirizzo, CAP, "
            "Provincia, "
            "Città,Telefono,Fax,email,Appunti) VALUES('" +
            double_apostrophes(surname) + "','" + double_apostrophes(name) + "','" +
            double_apostrophes(fiscal_code) + "','','','','','','','','','')");
    }
    void invoice(const std::string& number, const std::string& year, const std::string& name = "") {
        sql("INSERT INTO Fatture (Numero_Fattura,Data_Fattura,Anno,Numero_Cliente,Nome) VALUES ('" + number +
            "','05/03/" + year + "','" + year + "','1','" + name + "')");
    }

    TemporaryFolder folder;
    const std::string path = folder.in("archivio.mdb");
    RegionalSettings regional;
    Connection connection{regional};
};

INSTANTIATE_TEST_SUITE_P(Engines, EngineTest, ::testing::ValuesIn(engine_kinds), name_of_kind);

TEST_P(EngineTest, CustomersAreKeptByTheirStatements) {
    sql("INSERT INTO Clienti(Cognome_Ragione_Sociale, Nome, Codice_Fiscale, Partita_IVA, Indirizzo, CAP, "
        "Provincia, "
        "Città, Telefono, Fax, email, Appunti) "
        "VALUES('D''Amico','Nicolò','DMCNCL80A01H501U','01234567890','Via Roma, "
        "1','00184','RM','Forlì','06 1','06 2','n@esempio.it','prima riga\r\nseconda')");
    const Row first{"1",
                    "D'Amico",
                    "Nicolò",
                    "DMCNCL80A01H501U",
                    "01234567890",
                    "Via Roma, 1",
                    "00184",
                    "RM",
                    "Forlì",
                    "06 1",
                    "06 2",
                    "n@esempio.it",
                    "prima riga\r\nseconda"};
    EXPECT_THAT(sql("SELECT * FROM Clienti"), ElementsAre(first));
    customer("Bianchi", "BNC");
    customer("Carli", "CRL");

    const auto numbers = [&](const std::string& rest) { return of("Numero_Cliente", "SELECT " + rest); };
    EXPECT_THAT(numbers("* FROM Clienti"), ElementsAre("1", "2", "3"));
    EXPECT_THAT(numbers("* FROM Clienti ORDER BY Numero_Cliente DESC"), ElementsAre("3", "2", "1"));
    EXPECT_THAT(numbers("TOP 1 * FROM Clienti"), ElementsAre("1"));
    EXPECT_THAT(numbers("* FROM Clienti WHERE Numero_Cliente=2"), ElementsAre("2"));
    EXPECT_THAT(numbers("* FROM Clienti WHERE Numero_Cliente <=2 ORDER BY Numero_Cliente DESC"),
                ElementsAre("2", "1"));
    EXPECT_THAT(numbers("* FROM Clienti WHERE Numero_Cliente>=2"), ElementsAre("2", "3"));
    EXPECT_THAT(numbers("* FROM Clienti WHERE Codice_Fiscale='BNC'"), ElementsAre("2"));
    EXPECT_THAT(numbers("* FROM Clienti WHERE Partita_IVA='01234567890'"), ElementsAre("1"));
    EXPECT_THAT(numbers("* FROM Clienti WHERE Partita_IVA='0123456789'"), IsEmpty());
    EXPECT_THAT(numbers("* FROM clienti WHERE CITTÀ LIKE '%LÌ%'"), ElementsAre("1"));

    sql("UPDATE Clienti SET Cognome_Ragione_Sociale='Verdi', Nome='', Codice_Fiscale='X', Partita_IVA='', "
        "Indirizzo='', "
        "CAP='', Provincia='', Città='', Telefono='', Fax='', email='', Appunti='' WHERE Numero_Cliente=2");
    EXPECT_THAT(of("Cognome_Ragione_Sociale", "SELECT * FROM Clienti"),
                ElementsAre("D'Amico", "Verdi", "Carli"));
    sql("DELETE * FROM Clienti WHERE Numero_Cliente=3");
    sql("DELETE * FROM Clienti WHERE Numero_Cliente=99");
    EXPECT_THAT(numbers("* FROM Clienti"), ElementsAre("1", "2"));
    customer("Dini");
    EXPECT_THAT(numbers("* FROM Clienti"), ElementsAre("1", "2", "4"))
        << "a number once given is not given again";
}

TEST_P(EngineTest, InvoicesAreKeptByTheirStatements) {
    for (int number = 1; number <= 3; ++number) {
        sql(insert_of_invoice(number));
        Row expected = row_of_invoice(number);
        expected.insert(expected.begin(), std::to_string(number));
        EXPECT_THAT(sql("SELECT TOP 1 * FROM Fatture ORDER BY ID DESC"), ElementsAre(expected));
    }
    invoice("1", "2007", "rossi");
    invoice("2", "2007", "Bianchi");
    invoice("1", "2009");

    const auto keys = [&](const std::string& rest) { return of("ID", "SELECT " + rest); };
    EXPECT_THAT(keys("* FROM Fatture"), ElementsAre("1", "2", "3", "4", "5", "6"));
    EXPECT_THAT(keys("* FROM Fatture ORDER BY ID DESC"), ElementsAre("6", "5", "4", "3", "2", "1"));
    EXPECT_THAT(keys("* FROM Fatture WHERE ID <3 ORDER BY ID DESC"), ElementsAre("2", "1"));
    EXPECT_THAT(keys("* FROM Fatture WHERE ID >3 ORDER BY ID ASC"), ElementsAre("4", "5", "6"));
    EXPECT_THAT(keys("* FROM Fatture WHERE ID=40000"), IsEmpty());
    EXPECT_THAT(keys("* FROM Fatture WHERE ID<2.5"), ElementsAre("1", "2"));
    EXPECT_THAT(keys("* FROM Fatture WHERE ID=2.5"), IsEmpty());
    EXPECT_THAT(keys("* FROM Fatture WHERE ID<99999999999999999999 ORDER BY ID DESC").size(), 6U);
    EXPECT_THAT(keys("* FROM Fatture WHERE Numero_Cliente=2"), ElementsAre("1"));
    EXPECT_THAT(keys("* FROM Fatture WHERE Anno=2007 ORDER BY ID DESC"), ElementsAre("5", "4"));
    EXPECT_THAT(keys("TOP 1 * FROM Fatture WHERE Anno=2007 ORDER BY ID ASC"), ElementsAre("4"));
    EXPECT_THAT(keys("TOP 1 * FROM Fatture WHERE Anno<2009 ORDER BY ID DESC"), ElementsAre("5"));
    EXPECT_THAT(keys("TOP 1 * FROM Fatture WHERE Anno>2007 ORDER BY ID ASC"), ElementsAre("6"));
    EXPECT_THAT(keys("TOP 1 * FROM Fatture WHERE Anno>2009 ORDER BY ID ASC"), IsEmpty());
    EXPECT_THAT(keys("* FROM FATTURE WHERE Nome LIKE '%ROSS%' AND Anno=2007 ORDER BY ID DESC"),
                ElementsAre("4"));
    EXPECT_THAT(keys("* FROM FATTURE WHERE Nome LIKE '%ROSS%' AND Anno=2006 ORDER BY ID DESC"), IsEmpty());

    sql("UPDATE Fatture SET Cognome_Ragione_Sociale='D''Amico',Nome='Anna' WHERE Numero_Cliente=1");
    EXPECT_THAT(of("Nome", "SELECT * FROM Fatture WHERE Anno>=2007"), ElementsAre("Anna", "Anna", "Anna"));
    sql("DELETE * FROM Fatture WHERE ID=2");
    EXPECT_THAT(keys("* FROM Fatture"), ElementsAre("1", "3", "4", "5", "6"));
    sql("DELETE * FROM Fatture");
    EXPECT_THAT(keys("TOP 1 * FROM Fatture"), IsEmpty());
}

TEST_P(EngineTest, TextsComeBackAsTheyWere) {
    const std::vector<std::string> texts{"D'Amico",
                                         "''",
                                         "a; DROP TABLE Clienti; --",
                                         "100% \"vero\" [x] _ `",
                                         "🧾 fattura 👩🏽‍💻",
                                         "שלום عليكم",
                                         std::string(200, 'w'),
                                         "riga\r\nriga\ttab",
                                         "  blanks  ",
                                         "?1 :a @b $c",
                                         "e\u0301 ≠ é",
                                         "\uFEFFFattura € 1"};
    for (const std::string& text : texts) {
        SCOPED_TRACE(text);
        customer(text, text);
        const std::string quoted = double_apostrophes(text);
        const auto found =
            of("Codice_Fiscale", "SELECT * FROM Clienti WHERE Codice_Fiscale='" + quoted + "'");
        EXPECT_THAT(found, ElementsAre(text));
    }
    EXPECT_EQ(of("Cognome_Ragione_Sociale", "SELECT * FROM Clienti"), texts);
}

TEST_P(EngineTest, LetterCaseDoesNotCountInAnyAlphabet) {
    customer("Nicolò", "CITTÀ");
    customer("ΣΊΣΥΦΟΣ", "straße");
    customer("ЖУКОВ", "\u212Aelvin"); // the sign of kelvin, whose lower case is k
    customer("rossi", "RSSMRA");

    const auto by_code = [&](const std::string& code) {
        return of("Cognome_Ragione_Sociale", "SELECT * FROM Clienti WHERE Codice_Fiscale='" + code + "'");
    };
    EXPECT_THAT(by_code("città"), ElementsAre("Nicolò"));
    EXPECT_THAT(by_code("citta"), IsEmpty()) << "an accent counts";
    EXPECT_THAT(by_code("STRAßE"), ElementsAre("ΣΊΣΥΦΟΣ"));
    EXPECT_THAT(by_code("KELVIN"), ElementsAre("ЖУКОВ"));
    EXPECT_THAT(by_code("rssmra"), ElementsAre("rossi"));
    const auto like = [&](const std::string& pattern) {
        return of("Cognome_Ragione_Sociale",
                  "SELECT * FROM Clienti WHERE Cognome_Ragione_Sociale LIKE '" + pattern + "'");
    };
    EXPECT_THAT(like("%OLÒ%"), ElementsAre("Nicolò"));
    EXPECT_THAT(like("%σίσυφος%"), ElementsAre("ΣΊΣΥΦΟΣ"));
    EXPECT_THAT(like("жук%"), ElementsAre("ЖУКОВ"));
    EXPECT_THAT(like("[q-s]O_SI"), ElementsAre("rossi"));
    EXPECT_THAT(like("%%"), ElementsAre("Nicolò", "ΣΊΣΥΦΟΣ", "ЖУКОВ", "rossi"));
    EXPECT_THAT(of("Cognome_Ragione_Sociale", "SELECT * FROM Clienti WHERE Cognome_Ragione_Sociale>='O' "
                                              "ORDER BY Cognome_Ragione_Sociale"),
                ElementsAre("rossi", "ΣΊΣΥΦΟΣ", "ЖУКОВ"));
}

TEST_P(EngineTest, EqualFindsWhatLikeFinds) {
    const std::vector<std::string> letters{"s", "S", "ſ", "k", "K", "\u212A", "i",
                                           "I", "ı", "İ", "ß", "è", "È"};
    for (const std::string& letter : letters) customer("x", letter);
    for (const std::string& letter : letters) {
        SCOPED_TRACE(letter);
        const std::string where = "SELECT * FROM Clienti WHERE Codice_Fiscale";
        const auto like = of("Numero_Cliente", where + " LIKE '" + letter + "'");
        EXPECT_EQ(of("Numero_Cliente", where + "='" + letter + "'"), like);
        EXPECT_EQ(of("Numero_Cliente", where + " IN ('" + letter + "')"), like);
    }
    EXPECT_EQ(of("Numero_Cliente", "SELECT * FROM Clienti WHERE Codice_Fiscale='ſ'").size(), 3U);
}

TEST_P(EngineTest, ALiteralBecomesWhatItsColumnHolds) {
    invoice("7", "2006");
    const auto stored = [&](const std::string& column, const std::string& literal) {
        sql("UPDATE Fatture SET " + column + "=" + literal + " WHERE ID=1");
        return of(column, "SELECT * FROM Fatture").at(0);
    };
    EXPECT_EQ(stored("Numero_Fattura", "'12'"), "12");
    EXPECT_EQ(stored("Numero_Fattura", "'12.5'"), "12") << "half to even";
    EXPECT_EQ(stored("Numero_Fattura", "'13,5'"), "14");
    EXPECT_EQ(stored("Numero_Fattura", "-3"), "-3");
    EXPECT_EQ(stored("Numero_Fattura", "'2147483647'"), "2147483647");
    EXPECT_EQ(stored("Data_Fattura", "'29/02/2008'"), "29/02/2008");
    EXPECT_EQ(stored("Data_Fattura", "'31/12/9999'"), "31/12/9999");
    EXPECT_EQ(stored("Data_Fattura", "'01/01/0100'"), "01/01/0100");
    EXPECT_EQ(stored("CAP", "'00184'"), "00184");
    EXPECT_EQ(stored("CAP", "5"), "5");
    EXPECT_EQ(stored("Importo1", "'€ 1.234,56'"), "€ 1.234,56");

    const std::vector<Row> before = sql("SELECT * FROM Fatture");
    for (const char* refused : {"Numero_Fattura=''", "Numero_Fattura='abc'", "Numero_Fattura='12 - 2006'",
                                "Numero_Fattura='1e5'", "Numero_Fattura='2147483648'", "Numero_Fattura=1E300",
                                "Data_Fattura=''", "Data_Fattura='29/02/2007'", "Data_Fattura='31/04/2006'",
                                "Data_Fattura=2006", "Data_Fattura='domani'", "Anno='MMVI'"}) {
        SCOPED_TRACE(refused);
        EXPECT_THROW(sql("UPDATE Fatture SET Nome='cambiato'," + std::string(refused) + " WHERE ID=1"),
                     Failure);
    }
    EXPECT_THROW(sql("SELECT * FROM Fatture WHERE Anno='abc'"), Failure);
    EXPECT_EQ(sql("SELECT * FROM Fatture"), before) << "a refused statement changes nothing";

    regional.short_date = "M/d/yyyy";
    EXPECT_EQ(stored("Data_Fattura", "'3/5/2006'"), "3/5/2006");
    regional.short_date = "dd/MM/yyyy";
    EXPECT_THAT(of("Data_Fattura", "SELECT * FROM Fatture WHERE Data_Fattura='05/03/2006'"),
                ElementsAre("05/03/2006"));
    Recordset rows;
    rows.open("SELECT * FROM Fatture WHERE Data_Fattura<'06/03/2006'", connection);
    EXPECT_EQ(rows.date("Data_Fattura"), make_date(2006, 3, 5));
}

TEST_P(EngineTest, ANullIsNoText) {
    sql("INSERT INTO Clienti(Cognome_Ragione_Sociale) VALUES('Rossi')");
    Recordset rows;
    rows.open("SELECT * FROM Clienti", connection);
    for (const std::string name : {"Nome", "Appunti"}) {
        EXPECT_EQ(rows.text_or_empty(name), "");
        EXPECT_EQ(rows.is_null(name), GetParam().null_texts);
        if (GetParam().null_texts) {
            EXPECT_THAT(failure_of([&] { rows.text(name); }), HasSubstr(name));
        } else {
            EXPECT_EQ(rows.text(name), "");
        }
        for (const char* condition : {"=''", " LIKE '%'", "<>'x'"}) {
            EXPECT_EQ(sql("SELECT * FROM Clienti WHERE " + name + condition).size(),
                      GetParam().null_texts ? 0U : 1U);
        }
    }
    EXPECT_THAT(failure_of([&] { rows.date("Nome"); }), HasSubstr("data"));
    sql("INSERT INTO Fatture(Pagamento) VALUES('x')");
    EXPECT_THAT(sql("SELECT * FROM Fatture WHERE Anno<9"), IsEmpty());
    EXPECT_THAT(sql("SELECT * FROM Fatture WHERE Data_Fattura<'01/01/2030'"), IsEmpty());
    Recordset invoice;
    invoice.open("SELECT * FROM Fatture ORDER BY Data_Fattura", connection);
    for (const char* name : {"Anno", "Data_Fattura"}) EXPECT_TRUE(invoice.is_null(name));
}

TEST_P(EngineTest, NamesThatTheFileDoesNotHaveFail) {
    EXPECT_THAT(failure_of([&] { sql("SELECT * FROM Ordini"); }), HasSubstr("Ordini"));
    EXPECT_THAT(failure_of([&] { sql("SELECT * FROM Clienti WHERE Numero=1"); }), HasSubstr("Numero"));
    EXPECT_THAT(failure_of([&] { sql("SELECT * FROM Clienti ORDER BY Eta"); }), HasSubstr("Eta"));
    EXPECT_THAT(failure_of([&] { sql("UPDATE Clienti SET Colore='blu'"); }), HasSubstr("Colore"));
    EXPECT_THAT(failure_of([&] { sql("INSERT INTO Clienti (Nome,NOME) VALUES ('a','b')"); }),
                HasSubstr("Nome"));
    EXPECT_THAT(sql("SELECT * FROM Clienti"), IsEmpty());
}

TEST_P(EngineTest, SeveralResultsAreWalkedAtOnceWhileStatementsWrite) {
    for (int i = 0; i < 50; ++i) invoice(std::to_string(i), "2006");
    Recordset forward;
    Recordset again;
    Recordset backward;
    forward.open("SELECT * FROM Fatture", connection);
    again.open("SELECT * FROM Fatture", connection);
    backward.open("SELECT * FROM Fatture ORDER BY ID DESC", connection);
    for (int i = 1; i <= 20; ++i) {
        EXPECT_EQ(forward.text("ID"), std::to_string(i));
        EXPECT_EQ(backward.text("ID"), std::to_string(51 - i));
        forward.move_next();
        backward.move_next();
        sql("UPDATE Fatture SET Nome='n" + std::to_string(i) + "' WHERE ID=" + std::to_string(i));
        customer("cliente " + std::to_string(i));
    }
    EXPECT_EQ(again.text("ID"), "1");
    EXPECT_EQ(again.text_or_empty("Nome"), "") << "the current row is as it was when it was reached";
    sql("DELETE * FROM Fatture WHERE ID>30");
    EXPECT_EQ(forward.text("ID"), "21");
    int left = 0;
    for (; !forward.eof(); forward.move_next()) ++left;
    EXPECT_EQ(left, 10);
    EXPECT_EQ(of("ID", "SELECT * FROM Clienti WHERE Numero_Cliente=99").size(), 0U);
    EXPECT_EQ(of("Nome", "SELECT * FROM Fatture WHERE ID=20"), std::vector<std::string>{"n20"});
}

TEST_P(EngineTest, ARecordsetIsOpenedReadAndClosed) {
    customer("Rossi");
    customer("Verdi");
    Recordset rows;
    EXPECT_FALSE(rows.is_open());
    EXPECT_THROW(rows.close(), Failure);
    EXPECT_THROW(rows.eof(), Failure);
    EXPECT_THROW(rows.record_count(), Failure);
    EXPECT_THROW(rows.text("Nome"), Failure);

    rows.open("UPDATE Clienti SET Fax='1'", connection);
    EXPECT_FALSE(rows.is_open()) << "a statement without rows leaves it closed";
    EXPECT_THROW(rows.open("SELECT * FROM", connection), Failure);
    EXPECT_FALSE(rows.is_open());

    rows.open("SELECT * FROM Clienti", connection);
    EXPECT_THROW(rows.open("SELECT * FROM Clienti", connection), Failure);
    EXPECT_EQ(rows.record_count(), -1);
    EXPECT_EQ(rows.text("cognome_ragione_sociale"), "Rossi");
    EXPECT_THAT(failure_of([&] { rows.text("e-mail"); }), HasSubstr("e-mail"));
    rows.move_first();
    EXPECT_EQ(rows.text("Cognome_Ragione_Sociale"), "Rossi");
    rows.move_next();
    EXPECT_EQ(rows.text("Cognome_Ragione_Sociale"), "Verdi");
    rows.move_first();
    EXPECT_EQ(rows.text("Cognome_Ragione_Sociale"), "Rossi");
    rows.move_next();
    rows.move_next();
    EXPECT_TRUE(rows.eof());
    EXPECT_THROW(rows.text("Cognome_Ragione_Sociale"), Failure);
    EXPECT_THROW(rows.move_next(), Failure);
    rows.close();

    rows.open("SELECT * FROM Fatture", connection);
    EXPECT_EQ(rows.record_count(), -1) << "unknown, also for an empty result";
    EXPECT_TRUE(rows.eof());
    EXPECT_THROW(rows.text("ID"), Failure);
    EXPECT_THROW(rows.move_first(), Failure);
}

TEST_P(EngineTest, ARecordsetMayOutliveTheConnection) {
    customer("Rossi");
    customer("Verdi");
    Recordset half_read;
    Recordset at_end;
    half_read.open("SELECT * FROM Clienti", connection);
    at_end.open("SELECT * FROM Clienti WHERE Numero_Cliente=99", connection);
    connection.close();
    EXPECT_THROW(connection.close(), Failure);
    EXPECT_THROW(connection.execute("SELECT * FROM Clienti"), Failure);
    EXPECT_THROW(half_read.text("Cognome_Ragione_Sociale"), Failure);
    EXPECT_THROW(half_read.move_next(), Failure);
    EXPECT_THROW(half_read.move_first(), Failure);
    EXPECT_TRUE(at_end.eof());

    connection.open(path);
    EXPECT_THROW(half_read.text("Cognome_Ragione_Sociale"), Failure);
    half_read.close();
    half_read.open("SELECT * FROM Clienti", connection);
    EXPECT_EQ(half_read.text("Cognome_Ragione_Sociale"), "Rossi");
}

TEST_P(EngineTest, AnOpenConnectionRefusesASecondFile) {
    customer("Rossi");
    const std::string other = folder.in("altro.mdb");
    GetParam().make(other);
    EXPECT_THROW(connection.open(other), Failure);
    EXPECT_THROW(connection.open(path), Failure);
    EXPECT_THAT(of("Cognome_Ragione_Sociale", "SELECT * FROM Clienti"), ElementsAre("Rossi"));
    connection.close();
    connection.open(other);
    EXPECT_THAT(sql("SELECT * FROM Clienti"), IsEmpty());
}

} // namespace
} // namespace tarvello::testing
