#include "store/store_fixture.h"

#include "places.h"
#include "support/invoice_columns.h"
#include "support/program_test.h"
#include "text/letter_case.h"

#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>

namespace tarvello::testing {

TemporaryFolder::TemporaryFolder() {
    // In memory where there is such a place: the tests sync thousands of times.
    const std::filesystem::path memory = "/dev/shm";
    const auto place =
        std::filesystem::is_directory(memory) ? memory : std::filesystem::temp_directory_path();
    std::string pattern = place / "tarvello-XXXXXX";
    if (!::mkdtemp(pattern.data())) ADD_FAILURE() << "no temporary folder: " << pattern;
    path = pattern;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored; // what cannot be removed is no fault of what was tested
    std::filesystem::remove_all(path, ignored);
}

std::vector<std::string> TemporaryFolder::names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(path))
        names.push_back(entry.path().filename());
    std::sort(names.begin(), names.end());
    return names;
}

namespace {

/// A file that Access made.
void make_access_file(const std::string& path) {
    std::filesystem::copy_file(TARVELLO_TEST_DATA "/data/access/vuoto.mdb", path);
    std::filesystem::permissions(path, std::filesystem::perms::owner_write,
                                 std::filesystem::perm_options::add);
}

} // namespace

const EngineKind engine_kinds[2] = {{"SQLite", make_database, true}, {"Access", make_access_file, false}};

std::string name_of_kind(const ::testing::TestParamInfo<EngineKind>& info) { return info.param.name; }

std::string bytes_of(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void write_bytes(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary | std::ios::trunc) << bytes;
}

std::string description_of(const std::function<void()>& act) {
    try {
        act();
    } catch (const Failure& failure) {
        EXPECT_FALSE(failure.description().empty());
        return failure.description();
    }
    return "(done)";
}

std::string failure_of(const std::function<void()>& act) {
    const std::string description = description_of(act);
    EXPECT_NE(description, "(done)");
    return description;
}

std::vector<Row> all_of(std::unique_ptr<store::RowSource> source, const RegionalSettings& regional) {
    std::vector<Row> rows;
    while (source && source->next()) {
        Row& row = rows.emplace_back();
        for (std::size_t i = 0; i < source->columns().size(); ++i) {
            const store::ValueView value = source->value(i);
            const bool null = std::holds_alternative<std::monostate>(value);
            row.push_back(null ? "(null)" : store::value_text(value, regional));
        }
    }
    return rows;
}

std::vector<Row> run(Connection& connection, const std::string& sql, const Parameters& parameters) {
    return all_of(connection.execute(sql, parameters), connection.regional());
}

std::vector<std::string> column(Connection& connection, const std::string& sql, const std::string& name) {
    std::vector<std::string> texts;
    Recordset rows;
    for (rows.open(sql, connection); !rows.eof(); rows.move_next()) texts.push_back(rows.text(name));
    return texts;
}

Row row_of_invoice(int number) {
    Row row{std::to_string(number), "05/03/2006", "2006", std::to_string(number % 7 + 1)};
    for (std::size_t i = row.size(); i < invoice_columns.size(); ++i) {
        row.push_back(invoice_columns[i] + " dell'invio n° " + std::to_string(number));
        if (invoice_columns[i].starts_with("Prestazione"))
            row.back() += std::string(static_cast<std::size_t>(number) * 37 % 9000, 'x');
    }
    return row;
}

std::string insert_of_invoice(int number) {
    std::string names;
    std::string values;
    const Row row = row_of_invoice(number);
    for (std::size_t i = 0; i < row.size(); ++i) {
        names += (i > 0 ? "," : "") + invoice_columns[i];
        values += (i > 0 ? ",'" : "'") + double_apostrophes(row[i]) + "'";
    }
    return "INSERT INTO Fatture (" + names + ") VALUES (" + values + ")";
}

FileOfInvoices::FileOfInvoices(const EngineKind& kind) {
    static std::map<std::string, std::string> made; // once: every save waits for the disk
    std::string& bytes = made[kind.name];
    if (bytes.empty()) {
        kind.make(path);
        connection.open(path);
        for (int number = 1; number <= 40; ++number) run(connection, insert_of_invoice(number));
        connection.close();
        bytes = bytes_of(path);
    }
    write_bytes(path, bytes);
}

std::string FileOfInvoices::open_failure(const std::string& file) {
    return failure_of([&] { connection.open(file); });
}

std::string FileOfInvoices::write_failure() {
    return failure_of([&] { run(connection, "UPDATE Fatture SET Nome='cambiato' WHERE ID=1"); });
}

} // namespace tarvello::testing
