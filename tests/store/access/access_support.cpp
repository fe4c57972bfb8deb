#include "store/access/access_support.h"

#include "places.h"
#include "store/statement.h"

#include <cstdio>
#include <filesystem>

namespace tarvello::testing {
namespace {

const RegionalSettings regional;

/// A line for each table: its name, its columns with their kinds, its rows; the parts and what is in them
/// behind each other, each with a sign of its own.
std::string dump(store::Engine& engine, const std::vector<std::string>& tables) {
    const char* const kinds[] = {"text", "number", "number", "date", "number", "yes_no"}; // by ColumnType
    std::string text;
    for (const std::string& table : tables) {
        const std::string sql = "SELECT * FROM " + table;
        text += table;
        for (const store::Column& column : engine.run(store::parse_statement(sql))->columns())
            text += "\x1F" + column.name + "\x1F" + kinds[static_cast<std::size_t>(column.type)];
        for (const Row& row : run(engine, sql)) {
            text += "\x1E";
            for (const std::string& value : row) text += (value == "(null)" ? "" : value) + "\x1F";
        }
        text += "\x1D";
    }
    return text;
}

/// Runs a script of this folder and expects it to be content.
void expect_content(const std::string& command) {
    FILE* const pipe =
        popen(("python3 -B " TARVELLO_TEST_DATA "/store/access/" + command + " 2>&1").c_str(), "r");
    ASSERT_NE(pipe, nullptr);
    std::string output(4000, '\0');
    output.resize(std::fread(output.data(), 1, output.size(), pipe));
    while (std::fgetc(pipe) != EOF) {
    }
    EXPECT_EQ(pclose(pipe), 0) << output;
}

} // namespace

std::string access_sample(const std::string& name) { return TARVELLO_TEST_DATA "/data/access/" + name; }

std::string copy_of(const TemporaryFolder& folder, const std::string& sample, const std::string& name) {
    const std::string to = folder.in(name);
    write_bytes(to, bytes_of(access_sample(sample)));
    return to;
}

std::size_t load16(const std::string& bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes[at]) + 256U * static_cast<unsigned char>(bytes[at + 1]);
}

std::unique_ptr<store::Engine> open(const std::string& path) { return store::open_engine(path, regional); }

std::vector<Row> run(store::Engine& engine, const std::string& sql) {
    return all_of(engine.run(store::parse_statement(sql)), regional);
}

std::string failure_of(store::Engine& engine, const std::string& sql) {
    return description_of([&] { run(engine, sql); });
}

std::string opening_failure(const std::string& path) {
    return description_of([&] { open(path); });
}

const store::TableDeclaration& deadlines() {
    using store::ColumnKind;
    static const store::TableDeclaration table{"Scadenze",
                                               {{"ID", ColumnKind::autonumber},
                                                {"Fattura", ColumnKind::whole},
                                                {"Codice", ColumnKind::text, 20},
                                                {"Note", ColumnKind::memo},
                                                {"Importo", ColumnKind::currency},
                                                {"Giorno", ColumnKind::date},
                                                {"Pagata", ColumnKind::yes_no},
                                                {"Tasso", ColumnKind::number},
                                                {"Nome", ColumnKind::text, 255}},
                                               {"ID"},
                                               {{"Scadenze_Nome", {"Nome", "Giorno"}},
                                                {"Codice_unico", {"Codice"}, true},
                                                {"Scadenze_Importo", {"Importo"}}}};
    return table;
}

std::vector<std::string> inserts_of_deadlines(int from, int count) {
    std::vector<std::string> statements;
    for (int i = from; i < from + count; ++i) {
        const std::string number = std::to_string(i);
        const std::string day = std::to_string(i % 28 + 1) + "/" + std::to_string(i % 12 + 1) + "/2024";
        std::string columns = "Fattura,Codice,Note";
        std::string values = number + ",'C-" + number + "','" +
                             std::string(static_cast<std::size_t>(i * 137 % 5000), 'n') + "'";
        if (i % 5 != 0) {
            columns += ",Importo,Giorno,Pagata,Tasso,Nome";
            values += ",'" + std::to_string(i * 37 - 900) + "," + std::to_string(i % 10000) + "','" + day +
                      "'," + std::to_string(i % 2) + "," + std::to_string(i) + ".25,'Nicolò d''" + number +
                      "'";
        }
        statements.push_back("INSERT INTO Scadenze(" + columns + ") VALUES(" + values + ")");
    }
    return statements;
}

std::string everything(store::Engine& engine) {
    std::string text;
    for (const char* table : {"Clienti", "Fatture", "DatiIntestazione", "Scadenze"}) {
        if (failure_of(engine, std::string("SELECT TOP 1 * FROM ") + table).find("non ha la tabella") !=
            std::string::npos)
            continue;
        text += std::string(table) + "\n";
        for (const Row& row : run(engine, std::string("SELECT * FROM ") + table)) {
            // What the embedded engine tells apart, a text without a value and an empty one, is one here.
            for (const std::string& value : row) text += (value == "(null)" ? "" : value) + "|";
            text += "\n";
        }
    }
    return text;
}

void expect_sound(const std::string& path, const std::string& before, const std::string& options) {
    expect_content("access_checker.py '" + path + "' --before '" + before + "' " + options);
}

void expect_agreement(store::Engine& engine, const std::string& path,
                      const std::vector<std::string>& tables) {
    const std::string shown = path + ".dump";
    write_bytes(shown, dump(engine, tables));
    expect_content("access_readers.py '" + path + "' '" + shown + "'");
    std::filesystem::remove(shown);
}

} // namespace tarvello::testing
