// A disk that fails at any point: what was saved is there and whole.

#include "store/store_fixture.h"
#include "support/program_test.h"

#include <sqlite3.h>

#include <optional>

namespace tarvello::testing {
namespace {

/// SQLite's way to the disk with a fault in it: after a number of writing calls every further one fails.
class FaultyDisk {
public:
    FaultyDisk() {
        real_ = sqlite3_vfs_find(nullptr);
        vfs_ = *real_;
        vfs_.zName = "faulty";
        vfs_.szOsFile = static_cast<int>(sizeof(File)) + real_->szOsFile;
        vfs_.xOpen = open;
        vfs_.xDelete = [](sqlite3_vfs*, const char* name, int sync) {
            if (sync == 0) unsynced_deletes = true;
            return fails() ? SQLITE_IOERR_DELETE : real_->xDelete(real_, name, sync);
        };
        sqlite3_vfs_register(&vfs_, 1);
    }
    ~FaultyDisk() {
        sqlite3_vfs_unregister(&vfs_);
        sqlite3_vfs_register(real_, 1);
        calls_left_.reset();
    }
    FaultyDisk(const FaultyDisk&) = delete;
    FaultyDisk& operator=(const FaultyDisk&) = delete;

    /// A journal has been removed, and its folder not synced: it may be back after a power cut.
    inline static bool unsynced_deletes = false;

    void fail_after(int calls) {
        calls_left_ = calls;
        failed_ = false;
    }
    /// The disk is well again. @return whether it has failed any call
    bool repair() {
        calls_left_.reset();
        return failed_;
    }

private:
    /// An open file of ours; the real one lies behind it in the same memory.
    struct File {
        sqlite3_file base;
        sqlite3_file* real() { return reinterpret_cast<sqlite3_file*>(this + 1); }
    };
    static sqlite3_file* real_of(sqlite3_file* file) { return reinterpret_cast<File*>(file)->real(); }

    template <auto Method, typename... Arguments>
    static int forward(sqlite3_file* file, Arguments... arguments) {
        return (real_of(file)->pMethods->*Method)(real_of(file), arguments...);
    }

    static bool fails() {
        if (!calls_left_) return false;
        if (*calls_left_ > 0) {
            --*calls_left_;
            return false;
        }
        failed_ = true;
        return true;
    }

    static int open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out_flags) {
        static const sqlite3_io_methods methods = [] {
            sqlite3_io_methods m{};
            m.iVersion = 1;
            m.xClose = forward<&sqlite3_io_methods::xClose>;
            m.xRead = forward<&sqlite3_io_methods::xRead>;
            m.xWrite = [](sqlite3_file* f, const void* bytes, int size, sqlite3_int64 at) {
                if (!fails()) return forward<&sqlite3_io_methods::xWrite>(f, bytes, size, at);
                // As a full disk does it: half of the bytes are there.
                forward<&sqlite3_io_methods::xWrite>(f, bytes, size / 2, at);
                return SQLITE_FULL;
            };
            m.xTruncate = [](sqlite3_file* f, sqlite3_int64 size) {
                return fails() ? SQLITE_IOERR_TRUNCATE : forward<&sqlite3_io_methods::xTruncate>(f, size);
            };
            m.xSync = [](sqlite3_file* f, int how) {
                return fails() ? SQLITE_IOERR_FSYNC : forward<&sqlite3_io_methods::xSync>(f, how);
            };
            m.xFileSize = forward<&sqlite3_io_methods::xFileSize>;
            m.xLock = forward<&sqlite3_io_methods::xLock>;
            m.xUnlock = forward<&sqlite3_io_methods::xUnlock>;
            m.xCheckReservedLock = forward<&sqlite3_io_methods::xCheckReservedLock>;
            m.xFileControl = forward<&sqlite3_io_methods::xFileControl>;
            m.xSectorSize = forward<&sqlite3_io_methods::xSectorSize>;
            m.xDeviceCharacteristics = forward<&sqlite3_io_methods::xDeviceCharacteristics>;
            return m;
        }();
        file->pMethods = nullptr;
        if ((flags & SQLITE_OPEN_MAIN_JOURNAL) != 0 && fails()) return SQLITE_CANTOPEN;
        const int code = real_->xOpen(real_, name, real_of(file), flags, out_flags);
        if (code == SQLITE_OK) file->pMethods = &methods;
        return code;
    }

    inline static sqlite3_vfs* real_ = nullptr;
    inline static std::optional<int> calls_left_;
    inline static bool failed_ = false;
    sqlite3_vfs vfs_;
};

std::string integrity(const std::string& path) {
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open_v2(path.c_str(), &database, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    std::string result;
    sqlite3_exec(
        database, "PRAGMA integrity_check",
        [](void* text, int, char** values, char**) {
            *static_cast<std::string*>(text) += values[0];
            return 0;
        },
        &result, nullptr);
    sqlite3_close(database);
    return result;
}

TEST(SqliteFaults, EveryWriteThatFailsLeavesTheWholeStatementOrNothing) {
    TemporaryFolder folder;
    const RegionalSettings regional;
    const std::string path = folder.in("archivio.mdb");
    make_database(path);
    {
        Connection connection(regional);
        connection.open(path);
        for (int number = 1; number <= 5; ++number) run(connection, insert_of_invoice(number));
    }
    const std::string five_invoices = bytes_of(path);
    const std::string update = "UPDATE Fatture SET Nome='cambiato'";
    bool finished = false;
    int faults = 0;
    FaultyDisk disk;
    for (int calls = 0; !finished; ++calls) {
        SCOPED_TRACE(calls);
        write_bytes(path, five_invoices);
        Connection connection(regional);
        connection.open(path);
        Recordset half_read;
        half_read.open("SELECT * FROM Fatture", connection);

        disk.fail_after(calls);
        bool returned = true;
        try {
            run(connection, update);
            run(connection, insert_of_invoice(6));
        } catch (const Failure& failure) {
            EXPECT_NE(failure.description().find("Database"), std::string::npos);
            returned = false;
        }
        skip_failures([&] { half_read.move_next(); }); // a failure or a row, no crash
        finished = !disk.repair();
        if (!finished) ++faults;
        EXPECT_TRUE(returned || !finished);

        // The same connection goes on once the disk is well.
        const std::size_t changed = run(connection, "SELECT * FROM Fatture WHERE Nome='cambiato'").size();
        EXPECT_TRUE(changed == 0 || changed == 5) << changed;
        const std::vector<Row> saved = run(connection, "SELECT * FROM Fatture WHERE ID>5");
        EXPECT_LE(saved.size(), 1U);
        if (returned) {
            EXPECT_EQ(changed, 5U);
            EXPECT_EQ(saved.size(), 1U);
        }
        if (!saved.empty()) {
            EXPECT_EQ(Row(saved[0].begin() + 1, saved[0].end()), row_of_invoice(6));
        }
        run(connection, insert_of_invoice(7));
        half_read.close();
        connection.close();
        EXPECT_EQ(integrity(path), "ok");
    }
    EXPECT_GT(faults, 10) << "the faults were not met";
    EXPECT_FALSE(FaultyDisk::unsynced_deletes);
}

} // namespace
} // namespace tarvello::testing
