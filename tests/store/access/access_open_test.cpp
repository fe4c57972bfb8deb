#include "store/access/access_support.h"

#include "program/open_database.h"
#include "store/access/journal.h"
#include "support/program_test.h"

#include <csignal>
#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvello::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

/// A sample with some bytes of its first page changed.
std::string with_header(const TemporaryFolder& folder, std::size_t at, const std::string& bytes) {
    const std::string path = copy_of(folder, "vuoto.mdb", "header.mdb");
    std::string content = bytes_of(path);
    content.replace(at, bytes.size(), bytes);
    write_bytes(path, content);
    return path;
}

/// Flips bits of a byte, which in the masked part of the header flips the same bits of what it stands for.
std::string with_flipped(const TemporaryFolder& folder, std::size_t at) {
    const char byte = bytes_of(access_sample("vuoto.mdb"))[at];
    return with_header(folder, at, std::string(1, static_cast<char>(byte ^ 0x41)));
}

TEST(AccessOpening, RefusesWhatItDoesNotKnowWithWordsOfItsOwn) {
    const TemporaryFolder folder;
    EXPECT_THAT(opening_failure(with_header(folder, 0x14, std::string(1, '\0'))), HasSubstr("Access 97"));
    EXPECT_THAT(opening_failure(with_header(folder, 0x14, "\x02")), HasSubstr(".accdb"));
    EXPECT_THAT(opening_failure(with_header(folder, 4, "Standard ACE DB")), HasSubstr(".accdb"));
    EXPECT_THAT(opening_failure(with_flipped(folder, 0x3E)), HasSubstr("cifrato"));
    EXPECT_THAT(opening_failure(with_flipped(folder, 0x42)), HasSubstr("password"));
    EXPECT_THAT(opening_failure(with_flipped(folder, 0x69)), HasSubstr("password"));

    const std::string cut = folder.in("cut.mdb");
    write_bytes(cut, bytes_of(access_sample("vuoto.mdb")).substr(0, 1000));
    EXPECT_THAT(opening_failure(cut), HasSubstr("danneggiato"));
    EXPECT_EQ(bytes_of(cut).size(), 1000U);
}

TEST(AccessOpening, AFileThatAnotherProgramHasIsNotOpened) {
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "archivio.mdb");
    {
        const auto first = open(path);
        EXPECT_THAT(opening_failure(path), HasSubstr("già aperto in un altro programma"));
    }
    EXPECT_EQ(opening_failure(path), "(done)") << "the lock goes with the engine";

    // A program that locks the way of network folders: a range of the file, not the file.
    int ready[2];
    ASSERT_EQ(pipe(ready), 0);
    const pid_t other = fork();
    if (other == 0) {
        const int handle = ::open(path.c_str(), O_RDWR);
        struct flock range {};
        range.l_type = F_WRLCK;
        range.l_whence = SEEK_SET;
        const char done = fcntl(handle, F_SETLK, &range) == 0 ? 'y' : 'n';
        if (write(ready[1], &done, 1) != 1) _exit(1);
        pause();
        _exit(0);
    }
    char done = 'n';
    ASSERT_EQ(read(ready[0], &done, 1), 1);
    ASSERT_EQ(done, 'y');
    EXPECT_THAT(opening_failure(path), HasSubstr("già aperto in un altro programma"));
    kill(other, SIGKILL);
    waitpid(other, nullptr, 0);
    close(ready[0]);
    close(ready[1]);
}

TEST(AccessOpening, AFileThatAnAccessUserHasIsReadOnly) {
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "archivio.mdb");
    const std::string lock = folder.in("archivio.ldb");
    write_bytes(lock, "");
    const int handle = ::open(lock.c_str(), O_RDWR);
    struct flock range {};
    range.l_type = F_WRLCK;
    range.l_len = 1;
    ASSERT_EQ(::fcntl(handle, F_OFD_SETLK, &range), 0); // as a server of network folders does for its user
    const auto engine = open(path);
    EXPECT_EQ(run(*engine, "SELECT * FROM Clienti").size(), 37U);
    EXPECT_THAT(failure_of(*engine, "DELETE * FROM Clienti"),
                AllOf(HasSubstr("aperto in Access"), HasSubstr("soltanto leggerlo")));
    ::close(handle);
    EXPECT_THAT(failure_of(*engine, "DELETE * FROM Clienti"),
                AllOf(HasSubstr("nessun programma"), HasSubstr("cancellare il file \"" + lock)));
    std::filesystem::rename(lock, folder.in("archivio.LDB"));
    EXPECT_THAT(failure_of(*engine, "DELETE * FROM Fatture"), HasSubstr("archivio.LDB"));
    std::filesystem::remove(folder.in("archivio.LDB"));
    EXPECT_EQ(failure_of(*engine, "DELETE * FROM DatiIntestazione"), "(done)")
        << "the user has closed it meanwhile";
}

struct AccessNotice : ProgramTest {};

TEST_F(AccessNotice, AJournalThatDoesNotGoWithTheFileIsToldOfWhenItIsOpened) {
    using namespace store::access;
    const TemporaryFolder folder;
    const std::string path = copy_of(folder, "archivio.mdb");
    {
        File file(path, File::Mode::read_write, nullptr);
        Journal journal(file, static_cast<PageNumber>(file.size() / testing::page_size), nullptr);
        journal.keep(file, {50}, {{50, std::make_shared<Page>()}});
        const std::uint8_t changed = 7; // by somebody else
        file.write(50 * testing::page_size + 16, {&changed, 1});
    }
    program->database().dbConnection.close();
    program->session().txtDatabaseRoute.set_text(path);
    boxes().expect_any();
    EXPECT_TRUE(ApriDatabase(*program));
    boxes().expect_none_left();
}

} // namespace
} // namespace tarvello::testing
