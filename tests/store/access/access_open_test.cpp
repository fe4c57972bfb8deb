#include "store/access/access_support.h"

#include "failure.h"
#include "store/statement.h"

#include <gmock/gmock.h>

#include <csignal>
#include <fcntl.h>
#include <filesystem>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvello::testing {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;

/// A sample with some bytes of its first page changed.
std::string with_header(const ScratchFolder& folder, std::size_t at, const std::string& bytes) {
    const std::string path = folder.copy_of("vuoto.mdb", "header.mdb");
    std::string content = file_bytes(path);
    content.replace(at, bytes.size(), bytes);
    write_file(path, content);
    return path;
}

/// Flips bits of a byte, which in the masked part of the header flips the same bits of what it stands for.
std::string with_flipped(const ScratchFolder& folder, std::size_t at) {
    const char byte = file_bytes(access_sample("vuoto.mdb"))[at];
    return with_header(folder, at, std::string(1, static_cast<char>(byte ^ 0x41)));
}

TEST(AccessOpening, RefusesWhatItDoesNotKnowWithWordsOfItsOwn) {
    const ScratchFolder folder;
    EXPECT_THAT(opening_failure(with_header(folder, 0x14, std::string(1, '\0'))), HasSubstr("Access 97"));
    EXPECT_THAT(opening_failure(with_header(folder, 0x14, "\x02")), HasSubstr(".accdb"));
    EXPECT_THAT(opening_failure(with_header(folder, 4, "Standard ACE DB")), HasSubstr(".accdb"));
    EXPECT_THAT(opening_failure(with_flipped(folder, 0x3E)), HasSubstr("cifrato"));
    EXPECT_THAT(opening_failure(with_flipped(folder, 0x42)), HasSubstr("password"));
    EXPECT_THAT(opening_failure(with_flipped(folder, 0x69)), HasSubstr("password"));

    const std::string cut = folder.path("cut.mdb");
    write_file(cut, file_bytes(access_sample("vuoto.mdb")).substr(0, 1000));
    EXPECT_THAT(opening_failure(cut), HasSubstr("danneggiato"));
    EXPECT_EQ(file_bytes(cut).size(), 1000U);
}

TEST(AccessOpening, AFileThatAnotherProgramHasIsNotOpened) {
    const ScratchFolder folder;
    const std::string path = folder.copy_of("archivio.mdb");
    {
        const auto first = open(path);
        EXPECT_THAT(opening_failure(path), HasSubstr("già aperto in un altro programma"));
    }
    EXPECT_EQ(opening_failure(path), "(opened)") << "the lock goes with the engine";

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
    const ScratchFolder folder;
    const std::string path = folder.copy_of("archivio.mdb");
    const std::string lock = folder.path("archivio.ldb");
    write_file(lock, "");
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
    std::filesystem::rename(lock, folder.path("archivio.LDB"));
    EXPECT_THAT(failure_of(*engine, "DELETE * FROM Fatture"), HasSubstr("archivio.LDB"));
    std::filesystem::remove(folder.path("archivio.LDB"));
    EXPECT_EQ(failure_of(*engine, "DELETE * FROM DatiIntestazione"), "(done)")
        << "the user has closed it meanwhile";
}

} // namespace
} // namespace tarvello::testing
