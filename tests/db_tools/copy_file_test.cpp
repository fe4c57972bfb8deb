#include "db_tools/copy_file.h"

#include "failure.h"
#include "support/fake_platform.h"

#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <functional>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvello {
namespace {

struct CopyFile : ::testing::Test {
    testing::FakePlatform fake;
    Platform platform = fake.platform();
    std::string source = fake.program_directory + "/tarvello.mdb";
    std::string destination = fake.program_directory + "/tarvello.bak";

    CopyFile() {
        fake.files.write(source, "nuovo");
        fake.files.write(destination, "vecchio");
    }
    /// Nothing but these files may lie in the folder: a copy that failed leaves nothing behind.
    void expect_files(std::vector<std::string> names) {
        EXPECT_EQ(fake.files.files_in(fake.program_directory, "*"), names);
    }
    std::string copied() { return fake.files.read(destination); }
};

TEST_F(CopyFile, ReplacesWithoutAWord) {
    EXPECT_TRUE(CopiaFile(platform, source, destination));
    EXPECT_EQ(copied(), "nuovo");
    EXPECT_TRUE(fake.copy_dialog.asked.empty());
    EXPECT_TRUE(fake.copy_dialog.titles.empty());
    expect_files({"tarvello.bak", "tarvello.mdb"});
}

TEST_F(CopyFile, AsksBeforeItReplacesAndShowsItself) {
    EXPECT_TRUE(CopiaFile(platform, source, destination, true, true));
    EXPECT_EQ(copied(), "nuovo");
    EXPECT_EQ(fake.copy_dialog.asked, std::vector{destination});
    EXPECT_EQ(fake.copy_dialog.titles, std::vector{"Copia " + destination});
    EXPECT_FALSE(fake.copy_dialog.open);

    std::filesystem::remove(destination);
    EXPECT_TRUE(CopiaFile(platform, source, destination, true, true));
    EXPECT_EQ(fake.copy_dialog.asked.size(), 1u) << "nothing to replace, nothing to ask";
}

TEST_F(CopyFile, ACopyGivenUpCountsAsMade) {
    fake.copy_dialog.answer_replace = false;
    EXPECT_TRUE(CopiaFile(platform, source, destination, true, true));
    EXPECT_EQ(copied(), "vecchio");
    fake.copy_dialog.answer_replace = true;
    fake.copy_dialog.give_up_at = 1;
    EXPECT_TRUE(CopiaFile(platform, source, destination, true, true));
    EXPECT_EQ(copied(), "vecchio");
    EXPECT_FALSE(fake.copy_dialog.open);
    EXPECT_TRUE(fake.copy_dialog.failures.empty());
    expect_files({"tarvello.bak", "tarvello.mdb"});
}

TEST_F(CopyFile, TakesTheNameOfTheSourceInAFolder) {
    const std::string folder = fake.program_directory + "/modelli";
    fake.files.make_folder(folder);
    EXPECT_TRUE(CopiaFile(platform, source, folder + "/"));
    EXPECT_EQ(fake.files.read(folder + "/tarvello.mdb"), "nuovo");
    EXPECT_TRUE(CopiaFile(platform, source, folder, true, true));
    EXPECT_EQ(fake.copy_dialog.asked, std::vector{folder + "/tarvello.mdb"});
    EXPECT_EQ(fake.copy_dialog.titles, std::vector{"Copia " + folder});
}

TEST_F(CopyFile, SaysNoWhereNothingCanBeDone) {
    const std::string elsewhere = fake.program_directory + "/manca/tarvello.bak";
    EXPECT_FALSE(CopiaFile(platform, source, elsewhere));
    EXPECT_FALSE(CopiaFile(platform, fake.program_directory + "/manca.mdb", destination));
    EXPECT_FALSE(CopiaFile(platform, source, source)) << "a file onto itself";
    EXPECT_FALSE(CopiaFile(platform, fake.program_directory, destination)) << "a folder is no file";
    EXPECT_FALSE(CopiaFile(platform, "", ""));
    EXPECT_TRUE(fake.copy_dialog.failures.empty()) << "silent unless it shows itself";
    EXPECT_FALSE(CopiaFile(platform, source, elsewhere, true, true));
    ASSERT_EQ(fake.copy_dialog.failures.size(), 1u);
    EXPECT_NE(fake.copy_dialog.failures[0].find("non esiste"), std::string::npos);
    EXPECT_FALSE(fake.copy_dialog.open);
    EXPECT_EQ(copied(), "vecchio");
    EXPECT_EQ(fake.files.read(source), "nuovo");
}

std::string failure_of(const std::function<void()>& act) {
    try {
        act();
    } catch (const Failure& failure) {
        return failure.description();
    }
    return "(done)";
}

TEST_F(CopyFile, SaysWhatIsWrongWithASourceOrADestinationAndWaitsForNone) {
    namespace fs = std::filesystem;
    const auto in_folder = [&](const std::string& name) { return fake.program_directory + "/" + name; };
    ASSERT_EQ(::mkfifo(in_folder("tubo").c_str(), 0600), 0);
    fs::create_symlink("manca", in_folder("collegamento"));
    fs::create_symlink("giro", in_folder("giro"));
    fake.files.write(in_folder("chiuso"), "protetto");
    ASSERT_EQ(::chmod(in_folder("chiuso").c_str(), 0), 0);
    const std::string new_file = in_folder("copia");
    const struct {
        std::string from, to, side, why;
    } cases[] = {
        {in_folder("tubo"), new_file, "leggere", "non è un file di dati"},
        {"/dev/zero", new_file, "leggere", "non è un file di dati"},
        {"/proc/self/mem", new_file, "leggere", "non risponde"}, // opens as any file, and gives an error
        {in_folder("collegamento"), new_file, "leggere", "non esiste"},
        {in_folder("chiuso"), new_file, "leggere", "permessi"},
        {source, in_folder("tubo"), "scrivere", "non è un file di dati"},
        {source, "/dev/full", "scrivere", "non è un file di dati"},
        {source, in_folder("collegamento"), "scrivere", "collegamento a un file che non esiste"},
        {source, in_folder("giro"), "scrivere", "girano in tondo"},
        {source, in_folder("chiuso"), "scrivere", "permessi"},
        {source, destination + "/copia", "scrivere", "non è una cartella"},
        {source, in_folder(std::string(256, 'x')), "scrivere", "troppo lungo"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.from + " > " + c.to);
        const std::string told = failure_of([&] { fake.files.copy(c.from, c.to); });
        EXPECT_EQ(told.find("Impossibile " + c.side), 0U) << told;
        EXPECT_NE(told.find(c.why), std::string::npos) << told;
    }
    EXPECT_NE(failure_of([&] { fake.files.read(in_folder("tubo")); }).find("leggere"), std::string::npos);
    EXPECT_EQ(fake.files.read(source) + copied(), "nuovovecchio");
    expect_files({"chiuso", "tarvello.bak", "tarvello.mdb", "tubo"}); // and links that lead nowhere
}

TEST_F(CopyFile, ASourceThatChangesItsLengthReplacesNothing) {
    for (const std::uintmax_t length : {0U, 4U, 6U, 100U}) {
        fake.files.write(source, "nuovo");
        const std::string told = failure_of([&] {
            fake.files.copy(source, destination, [&](std::uint64_t done, std::uint64_t) {
                if (done == (length < 5 ? 0U : 5U)) std::filesystem::resize_file(source, length);
                return true;
            });
        });
        EXPECT_NE(told.find("è cambiato"), std::string::npos) << told;
        EXPECT_EQ(copied(), "vecchio") << length;
    }
}

TEST_F(CopyFile, NoNameIsTakenFromAnybodyAndEveryLengthWorks) {
    // What the file in the making was once called, and is called now: each may be somebody's source.
    for (const std::string& name : {std::string("tarvello.bak.parziale"), [&] {
                                        const auto copy = fake.files.prepare_copy(source, destination);
                                        return copy->path().substr(copy->path().rfind('/') + 1);
                                    }()}) {
        const std::string rescued = fake.program_directory + "/" + name;
        fake.files.write(rescued, "salvato");
        EXPECT_TRUE(CopiaFile(platform, rescued, destination)) << name;
        EXPECT_EQ(copied(), "salvato");
        EXPECT_EQ(fake.files.read(rescued), "salvato");
    }
    for (std::size_t length = 246; length <= 255; ++length) {
        const std::string longest = fake.program_directory + "/" + std::string(length, 'n');
        EXPECT_TRUE(CopiaFile(platform, source, longest));
        EXPECT_EQ(fake.files.read(longest), "nuovo");
    }
}

TEST_F(CopyFile, WhatIsPrivateStaysPrivate) {
    const auto rights_of = [&](mode_t of_source, std::optional<mode_t> of_destination) {
        std::filesystem::remove(destination);
        if (of_destination) {
            fake.files.write(destination, "vecchio");
            ::chmod(destination.c_str(), *of_destination);
        }
        ::chmod(source.c_str(), of_source);
        EXPECT_TRUE(CopiaFile(platform, source, destination));
        struct stat status {};
        EXPECT_EQ(::stat(destination.c_str(), &status), 0);
        return status.st_mode & 0777;
    };
    const mode_t umask = ::umask(022);
    EXPECT_EQ(rights_of(0600, {}), 0600U);
    EXPECT_EQ(rights_of(0664, {}), 0644U);
    EXPECT_EQ(rights_of(0444, {}), 0644U) << "what may only be read can be written as a copy";
    EXPECT_EQ(rights_of(0644, 0600), 0600U);
    EXPECT_EQ(rights_of(0600, 0664), 0664U) << "the user has put it there";
    ::umask(umask);
}

TEST_F(CopyFile, KeepsDatesRightsAndLinks) {
    const auto day_before = std::filesystem::last_write_time(source) - std::chrono::hours(24);
    std::filesystem::last_write_time(source, day_before);
    std::filesystem::permissions(destination, std::filesystem::perms{0600});
    const std::string link = fake.program_directory + "/collegamento.bak";
    std::filesystem::create_symlink(destination, link);
    EXPECT_TRUE(CopiaFile(platform, source, link));
    EXPECT_TRUE(std::filesystem::is_symlink(link));
    EXPECT_EQ(copied(), "nuovo");
    EXPECT_EQ(std::filesystem::status(destination).permissions(), std::filesystem::perms{0600});
    EXPECT_EQ(std::filesystem::last_write_time(destination), day_before);
}

/// Runs `act` in a process of its own with a limit on the size of files, as a full disk sets one.
template <typename Act>
int with_file_limit(rlim_t bytes, Act act) {
    const pid_t child = ::fork();
    if (child == 0) {
        ::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{bytes, bytes};
        ::setrlimit(RLIMIT_FSIZE, &limit);
        ::_exit(act());
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

TEST_F(CopyFile, AFullDiskLeavesTheOldFile) {
    fake.files.write(source, std::string(300'000, 'x'));
    const int answer =
        with_file_limit(100'000, [&] { return CopiaFile(platform, source, destination) ? 1 : 0; });
    EXPECT_EQ(answer, 0);
    EXPECT_EQ(copied(), "vecchio");
    expect_files({"tarvello.bak", "tarvello.mdb"});
    const int written = with_file_limit(100'000, [&] {
        try {
            fake.files.write(destination, std::string(300'000, 'y'));
            return 1;
        } catch (const Failure&) { // expected: the answer is the exit code
            return 0;
        }
    });
    EXPECT_EQ(written, 0);
    EXPECT_EQ(copied(), "vecchio");
}

TEST_F(CopyFile, AKillHalfWayLeavesTheOldFileAndTheNextCopyIsWhole) {
    const std::string content(40 << 20, 'x');
    fake.files.write(source, content);
    const pid_t child = ::fork();
    if (child == 0) {
        fake.files.copy(source, destination, [](std::uint64_t done, std::uint64_t total) {
            if (done > total / 3) ::kill(::getpid(), SIGKILL);
            return true;
        });
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the copy was over before the kill";
    EXPECT_EQ(copied(), "vecchio");
    EXPECT_TRUE(CopiaFile(platform, source, destination));
    EXPECT_TRUE(copied() == content);
    expect_files({"tarvello.bak", "tarvello.mdb"});
}

TEST_F(CopyFile, AReadOnlyDestinationStays) {
    namespace fs = std::filesystem;
    fs::permissions(fs::path(destination).parent_path(), fs::perms{0777});
    fs::permissions(source, fs::perms{0644});
    fs::permissions(destination, fs::perms{0444});
    EXPECT_FALSE(CopiaFile(platform, source, destination)) << "not even for the superuser";
    EXPECT_EQ(copied(), "vecchio");
}

} // namespace
} // namespace tarvello
