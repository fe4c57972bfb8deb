// Copies of databases, on each engine: whatever lies beside them, whatever they replace.

#include "store/archive_copy.h"

#include "platform/posix/posix_files.h"
#include "store/access/access_engine.h"
#include "store/statement.h"
#include "store/store_fixture.h"

#include <csignal>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvello::testing {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::UnorderedElementsAre;

const char* const change_everything = "UPDATE Fatture SET Prestazione5='a meta'";

/// Ends the process once some pages have been written.
struct DieHalfWay : store::access::FileWatch {
    int writes_left = 12;
    bool allow(store::access::FileCall call) override {
        if (call == store::access::FileCall::write && --writes_left == 0) ::kill(::getpid(), SIGKILL);
        return true;
    }
};

[[noreturn]] void die_half_way(const std::string& path, bool access, const RegionalSettings& regional) {
    if (access) {
        DieHalfWay watch;
        store::open_access_engine(path, regional, &watch)->run(store::parse_statement(change_everything));
    } else {
        sqlite3* database = nullptr;
        sqlite3_open(path.c_str(), &database);
        const std::string sql = std::string("PRAGMA cache_size=2; BEGIN; ") + change_everything;
        sqlite3_exec(database, sql.c_str(), nullptr, nullptr, nullptr);
        ::kill(::getpid(), SIGKILL);
    }
    ::_exit(1);
}

/// A stick that is full.
struct FullDisk : PosixFiles {
    std::uint64_t free = 1000;
    std::unique_ptr<PendingCopy> prepare_copy(const std::string&, const std::string&,
                                              const CopyProgress&) override {
        throw Failure(failure_number::disk_full, "File", "pieno");
    }
    std::uint64_t free_bytes(const std::string&) override { return free; }
};

struct ArchiveCopies : ::testing::TestWithParam<EngineKind>, FileOfInvoices {
    ArchiveCopies() : FileOfInvoices(GetParam()) { order.today = make_date(2006, 3, 5); }

    const bool access = GetParam().name == std::string("Access");
    const std::string journal = access ? "-undo" : "-journal";
    const std::string copy = folder.in("copia.bak");
    PosixFiles files;
    store::ArchiveCopy order{path, copy, {}, false, {}, {}};

    store::ArchiveCopied make_copy() { return store::copy_archive(files, regional, order); }
    std::string refusal() {
        return failure_of([&] { make_copy(); });
    }
    /// A stop in the midst of a statement: half of its pages are written.
    void cut_short(const std::string& file) {
        const pid_t child = ::fork();
        if (child == 0) die_half_way(file, access, regional);
        int status = 0;
        ::waitpid(child, &status, 0);
        ASSERT_TRUE(WIFSIGNALED(status));
        ASSERT_TRUE(std::filesystem::exists(file + journal));
    }
    void change(const std::string& file, const std::string& sql) {
        connection.open(file);
        run(connection, sql);
        connection.close();
    }
    std::size_t invoices_in(const std::string& file) {
        connection.open(file);
        const std::size_t count = run(connection, "SELECT * FROM Fatture").size();
        EXPECT_EQ(run(connection, "SELECT * FROM Fatture WHERE Prestazione5='a meta'").size(), 0U);
        connection.close();
        return count;
    }
    std::string damaged() const {
        std::string bytes = bytes_of(path);
        for (std::size_t at = 4096 * 3; at < bytes.size(); at += 4096) bytes.replace(at, 64, 64, '\xA5');
        return bytes;
    }
};

INSTANTIATE_TEST_SUITE_P(Engines, ArchiveCopies, ::testing::ValuesIn(engine_kinds), name_of_kind);

TEST_P(ArchiveCopies, WhatWasCutShortInTheSourceIsUndoneFirst) {
    const std::string whole = bytes_of(path);
    cut_short(path);
    ASSERT_TRUE(bytes_of(path) != whole);
    const std::string half = bytes_of(path);
    // Where it cannot be undone, half a database is no copy.
    const auto set_rights = [](const std::string& file, mode_t rights) {
        ASSERT_EQ(::chmod(file.c_str(), rights), 0);
    };
    set_rights(path, 0444);
    set_rights(path + journal, 0444);
    set_rights(folder.path, 0555);
    {
        const AsOrdinaryUser reader;
        EXPECT_THAT(refusal(), HasSubstr(path + journal));
    }
    set_rights(folder.path, 0755);
    set_rights(path, 0600);
    EXPECT_TRUE(bytes_of(path) == half);
    EXPECT_FALSE(std::filesystem::exists(copy));

    EXPECT_TRUE(make_copy().made);
    EXPECT_EQ(invoices_in(copy), 40U);
    EXPECT_EQ(invoices_in(path), 40U);
    EXPECT_THAT(folder.names(), ElementsAre("archivio.mdb", "copia.bak"));
}

TEST_P(ArchiveCopies, ACopyIsItsUsersAloneWhoeverMayReadTheArchive) {
    ASSERT_EQ(::chmod(path.c_str(), 0644), 0);
    const auto rights = [](const std::string& file) { return std::filesystem::status(file).permissions(); };
    make_copy();
    EXPECT_EQ(rights(copy), std::filesystem::perms{0600});
    EXPECT_EQ(rights(path), std::filesystem::perms{0644});
    ASSERT_EQ(::chmod(copy.c_str(), 0640), 0);
    make_copy();
    EXPECT_EQ(rights(copy), std::filesystem::perms{0640}) << "the user has given it to a group";
}

TEST_P(ArchiveCopies, WhatLiesBesideTheDestinationIsNotTakenForTheCopys) {
    write_bytes(copy, bytes_of(path));
    change(copy, "DELETE * FROM Fatture WHERE ID>30");
    cut_short(copy);
    const std::string left = bytes_of(copy + journal);
    change(path, insert_of_invoice(41));
    for (const bool with_former : {true, false}) {
        if (!with_former) {
            std::filesystem::remove(copy);
            for (const char* companion : {"-journal", "-undo", "-wal", "-shm"})
                write_bytes(copy + companion, left);
        }
        EXPECT_TRUE(make_copy().made);
        EXPECT_TRUE(bytes_of(copy) == bytes_of(path));
        EXPECT_EQ(invoices_in(copy), 41U);
        EXPECT_THAT(folder.names(), ElementsAre("archivio.mdb", "copia.bak"));
    }
}

TEST_P(ArchiveCopies, ACopyThatDoesNotOpenReplacesNoneThatDoes) {
    const std::string whole = bytes_of(path);
    write_bytes(copy, whole);
    write_bytes(path, damaged());
    EXPECT_THAT(refusal(), HasSubstr("non è stato sostituito"));
    write_bytes(path, "un testo");
    EXPECT_THAT(refusal(), HasSubstr("non è un database"));
    EXPECT_TRUE(bytes_of(copy) == whole);
    EXPECT_THAT(folder.names(), ElementsAre("archivio.mdb", "copia.bak"));

    for (const char* former : {"altro", ""}) { // nothing is lost by it
        std::filesystem::remove(copy);
        if (*former) write_bytes(copy, former);
        const auto copied = make_copy();
        EXPECT_TRUE(copied.made);
        EXPECT_THAT(copied.unsound, HasSubstr("non è un database"));
        EXPECT_EQ(bytes_of(copy), "un testo");
    }
}

TEST_P(ArchiveCopies, TablesOfTheProgramsOwnAreLookedAtToo) {
    connection.open(path);
    connection.need_table(
        {"Scadenze", {{"ID", store::ColumnKind::autonumber}, {"Nota", store::ColumnKind::memo}}, {"ID"}, {}});
    run(connection, "INSERT INTO Scadenze (Nota) VALUES ('segno di riconoscimento')");
    connection.close();
    write_bytes(copy, bytes_of(path));
    std::string bytes = bytes_of(path);
    bytes.replace(bytes.find("segno di riconoscimento") / 4096 * 4096, 64, 64, '\xA5');
    write_bytes(path, bytes);
    EXPECT_THAT(refusal(), HasSubstr("non è stato sostituito"));
}

TEST_P(ArchiveCopies, AFileThatAnotherProgramHasIsNeitherCopiedNorReplaced) {
    write_bytes(copy, bytes_of(path));
    for (const std::string& used : {path, copy}) {
        SCOPED_TRACE(used);
        sqlite3* other = nullptr;
        if (access) connection.open(used);
        if (!access) {
            sqlite3_open(used.c_str(), &other);
            sqlite3_exec(other, "BEGIN EXCLUSIVE", nullptr, nullptr, nullptr);
        }
        EXPECT_THAT(refusal(), HasSubstr("altro programma"));
        if (access) connection.close();
        sqlite3_close(other);
    }
}

TEST_P(ArchiveCopies, ABackupPutsAsideWhatItWouldCost) {
    order.keeps_former = true;
    const std::string aside = folder.in("copia-2006-03-05.bak");
    const auto backup = [&](const std::string& former) {
        write_bytes(copy, former);
        std::filesystem::remove(aside);
        const auto copied = make_copy();
        EXPECT_TRUE(copied.made);
        EXPECT_TRUE(bytes_of(copy) == bytes_of(path));
        EXPECT_EQ(copied.kept_as.empty(), !std::filesystem::exists(aside));
        if (!copied.kept_as.empty()) {
            EXPECT_TRUE(bytes_of(copied.kept_as) == former);
        }
        return copied.kept_as;
    };
    const std::string forty = bytes_of(path);
    GetParam().make(folder.in("vuoto.mdb"));
    const std::string empty = bytes_of(folder.in("vuoto.mdb"));
    change(path, "DELETE * FROM Fatture WHERE ID=3");
    change(path, "UPDATE Fatture SET Cognome_Ragione_Sociale='Verdi' WHERE ID<3");
    change(path, insert_of_invoice(41));
    EXPECT_EQ(backup(forty), "") << "an earlier state";
    EXPECT_EQ(backup(empty), "");
    EXPECT_EQ(backup("un testo"), "") << "what opens as no archive";
    change(path, "DELETE * FROM Fatture WHERE ID>34");
    EXPECT_EQ(backup(forty), aside) << "more is gone than a user deletes";

    change(path, "UPDATE Fatture SET Cognome_Ragione_Sociale='x', Codice_Fiscale='y', Partita_IVA='z'");
    EXPECT_EQ(backup(forty), aside) << "of somebody else";
    write_bytes(path, damaged());
    const std::string unsound = bytes_of(path);
    EXPECT_EQ(backup(forty), aside) << "the last that opens";
    write_bytes(copy, forty);
    EXPECT_EQ(make_copy().kept_as, folder.in("copia-2006-03-05-2.bak"));
    order.destination = folder.in(std::string(251, 'n') + ".bak");
    write_bytes(order.destination, forty);
    EXPECT_EQ(make_copy().kept_as, folder.in(std::string(240, 'n') + "-2006-03-05.bak"));
}

TEST_P(ArchiveCopies, AFullDiskIsOverwrittenOnlyIfTheUserSaysSo) {
    FullDisk full;
    std::string asked;
    bool answer = false;
    order.may_overwrite = [&](std::uint64_t needed, std::uint64_t free) {
        asked = std::to_string(needed) + " " + std::to_string(free);
        return answer;
    };
    const auto failure = [&] {
        asked.clear();
        return failure_of([&] { store::copy_archive(full, regional, order); });
    };
    EXPECT_EQ(failure() + asked, "pieno") << "nothing to overwrite";
    const std::string whole = bytes_of(path);
    write_bytes(copy, whole);
    change(path, insert_of_invoice(41));
    const auto size = std::filesystem::file_size(path);
    full.free = size - std::filesystem::file_size(copy);
    EXPECT_EQ(failure(), "pieno");
    EXPECT_EQ(asked, std::to_string(size) + " " + std::to_string(full.free));
    EXPECT_TRUE(bytes_of(copy) == whole);
    answer = true;
    cut_short(copy);
    EXPECT_TRUE(store::copy_archive(full, regional, order).made);
    EXPECT_TRUE(bytes_of(copy) == bytes_of(path));
    EXPECT_EQ(invoices_in(copy), 41U);

    full.free = 0;
    change(path, insert_of_invoice(42));
    ASSERT_GT(std::filesystem::file_size(path), size);
    EXPECT_EQ(failure() + asked, "pieno") << "no room at all";
    full.free = 100'000'000;
    order.keeps_former = true;
    change(path, "DELETE * FROM Fatture WHERE ID>5");
    EXPECT_EQ(failure() + asked, "pieno") << "what is in it is not given away";
}

} // namespace
} // namespace tarvello::testing
