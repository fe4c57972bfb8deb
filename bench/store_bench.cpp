// The store: from the text of a statement to the fields of its rows.

#include "archive.h"
#include "row.h"

#include "invoices/invoice_form.h"
#include "invoices/invoice_list.h"
#include "shell/main_window.h"
#include "store/database.h"
#include "support/fake_platform.h"
#include "support/invoice_columns.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace tarvello::bench {
namespace {

const RegionalSettings regional;

/// A connection of ours to a file.
struct Ours {
    explicit Ours(const std::string& path) { connection.open(path); }
    Connection connection{regional};
};

/// The same file by SQLite's own interface, opened with the same settings.
class Floor {
public:
    explicit Floor(const std::string& path) {
        need(sqlite3_open_v2(path.c_str(), &database_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                             nullptr) == SQLITE_OK);
        need(sqlite3_exec(database_, "PRAGMA synchronous = EXTRA; PRAGMA cache_size = -8000", nullptr,
                          nullptr, nullptr) == SQLITE_OK);
    }
    ~Floor() {
        sqlite3_finalize(statement_);
        sqlite3_close(database_);
    }
    sqlite3_stmt* prepare(const char* sql) {
        need(sqlite3_prepare_v3(database_, sql, -1, SQLITE_PREPARE_PERSISTENT, &statement_, nullptr) ==
             SQLITE_OK);
        return statement_;
    }

private:
    void need(bool done) const {
        if (done) return;
        std::fprintf(stderr, "floor: %s\n", sqlite3_errmsg(database_));
        std::exit(1);
    }
    sqlite3* database_ = nullptr;
    sqlite3_stmt* statement_ = nullptr;
};

/// Reads every column of the current invoice, the numbers as such. @return the number of bytes
std::size_t read_row(sqlite3_stmt* statement) {
    std::size_t bytes = 0;
    const int columns = sqlite3_column_count(statement);
    for (int i = 0; i < columns; ++i) {
        constexpr int date_column = 2;
        constexpr int first_text_column = 5;
        if (i < first_text_column && i != date_column) {
            benchmark::DoNotOptimize(sqlite3_column_int(statement, i));
            continue;
        }
        benchmark::DoNotOptimize(sqlite3_column_text(statement, i));
        bytes += static_cast<std::size_t>(sqlite3_column_bytes(statement, i));
    }
    return bytes;
}

const std::vector<std::string> fields = [] {
    std::vector<std::string> all{"ID"};
    all.insert(all.end(), testing::invoice_columns.begin(), testing::invoice_columns.end());
    return all;
}();

/// Walks over keys all over the archive, as somebody does who looks for an invoice.
class Keys {
public:
    int next() { return at_ = at_ * 7919 % 99'991 + 2; }

private:
    long at_ = 1;
};

void paging(benchmark::State& state) {
    Ours ours(archive_path());
    Keys keys;
    Recordset rows;
    std::string text;
    for (auto _ : state) {
        rows.open("SELECT * FROM Fatture WHERE ID <" + std::to_string(keys.next()) + " ORDER BY ID DESC",
                  ours.connection);
        for (const std::string& field : fields) {
            text = rows.text(field);
            benchmark::DoNotOptimize(text.data());
        }
        rows.close();
    }
}

void paging_floor(benchmark::State& state) {
    Floor floor(archive_path());
    sqlite3_stmt* statement = floor.prepare("SELECT * FROM Fatture WHERE ID <? ORDER BY ID DESC");
    Keys keys;
    for (auto _ : state) {
        sqlite3_bind_int(statement, 1, keys.next());
        if (sqlite3_step(statement) != SQLITE_ROW) state.SkipWithError("no row");
        benchmark::DoNotOptimize(read_row(statement));
        sqlite3_reset(statement);
    }
}

void year(benchmark::State& state) {
    Ours ours(archive_path());
    Recordset rows;
    for (auto _ : state) {
        std::size_t bytes = 0;
        rows.open("SELECT * FROM Fatture WHERE Anno=2015 ORDER BY ID DESC", ours.connection);
        std::vector<std::size_t> places(fields.size());
        for (std::size_t i = 0; i < fields.size(); ++i) places[i] = rows.column(fields[i]);
        for (; !rows.eof(); rows.move_next()) {
            for (const std::size_t place : places) {
                const store::ValueView value = rows.value(place);
                if (const auto* text = std::get_if<std::string_view>(&value)) bytes += text->size();
            }
        }
        rows.close();
        benchmark::DoNotOptimize(bytes);
    }
}

void year_floor(benchmark::State& state) {
    Floor floor(archive_path());
    sqlite3_stmt* statement = floor.prepare("SELECT * FROM Fatture WHERE Anno=? ORDER BY ID DESC");
    for (auto _ : state) {
        std::size_t bytes = 0;
        sqlite3_bind_int(statement, 1, 2015);
        while (sqlite3_step(statement) == SQLITE_ROW) bytes += read_row(statement);
        sqlite3_reset(statement);
        benchmark::DoNotOptimize(bytes);
    }
}

/// The columns of the lists of invoices, by their places in the table.
std::array<int, invoice_list_columns> shown_places() {
    std::array<int, invoice_list_columns> places{};
    for (std::size_t i = 0; i < places.size(); ++i) {
        const auto found = std::find(fields.begin(), fields.end(), invoice_list[i].source);
        places[i] = static_cast<int>(found - fields.begin());
    }
    return places;
}

/// Runs a statement and fills the rows of a list with it, as the search and the register do.
void fill_list(benchmark::State& state, const char* sql) {
    Ours ours(archive_path());
    Recordset rows;
    for (auto _ : state) {
        ListRows list;
        rows.open(sql, ours.connection);
        const InvoiceRowWriter writer(rows, {"Importo_Rivalsa", "Importo_Ritenuta"}, MissingColumns::fail);
        for (; !rows.eof(); rows.move_next()) writer.add(list);
        rows.close();
        benchmark::DoNotOptimize(list);
        if (list.size() == 0) state.SkipWithError("no row");
    }
}

void read_shown(benchmark::State& state, const char* sql) {
    Floor floor(archive_path());
    sqlite3_stmt* statement = floor.prepare(sql);
    const auto places = shown_places();
    for (auto _ : state) {
        std::size_t bytes = 0;
        while (sqlite3_step(statement) == SQLITE_ROW) {
            for (const int place : places) {
                benchmark::DoNotOptimize(sqlite3_column_text(statement, place));
                bytes += static_cast<std::size_t>(sqlite3_column_bytes(statement, place));
            }
        }
        sqlite3_reset(statement);
        benchmark::DoNotOptimize(bytes);
        if (bytes == 0) state.SkipWithError("no row");
    }
}

constexpr const char* search_sql =
    "SELECT * FROM FATTURE WHERE Cognome_Ragione_Sociale LIKE '%rossi%' AND Anno=2015 ORDER BY ID DESC";
void search(benchmark::State& state) { fill_list(state, search_sql); }
void search_floor(benchmark::State& state) { read_shown(state, search_sql); }

constexpr const char* search_all_sql = "SELECT * FROM Fatture WHERE Nome LIKE '%xx%' ";
void search_all(benchmark::State& state) {
    Ours ours(archive_path());
    Recordset rows;
    for (auto _ : state) {
        rows.open(search_all_sql, ours.connection);
        benchmark::DoNotOptimize(rows.eof());
        rows.close();
    }
}
void search_all_floor(benchmark::State& state) {
    Floor floor(archive_path());
    sqlite3_stmt* statement = floor.prepare(search_all_sql);
    for (auto _ : state) {
        benchmark::DoNotOptimize(sqlite3_step(statement));
        sqlite3_reset(statement);
    }
}

constexpr const char* all_sql = "SELECT * FROM Fatture ORDER BY ID DESC";
void all(benchmark::State& state) { fill_list(state, all_sql); }
void all_floor(benchmark::State& state) { read_shown(state, all_sql); }

/// The values of an invoice as its form sends them.
const std::vector<std::string>& invoice() {
    static const std::vector<std::string> values = [] {
        Ours ours(archive_path());
        Recordset rows;
        rows.open("SELECT * FROM Fatture WHERE ID=4711", ours.connection);
        std::vector<std::string> texts;
        for (std::size_t i = 1; i < fields.size(); ++i) texts.push_back(rows.text(fields[i]));
        return texts;
    }();
    return values;
}

/// From the filled form to the row on disk, with all that the form does on the way: its checks, the date
/// rule, the calculation, the statement, and the new key read back.
void save(benchmark::State& state) {
    testing::FakePlatform desktop;
    Program program(desktop.platform());
    program.database().dbConnection.open(archive_copy("saved.mdb"));
    program.form<MDIForm1>(); // holds the settings
    auto& form = program.form<frmTarvello>();
    for (auto _ : state) {
        state.PauseTiming();
        form.cmdNuovaFattura.on_click();
        form.customer.ComboNumeroCliente.set_text("1");
        const char* const customer[] = {"RSSMRA80A01H501U", "Via Roma 1", "00100", "RM", "Roma", "Rossi",
                                        "01234567890"};
        for (std::size_t i = 0; i < form.customer.txtAnagrafica.size(); ++i)
            form.customer.txtAnagrafica[i].set_text(customer[i]);
        for (std::size_t i = 0; i < frmTarvello::lines; ++i) {
            form.PrestazioneSingola[i].set_text("Consulenza sull'impianto");
            form.txtImportoPrestazioni[i].set_text("€ 1.234,56");
        }
        form.CheckRivalsa.set_checked(true);
        form.ComboPercentualeRivalsa.set_text("4");
        form.ComboIVAApplicata.set_text("20");
        desktop.boxes.expect("\nSalvare la fattura?", Answer::yes);
        state.ResumeTiming();
        form.cmdNuovaFattura.on_click();
    }
    if (form.cmdNuovaFattura.caption() != "Nuova Fattura") state.SkipWithError("not saved");
}

void save_floor(benchmark::State& state) {
    Floor floor(archive_copy("saved-floor.mdb"));
    std::string sql = "INSERT INTO Fatture VALUES (NULL";
    for (std::size_t i = 0; i < invoice().size(); ++i) sql += ",?";
    sqlite3_stmt* statement = floor.prepare((sql + ")").c_str());
    for (auto _ : state) {
        for (std::size_t i = 0; i < invoice().size(); ++i) {
            sqlite3_bind_text(statement, static_cast<int>(i) + 1, invoice()[i].data(),
                              static_cast<int>(invoice()[i].size()), SQLITE_STATIC);
        }
        if (sqlite3_step(statement) != SQLITE_DONE) state.SkipWithError("not saved");
        sqlite3_reset(statement);
    }
}

const bool registered = [] {
    row("first row of a paging statement, text in, fields out", paging, paging_floor, 1.5);
    row("all rows of a year through a recordset", year, year_floor, 1.5);
    row("save of one invoice, from the filled form to the row on disk", save, save_floor, 1.3, Clock::wall);
    row("search of a text in a year, to the filled list", search, search_floor, 2);
    row("search of a text that is nowhere, all invoices", search_all, search_all_floor, 2);
    row("register of all invoices, to the filled list", all, all_floor, 2.5);
    return true;
}();

} // namespace
} // namespace tarvello::bench
