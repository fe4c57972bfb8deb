#include "support/program_test.h"

#include "failure.h"
#include "places.h"
#include "platform/buttons.h"
#include "support/invoice_columns.h"
#include "text/letter_case.h"

#include <sqlite3.h>

#include <algorithm>
#include <fstream>
#include <sstream>

namespace tarvello::testing {

void make_database(const std::string& path) {
    std::ifstream file(TARVELLO_SCHEMA);
    std::stringstream schema;
    schema << file.rdbuf();
    change_database(path, schema.str());
}

void change_database(const std::string& path, const std::string& statements) {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open(path.c_str(), &database), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(database);
    sqlite3_close(database);
}

std::map<std::string, std::string> as_row(const std::string& text) {
    std::map<std::string, std::string> row;
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t end = std::min(text.find("; ", at), text.size());
        const std::size_t sign = text.find('=', at);
        row[text.substr(at, sign - at)] = text.substr(sign + 1, end - sign - 1);
        at = end + 2;
    }
    return row;
}

ProgramTest::ProgramTest() {
    database_path = fake.program_directory + "/tarvello.mdb";
    make_database(database_path);
    program = std::make_unique<Program>(fake.platform());
    MDIForm1& main = program->form<MDIForm1>();
    main.session.txtDatabaseRoute.set_text(database_path);
    program->database().dbConnection.open(database_path);
    main.session.mnuChiudiDatabase.set_enabled(true);
    main.session.loaded = true;
}

ProgramTest::~ProgramTest() = default;

std::vector<std::map<std::string, std::string>> ProgramTest::sql(const std::string& statement) {
    std::vector<std::map<std::string, std::string>> result;
    const auto rows = program->database().dbConnection.execute(statement);
    while (rows && rows->next()) {
        std::map<std::string, std::string> row;
        for (std::size_t i = 0; i < rows->columns().size(); ++i) {
            const store::ValueView value = rows->value(i);
            row[rows->columns()[i].name] = std::holds_alternative<std::monostate>(value)
                                               ? "(null)"
                                               : store::value_text(value, program->regional());
        }
        result.push_back(std::move(row));
    }
    return result;
}

void ProgramTest::insert(const std::string& table, const std::map<std::string, std::string>& columns) {
    std::string names, values;
    for (const auto& [name, value] : columns) {
        names += (names.empty() ? "" : ",") + name;
        values += (values.empty() ? "'" : ",'") + double_apostrophes(value) + "'";
    }
    sql("INSERT INTO " + table + " (" + names + ") VALUES (" + values + ")");
}

int ProgramTest::given_customer(std::map<std::string, std::string> columns) {
    for (const char* name : {"Cognome_Ragione_Sociale", "Nome", "Codice_Fiscale", "Partita_IVA", "Indirizzo",
                             "CAP", "Provincia", "Città", "Telefono", "Fax", "email", "Appunti"}) {
        columns.try_emplace(name, "");
    }
    insert("Clienti", columns);
    return std::stoi(
        sql("SELECT TOP 1 * FROM Clienti ORDER BY Numero_Cliente DESC").at(0).at("Numero_Cliente"));
}

int ProgramTest::given_invoice(std::map<std::string, std::string> columns) {
    columns.try_emplace("Numero_Fattura", "1");
    columns.try_emplace("Data_Fattura", "05/03/2006");
    columns.try_emplace("Anno", columns.at("Data_Fattura").substr(6));
    columns.try_emplace("Numero_Cliente", "1");
    for (const std::string& name : invoice_columns) columns.try_emplace(name, "");
    insert("Fatture", columns);
    return std::stoi(sql("SELECT TOP 1 * FROM Fatture ORDER BY ID DESC").at(0).at("ID"));
}

void ProgramTest::expect_faces(const Form& form, const std::string& faces) {
    for (const auto& [name, expected] : as_row(faces)) {
        const Control* control = name.empty() ? nullptr : form.find(name);
        const auto* captioned = dynamic_cast<const Captioned*>(control);
        std::string face = captioned ? captioned->caption() : name.empty() ? form.caption() : "";
        if (const auto* button = dynamic_cast<const PictureButton*>(control)) {
            face += "|" + button->shortcut() + "|" + button->tool_tip() + "|" + button->picture();
        } else if (control && !control->tool_tip().empty()) {
            face += "|" + control->tool_tip();
        }
        EXPECT_EQ(face, expected) << name;
        EXPECT_TRUE(control || name.empty()) << name;
    }
}

void ProgramTest::expect_process_end(const std::function<void()>& act, const std::string& description) {
    boxes().expect_any();
    EXPECT_THROW(act(), ProcessEnded);
    EXPECT_EQ(boxes().last().icon, BoxIcon::critical);
    EXPECT_TRUE(boxes().last().text.ends_with("\n\n" + description) || description.empty())
        << boxes().last().text;
}

} // namespace tarvello::testing
