#pragma once

#include "store/engine.h"
#include "store/store_fixture.h"

#include <memory>

/// What the tests of Access files share.
namespace tarvello::testing {

inline constexpr const char* access_samples[] = {"vuoto.mdb", "archivio.mdb", "indici.mdb"};

/// The sample itself, which no test may write to.
std::string access_sample(const std::string& name);

/// A copy of a sample that may be written to. @return its path
std::string copy_of(const TemporaryFolder& folder, const std::string& sample,
                    const std::string& name = "archivio.mdb");

inline constexpr std::size_t page_size = 4096;
/// A word of two bytes, little-endian.
std::size_t load16(const std::string& bytes, std::size_t at);

/// Runs a statement. @return the rows of a SELECT, nulls as "(null)"
std::vector<Row> run(store::Engine& engine, const std::string& sql);
/// Runs a statement that must fail. @return the description, "(done)" if it did not fail
std::string failure_of(store::Engine& engine, const std::string& sql);
/// Opens a file that must not open. @return the description, "(done)" if it did
std::string opening_failure(const std::string& path);
std::unique_ptr<store::Engine> open(const std::string& path);

/// A table with a column of every kind, of the program's own, and rows for it: INSERTs of `from` on.
const store::TableDeclaration& deadlines();
std::vector<std::string> inserts_of_deadlines(int from, int count);

/// All rows of the three tables, and of that one if it is there, one text.
std::string everything(store::Engine& engine);

/// Expects the file to be sound from end to end, as access_checker.py sees it.
/// @param before   a state whose oddities are allowed: the sample that the file was copied from
/// @param options  of the checker
void expect_sound(const std::string& path, const std::string& before, const std::string& options = {});

/// Expects other programs to find the tables of an archive, and to read every value as the engine does.
void expect_agreement(store::Engine& engine, const std::string& path,
                      const std::vector<std::string>& tables = {"Clienti", "Fatture", "DatiIntestazione"});

} // namespace tarvello::testing
