#pragma once

#include "program/program.h"
#include "shell/main_window.h"
#include "support/fake_platform.h"

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

namespace tarvello::testing {

/// Makes a database file from data/schema.sql, without rows.
void make_database(const std::string& path);
/// Runs statements of SQLite itself on a database file that nobody has open.
void change_database(const std::string& path, const std::string& statements);

/// Texts by their columns, written as "Nome=Ugo; CAP=00100".
std::map<std::string, std::string> as_row(const std::string& text);

/// The whole program without a screen, on an empty database of its own that is open.
struct ProgramTest : ::testing::Test {
    ProgramTest();
    ~ProgramTest() override;

    FakePlatform fake;
    std::unique_ptr<Program> program;
    std::string database_path;

    FakeBoxes& boxes() { return fake.boxes; }
    FakeWindows& windows() { return fake.windows; }

    /// Runs a statement on the open database by a recordset of the test's own. @return the rows, column by
    /// name, nulls as "(null)"
    std::vector<std::map<std::string, std::string>> sql(const std::string& statement);

    /// Inserts a row; columns that are not given are null.
    void insert(const std::string& table, const std::map<std::string, std::string>& columns);
    /// Inserts a row; columns that are not given are empty texts. @return its key
    int given_customer(std::map<std::string, std::string> columns = {});
    int given_invoice(std::map<std::string, std::string> columns = {});

    /// What is written on a form and its controls, as "=caption of the form; Label1=caption|tool tip;
    /// cmdOK=caption|shortcut|tool tip|picture".
    void expect_faces(const Form& form, const std::string& faces);

    /// Runs `act`, which must end the process with this description shown, or any if it is empty.
    void expect_process_end(const std::function<void()>& act, const std::string& description = {});
};

} // namespace tarvello::testing
