// A journal of SQLite lies beside a file: its own, half written as a stop has left it, or one that has been
// put in its place. The journals are made by hand, as sqlite.org/fileformat.html describes them.

#include "store/store_fixture.h"

namespace tarvello::testing {
namespace {

using ::testing::HasSubstr;

constexpr std::size_t page = 4096;

std::string number(std::uint32_t value) {
    std::string bytes;
    for (int shift = 24; shift >= 0; shift -= 8) bytes += static_cast<char>(value >> shift);
    return bytes;
}

std::string page_at(const std::string& file, std::size_t at) { return file.substr(at, page); }

struct LeftJournal : ::testing::Test, FileOfInvoices {
    LeftJournal() : FileOfInvoices(engine_kinds[0]) {}

    enum class Kind { whole, without_first_page, not_synced };

    std::string after(const std::string& sql) {
        connection.open(path);
        run(connection, sql);
        connection.close();
        return bytes_of(path);
    }

    /// The journal of the transaction that lies between two states of a file.
    static std::string journal_of(const std::string& before, const std::string& now, Kind kind) {
        std::string records;
        std::uint32_t count = 0;
        for (std::size_t at = kind == Kind::without_first_page ? page : 0; at < before.size(); at += page) {
            const std::string old = page_at(before, at);
            if (old == page_at(now, at)) continue;
            std::uint32_t sum = 4711;
            for (std::size_t i = page - 200; i < page; i -= 200) sum += static_cast<unsigned char>(old[i]);
            records += number(static_cast<std::uint32_t>(at / page + 1)) + old + number(sum);
            ++count;
        }
        std::string head = "\xd9\xd5\x05\xf9\x20\xa1\x63\xd7" + number(kind == Kind::not_synced ? 0 : count) +
                           number(4711) + number(static_cast<std::uint32_t>(before.size() / page)) +
                           number(512) + number(page);
        head.resize(512);
        return head + records;
    }

    /// Opens a file with a journal beside it. @return what the user is told
    std::string open(const std::string& file, const std::string& journal) {
        write_bytes(path, file);
        write_bytes(path + "-journal", journal);
        connection.open(path);
        run(connection, "SELECT * FROM Fatture");
        std::string notice = connection.engine().notice();
        connection.close();
        std::filesystem::remove(path + "-journal"); // one that says nothing may stay
        return notice;
    }
};

TEST_F(LeftJournal, IsRolledBackIntoItsOwnFileAndIntoNoOther) {
    const std::string older = after("UPDATE Fatture SET Nome='prima'");
    for (int number = 41; number < 50; ++number)
        after(insert_of_invoice(number)); // more than free pages hold
    const std::string before = after(insert_of_invoice(50));
    const std::string now = after("UPDATE Fatture SET Nome='a meta'");
    const std::string newer = after(insert_of_invoice(51));
    write_bytes(path, before);
    ASSERT_NE(older.size(), before.size());
    connection.open(path);
    connection.need_table({"Scadenze", {{"ID", store::ColumnKind::autonumber}}, {"ID"}, {}});
    connection.close();
    const std::string with_table = bytes_of(path); // its first page is another one behind the head too
    engine_kinds[0].make(folder.in("altro"));
    const std::string other = bytes_of(folder.in("altro"));
    std::filesystem::remove(folder.in("altro"));
    std::string half = now;
    for (std::size_t at = page * 3; at < before.size(); at += 2 * page)
        half.replace(at, page, page_at(before, at));

    for (const Kind kind : {Kind::whole, Kind::without_first_page, Kind::not_synced}) {
        SCOPED_TRACE(static_cast<int>(kind));
        const std::string journal = journal_of(before, now, kind);
        for (const std::string& own : {before, now, half}) {
            if (kind != Kind::whole && own != before) continue; // no such state is ever left
            EXPECT_EQ(open(own, journal), "");
            EXPECT_TRUE(bytes_of(path) == before);
        }
        for (const std::string& foreign : {older, newer, other}) {
            const std::string told = open(foreign, journal);
            EXPECT_TRUE(bytes_of(path) == foreign);
            ASSERT_EQ(folder.names().size(), 2U);
            const std::string aside = folder.in(folder.names()[1]);
            EXPECT_THAT(told, HasSubstr("messo da parte con il nome \"" + aside + "\""));
            EXPECT_TRUE(bytes_of(aside) == journal);
            std::filesystem::remove(aside);
        }
    }
    EXPECT_EQ(open(with_table, journal_of(before, with_table, Kind::whole)), "");
    EXPECT_TRUE(bytes_of(path) == before);
    for (const std::string& nothing : {std::string(), std::string(512, '\0'), std::string("testo")}) {
        EXPECT_EQ(open(older, nothing), "");
        EXPECT_TRUE(bytes_of(path) == older);
    }
}

TEST_F(LeftJournal, ThatIsNotTheFilesAndCannotBePutAsideKeepsItClosed) {
    const std::string before = bytes_of(path);
    const std::string now = after(insert_of_invoice(41));
    const std::string newer = after(insert_of_invoice(42));
    write_bytes(path + "-journal", journal_of(before, now, Kind::whole));
    std::filesystem::permissions(folder.path, std::filesystem::perms{0555});
    std::filesystem::permissions(path, std::filesystem::perms{0666});
    {
        const AsOrdinaryUser user;
        EXPECT_THAT(open_failure(path), HasSubstr("mettere da parte: non si hanno i permessi"));
    }
    std::filesystem::permissions(folder.path, std::filesystem::perms{0755});
    EXPECT_TRUE(bytes_of(path) == newer);
}

} // namespace
} // namespace tarvello::testing
