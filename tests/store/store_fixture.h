#pragma once

#include "failure.h"
#include "store/database.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

#include <unistd.h>

namespace tarvello::testing {

/// A folder of the test's own, gone when the test is over.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string in(const std::string& name) const { return (path / name).string(); }
    /// The names of all files, in order.
    std::vector<std::string> names() const;

    std::filesystem::path path;
};

/// While it lives the super-user, as whom tests may run, is nobody: permissions count again.
class AsOrdinaryUser {
public:
    AsOrdinaryUser() {
        constexpr uid_t nobody = 65534;
        EXPECT_TRUE(!was_root_ || ::seteuid(nobody) == 0);
    }
    ~AsOrdinaryUser() { EXPECT_TRUE(!was_root_ || ::seteuid(0) == 0); }
    AsOrdinaryUser(const AsOrdinaryUser&) = delete;
    AsOrdinaryUser& operator=(const AsOrdinaryUser&) = delete;

private:
    const bool was_root_ = ::geteuid() == 0;
};

std::string bytes_of(const std::string& path);
void write_bytes(const std::string& path, const std::string& bytes);

/// The description of the failure that `act` ends with, "(done)" if it ends with none.
std::string description_of(const std::function<void()>& act);
/// The same, which fails the test if it ends with none.
std::string failure_of(const std::function<void()>& act);

/// An engine, for the tests that run on each.
struct EngineKind {
    const char* name;
    /// Makes a file with the three tables and no row.
    void (*make)(const std::string& path);
    /// Reads a text without a value as null, not as the empty text.
    bool null_texts;
};
extern const EngineKind engine_kinds[2];
std::string name_of_kind(const ::testing::TestParamInfo<EngineKind>& info);

using Row = std::vector<std::string>;

/// All rows of a result, nulls as "(null)".
std::vector<Row> all_of(std::unique_ptr<store::RowSource> source, const RegionalSettings& regional);
/// Runs a statement by a recordset of its own. @return all rows, nulls as "(null)"
std::vector<Row> run(Connection& connection, const std::string& sql, const Parameters& parameters = {});

/// The texts of one column, of all rows.
std::vector<std::string> column(Connection& connection, const std::string& sql, const std::string& name);

/// The INSERT of an invoice whose every text tells its number and its column, some of them too long for a
/// page of the file.
std::string insert_of_invoice(int number);
/// What reading that invoice back must give, without the key.
Row row_of_invoice(int number);

/// A file of forty invoices, not open yet: for the tests of what befalls files.
class FileOfInvoices {
protected:
    explicit FileOfInvoices(const EngineKind& kind);

    std::string open_failure(const std::string& file);
    std::string write_failure();

    TemporaryFolder folder;
    const std::string path = folder.in("archivio.mdb");
    RegionalSettings regional;
    Connection connection{regional};
};

} // namespace tarvello::testing
