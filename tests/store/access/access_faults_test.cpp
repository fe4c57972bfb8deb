#include "store/access/access_engine.h"
#include "store/access/access_support.h"

#include "failure.h"
#include "store/statement.h"

#include <gmock/gmock.h>

#include <chrono>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace tarvello::testing {
namespace {

using store::access::FileCall;

const RegionalSettings regional;

bool changes_the_disk(FileCall call) {
    return call == FileCall::write || call == FileCall::sync || call == FileCall::truncate ||
           call == FileCall::remove;
}

/// Lets a number of calls that change the disk through, then refuses one of them, or that one and all after
/// it.
class RefuseCall : public store::access::FileWatch {
public:
    RefuseCall(int refused, bool for_good) : refused_(refused), for_good_(for_good) {}
    bool allow(FileCall call) override {
        if (!changes_the_disk(call)) return true;
        ++calls_;
        return for_good_ ? calls_ < refused_ : calls_ != refused_;
    }
    bool was_reached() const { return calls_ >= refused_; }

private:
    int refused_;
    bool for_good_;
    int calls_ = 0;
};

/// Ends the process at a call.
class DieAtCall : public store::access::FileWatch {
public:
    explicit DieAtCall(int last) : last_(last) {}
    bool allow(FileCall call) override {
        if (changes_the_disk(call) && ++calls_ == last_) kill(getpid(), SIGKILL);
        return true;
    }

private:
    int last_;
    int calls_ = 0;
};

constexpr const char* sample = "archivio.mdb";

/// Statements that touch all there is: rows that move, long values, indexes that split, pages given back.
std::vector<std::string> work() {
    std::vector<std::string> statements;
    for (int i = 0; i < 8; ++i) {
        const std::string text(static_cast<std::size_t>(i) * 900, static_cast<char>('a' + i));
        statements.push_back(
            "INSERT INTO Clienti(Cognome_Ragione_Sociale,Codice_Fiscale,Appunti) VALUES('Nuovo " +
            std::to_string(i) + "','X','" + text + "')");
        statements.push_back("UPDATE Clienti SET Indirizzo='" + text.substr(0, 150) + "',Appunti='" + text +
                             "' WHERE Numero_Cliente<" + std::to_string(6 + i));
        statements.push_back("UPDATE Fatture SET Anno='1999' WHERE ID=" + std::to_string(20 + i));
        statements.push_back("DELETE * FROM Fatture WHERE Numero_Cliente=" + std::to_string(12 + i));
    }
    return statements;
}

/// The states of the file after each of the statements.
std::vector<std::string> states(const ScratchFolder& folder) {
    const auto engine = open(folder.copy_of(sample, "states.mdb"));
    std::vector<std::string> result{everything(*engine)};
    for (const std::string& sql : work()) {
        run(*engine, sql);
        result.push_back(everything(*engine));
    }
    return result;
}

TEST(AccessFaults, EachFailingCallLeavesTheOldStateOrTheNewOne) {
    const ScratchFolder folder;
    const auto statements = work();
    const auto expected = states(folder);
    for (const bool for_good : {false, true}) {
        // One call is refused, the next run another one; or from some call on all are.
        for (int refused = 1; refused <= 200; refused += for_good ? 7 : 1) {
            SCOPED_TRACE("call " + std::to_string(refused) + (for_good ? " and all after it" : ""));
            const std::string path = folder.copy_of(sample);
            RefuseCall watch(refused, for_good);
            std::size_t at = 0;
            {
                const auto engine = store::open_access_engine(path, regional, &watch);
                std::string failure;
                while (!watch.was_reached() && at < statements.size())
                    failure = failure_of(*engine, statements[at++]);
                ASSERT_TRUE(watch.was_reached());
                if (!for_good && failure != "(done)") {
                    EXPECT_EQ(everything(*engine), expected[at - 1]);
                    EXPECT_EQ(failure_of(*engine, statements[at - 1]), "(done)") << "the next try succeeds";
                }
            }
            const std::string now = everything(*open(path));
            if (for_good) {
                EXPECT_TRUE(now == expected[at - 1] || now == expected[at]);
            } else {
                EXPECT_EQ(now, expected[at]);
            }
            EXPECT_FALSE(std::filesystem::exists(path + "-undo"));
            if (refused % 20 == 1) expect_sound(path, access_sample(sample));
            ASSERT_FALSE(HasFailure());
        }
    }
}

/// Runs the statements in a process of its own that ends at `last`, or is killed by the caller.
/// @return the process
pid_t start_work(const std::string& path, int last, int report) {
    const pid_t process = fork();
    if (process != 0) return process;
    try {
        DieAtCall watch(last);
        const auto engine = store::open_access_engine(path, regional, &watch);
        for (const std::string& sql : work()) {
            run(*engine, sql);
            const char done = '.';
            if (write(report, &done, 1) != 1) _exit(2);
        }
    } catch (const Failure&) {
        _exit(1);
    }
    _exit(0);
}

/// Lets the work be stopped, and looks at what it leaves.
/// @param stop  waits, and ends the process if it does not end by itself
void stop_and_look(const ScratchFolder& folder, const std::vector<std::string>& expected, int last,
                   const std::function<void(pid_t)>& stop, bool check) {
    const std::string path = folder.copy_of(sample);
    int report[2];
    ASSERT_EQ(pipe(report), 0);
    const pid_t process = start_work(path, last, report[1]);
    ASSERT_GT(process, 0);
    close(report[1]);
    stop(process);
    int status = 0;
    ASSERT_EQ(waitpid(process, &status, 0), process);
    ASSERT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == 0);
    std::size_t returned = 0;
    for (char done = 0; read(report[0], &done, 1) == 1;) ++returned;
    close(report[0]);
    {
        const auto engine = open(path);
        const std::string now = everything(*engine);
        EXPECT_TRUE(now == expected[returned] ||
                    (returned + 1 < expected.size() && now == expected[returned + 1]))
            << "after " << returned << " statements had returned";
    }
    if (check) expect_sound(path, access_sample(sample));
    std::filesystem::remove(path + "-undo");
}

TEST(AccessFaults, AStopAtAnyCallLosesNoStatementThatHadReturned) {
    const ScratchFolder folder;
    const auto expected = states(folder);
    for (int last = 1; last <= 200; ++last) {
        stop_and_look(
            folder, expected, last, [](pid_t) {}, last % 10 == 1);
        ASSERT_FALSE(HasFailure()) << "call " << last;
    }
}

TEST(AccessFaults, KilledAtRandomMomentsTheFileStaysWhole) {
    const char* wanted = std::getenv("TARVELLO_ACCESS_KILLS");
    const int kills = wanted != nullptr ? std::atoi(wanted) : 60;
    const ScratchFolder folder;
    const auto expected = states(folder);
    // How long the work takes where nobody stops it.
    std::chrono::duration<double, std::micro> whole{};
    stop_and_look(
        folder, expected, -1,
        [&whole](pid_t process) {
            const auto start = std::chrono::steady_clock::now();
            waitid(P_PID, static_cast<id_t>(process), nullptr, WEXITED | WNOWAIT);
            whole = std::chrono::steady_clock::now() - start;
        },
        true);
    std::mt19937 random(4711);
    for (int i = 0; i < kills; ++i) {
        const int microseconds = std::uniform_int_distribution(0, static_cast<int>(whole.count()))(random);
        stop_and_look(
            folder, expected, -1,
            [microseconds](pid_t process) {
                usleep(static_cast<useconds_t>(microseconds));
                kill(process, SIGKILL);
            },
            i % 10 == 0 || wanted != nullptr);
        ASSERT_FALSE(HasFailure()) << "kill " << i;
    }
}

TEST(AccessFaults, AJournalOfAnotherFileIsNotPutInto) {
    const ScratchFolder folder;
    const std::string path = folder.copy_of(sample);
    int report[2];
    ASSERT_EQ(pipe(report), 0);
    int status = 0;
    waitpid(start_work(path, 8, report[1]), &status, 0);
    close(report[0]);
    close(report[1]);
    ASSERT_TRUE(std::filesystem::exists(path + "-undo"));

    std::string other = file_bytes(access_sample("archivio.mdb"));
    other[0xC0] = static_cast<char>(other[0xC0] ^ 1); // its first page tells files apart
    const std::string other_path = folder.path("altro.mdb");
    write_file(other_path, other);
    std::filesystem::copy_file(path + "-undo", other_path + "-undo");
    EXPECT_THAT(opening_failure(other_path), ::testing::HasSubstr("diario"));
    EXPECT_EQ(file_bytes(other_path), other);

    // What was not written to the end is no journal.
    write_file(other_path + "-undo", file_bytes(path + "-undo").substr(0, 30));
    EXPECT_EQ(opening_failure(other_path), "(opened)");
    EXPECT_EQ(file_bytes(other_path), other);
    EXPECT_FALSE(std::filesystem::exists(other_path + "-undo"));
}

} // namespace
} // namespace tarvello::testing
