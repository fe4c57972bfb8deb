#include "desktop/desktop_test.h"
#include "places.h"
#include "platform/qt/desktop.h"
#include "platform/qt/installation.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/regional.h"
#include "platform/qt/settings_file.h"
#include "program/version.h"
#include "text/currency.h"

#include <gtest/gtest.h>

#include <QLocale>
#include <QProcess>
#include <QTest>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace tarvello::testing {
namespace {

namespace fs = std::filesystem;
using qt::to_qt;

void write_file(const fs::path& path, const std::string& content) {
    fs::create_directories(path.parent_path());
    std::ofstream(path, std::ios::binary) << content;
}

std::string read_file(const fs::path& path) {
    std::stringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

// Settings

struct Settings : ::testing::Test {
    UserFolders folders;
    std::string path = folders.path("config") + "/tarvello/impostazioni";
};

TEST_F(Settings, AnyTextSurvivesTheProcess) {
    const std::vector<std::string> texts = {"",
                                            "False",
                                            "a\nb\r\nc\t\\n\\",
                                            "\"'%;--",
                                            "😀 àèì שלום",
                                            std::string("a\0b", 3),
                                            std::string(100000, 'x'),
                                            "\xFF\xFE broken"};
    {
        qt::SettingsFile settings(path);
        for (std::size_t i = 0; i < texts.size(); ++i)
            settings.write("Tarvello", "campo\t" + std::to_string(i), "text", texts[i]);
        settings.write("Tarvello", "campo\t0", "value", "1");
    }
    qt::SettingsFile settings(path);
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(settings.read("Tarvello", "campo\t" + std::to_string(i), "text"), texts[i]);
    }
    EXPECT_EQ(settings.read("Tarvello", "campo\t0", "value"), "1");
    EXPECT_EQ(settings.read("Tarvello", "campo", "text"), std::nullopt);
    EXPECT_EQ(settings.read("Altro", "campo\t0", "text"), std::nullopt);
}

TEST_F(Settings, EachWriteIsInTheFileWhenItReturns) {
    qt::SettingsFile settings(path);
    settings.write("Tarvello", "Text1", "text", "M");
    EXPECT_EQ(qt::SettingsFile(path).read("Tarvello", "Text1", "text"), "M");
    settings.write("Tarvello", "Text1", "text", "Ma");
    EXPECT_EQ(qt::SettingsFile(path).read("Tarvello", "Text1", "text"), "Ma");
    EXPECT_EQ(std::distance(fs::directory_iterator(fs::path(path).parent_path()), {}), 1)
        << "nothing else is left there";
}

TEST_F(Settings, GarbageIsAFirstRunAndTakesNothingElseAlong) {
    std::string garbage;
    for (int i = 0; i < 5000; ++i) garbage += static_cast<char>(i * 7919 % 251);
    for (const std::string& content :
         {garbage, std::string("\n\n\n"), std::string("a\tb\tc"), std::string("a\tb\tc\td\te\n")}) {
        write_file(path, content);
        qt::SettingsFile settings(path);
        EXPECT_EQ(settings.read("Tarvello", "txtDatabaseRoute", "text"), std::nullopt);
        settings.write("Tarvello", "txtDatabaseRoute", "text", "/casa/tarvello.mdb");
        EXPECT_EQ(qt::SettingsFile(path).read("Tarvello", "txtDatabaseRoute", "text"), "/casa/tarvello.mdb");
    }
    write_file(path, "Tarvello\tText1\ttext\tRossi\n" + garbage +
                         "\nTarvello\tCheck1\tvalue\t1\nTarvello\tCheck1\tva");
    qt::SettingsFile settings(path);
    EXPECT_EQ(settings.read("Tarvello", "Text1", "text"), "Rossi");
    EXPECT_EQ(settings.read("Tarvello", "Check1", "value"), "1");
}

TEST_F(Settings, WhatCannotBeWrittenIsKeptForTheSessionAndStopsNothing) {
    write_file(fs::path(path).parent_path(), "a file where the folder should be");
    qt::SettingsFile settings(path);
    settings.write("Tarvello", "Text1", "text", "Rossi");
    EXPECT_EQ(settings.read("Tarvello", "Text1", "text"), "Rossi");
    EXPECT_EQ(read_file(fs::path(path).parent_path()), "a file where the folder should be");
    fs::remove(fs::path(path).parent_path());
    fs::create_directories(path); // a folder where the file should be
    EXPECT_EQ(qt::SettingsFile(path).read("Tarvello", "Text1", "text"), std::nullopt);
}

// The program's directory

struct ProgramDirectory : ::testing::Test {
    UserFolders folders;
    std::string bin = folders.path("home") + "/prefix/bin";
    std::string own = folders.path("data") + "/tarvello";

    static void write_originals(const fs::path& shipped) {
        write_file(shipped / "originali/tarvello.mdb", "new");
        write_file(shipped / "originali/Comuni.mdb", "places");
        write_file(shipped / "originali/modelli/a.rtf", "model");
        fs::permissions(shipped / "originali/modelli/a.rtf", fs::perms::owner_read);
    }
};

TEST_F(ProgramDirectory, IsTheFolderOfThePortableProgram) {
    write_file(bin + "/pictures/tarvello.svg", "<svg/>");
    write_originals(bin);
    EXPECT_EQ(qt::program_directory(bin, own), bin);
    EXPECT_EQ(read_file(bin + "/tarvello.mdb"), "new");
    EXPECT_FALSE(fs::exists(own));
    // A newer version is unpacked over it.
    write_file(bin + "/tarvello.mdb", "the user's work");
    write_originals(bin);
    EXPECT_EQ(qt::program_directory(bin, own), bin);
    EXPECT_EQ(read_file(bin + "/tarvello.mdb"), "the user's work");
}

TEST_F(ProgramDirectory, IsTheUsersOwnForAnInstalledProgramAndFilledOnce) {
    const fs::path installed = folders.path("home") + "/prefix/share/tarvello";
    write_file(installed / "pictures/x.svg", "<svg/>");
    write_originals(installed);
    fs::create_directories(
        bin); // as an administrator one may write there, and it is no place for data all the same
    // A start that was cut short left this.
    write_file(own + "/tarvello.mdb", "new");
    write_file(own + "/modelli/a.rtf.nuovo", "mo");
    EXPECT_EQ(qt::program_directory(bin, own), own);
    EXPECT_EQ(read_file(own + "/modelli/a.rtf"), "model");
    EXPECT_FALSE(fs::exists(own + "/pictures") || fs::exists(own + "/modelli/a.rtf.nuovo"));
    EXPECT_NE(fs::status(own + "/modelli/a.rtf").permissions() & fs::perms::owner_write, fs::perms::none);
    fs::remove(own + "/tarvello.mdb");
    write_file(own + "/modelli/a.rtf", "the user's work");
    EXPECT_EQ(qt::program_directory(bin, own), own);
    EXPECT_EQ(read_file(own + "/modelli/a.rtf"), "the user's work");
    // An empty one in its place would be saved over the last backup at the end of the session.
    EXPECT_FALSE(fs::exists(own + "/tarvello.mdb")) << "what the user took away does not come back";
}

TEST_F(ProgramDirectory, TakesANewerListOfMunicipalitiesButNotForTheUsersOwn) {
    const auto list = [](const char* version, const char* maker) {
        return std::string(60, '-') + version + "...." + maker + "rows";
    };
    write_file(bin + "/pictures/x.svg", "<svg/>");
    write_originals(bin);
    write_file(bin + "/originali/Comuni.mdb", list("0002", "TvCo"));
    write_file(bin + "/Comuni.mdb", list("0001", "TvCo"));
    qt::program_directory(bin, own);
    EXPECT_EQ(read_file(bin + "/Comuni.mdb"), list("0002", "TvCo"));
    write_file(bin + "/Comuni.mdb", list("0001", "mine"));
    qt::program_directory(bin, own);
    EXPECT_EQ(read_file(bin + "/Comuni.mdb"), list("0001", "mine"));
}

TEST_F(ProgramDirectory, TheProgramsOwnLibrariesLieBesideItOrWhereTheyAreInstalled) {
    EXPECT_EQ(qt::private_file(bin, "x.so"), bin + "/x.so");
    write_file(bin + "/../libexec/tarvello/x.so", "");
    EXPECT_EQ(qt::private_file(bin, "x.so"), folders.path("home") + "/prefix/libexec/tarvello/x.so");
    write_file(bin + "/x.so", "");
    EXPECT_EQ(qt::private_file(bin, "x.so"), bin + "/x.so");
}

// Regional settings

TEST(Regional, ItalianUnlessTheUserIsElsewhere) {
    const auto euro = [](const RegionalSettings& settings) { return currency_text(-1234.5, settings); };
    for (const char* name : {"", "C", "POSIX", "C.UTF-8", "it_IT.UTF-8", "xx_nonsense"}) {
        qputenv("LC_ALL", name);
        const RegionalSettings settings = qt::user_regional_settings();
        EXPECT_EQ(euro(settings), euro(RegionalSettings())) << name;
        EXPECT_EQ(settings.short_date, "dd/MM/yyyy") << name;
    }
    qunsetenv("LC_ALL");
    qputenv("LC_MONETARY", "en_US.UTF-8");
    qputenv("LC_TIME", "de_DE.UTF-8");
    const RegionalSettings mixed = qt::user_regional_settings();
    EXPECT_EQ(currency_text(1234.5, mixed), "$1,234.50");
    EXPECT_EQ(mixed.short_date, "dd.MM.yyyy");
    EXPECT_EQ(qt::regional_settings_of(QLocale("en_US"), QLocale("en_US")).short_date, "M/d/yyyy");
    qunsetenv("LC_MONETARY");
    qunsetenv("LC_TIME");
}

// The program as a process

struct Process : ::testing::Test {
    UserFolders folders;
    fs::path program = fs::path(folders.path("program")) / "tarvello";

    void SetUp() override {
        // A portable copy of the shipped program.
        for (const auto& entry : fs::directory_iterator(TARVELLO_BIN)) {
            if (entry.path().filename().string().find("_tests") != std::string::npos) continue;
            fs::copy(entry.path(), program.parent_path() / entry.path().filename(),
                     fs::copy_options::recursive);
        }
    }

    std::unique_ptr<QProcess> start() {
        auto process = std::make_unique<QProcess>();
        process->setProcessEnvironment(folders.environment());
        process->setProcessChannelMode(QProcess::MergedChannels);
        process->start(to_qt(program.string()), {});
        return process;
    }
};

TEST_F(Process, OfTwoStartsWithinMillisecondsOneGoesOn) {
    for (int round = 0; round < 3; ++round) {
        const auto first = start();
        const auto second = start();
        ASSERT_TRUE(first->waitForStarted() && second->waitForStarted());
        EXPECT_TRUE(QTest::qWaitFor(
            [&] { return first->state() == QProcess::NotRunning || second->state() == QProcess::NotRunning; },
            5000));
        QTest::qWait(300);
        const bool first_runs = first->state() == QProcess::Running;
        const bool second_runs = second->state() == QProcess::Running;
        EXPECT_NE(first_runs, second_runs);
        EXPECT_EQ((first_runs ? second : first)->exitStatus(), QProcess::NormalExit);
        // However it ends, the lock ends with it.
        for (const auto& process : {first.get(), second.get()}) {
            process->kill();
            process->waitForFinished();
        }
    }
}

TEST_F(Process, StartsOnAnEmptyHomeAndIsStillThereAfterTheSplash) {
    const auto process = start();
    ASSERT_TRUE(process->waitForStarted());
    QTest::qWait(3000);
    EXPECT_EQ(process->state(), QProcess::Running) << process->readAll().toStdString();
    // The first thing that is written: the reminder's dates, with the load of the main window.
    EXPECT_TRUE(fs::exists(folders.path("config") + "/tarvello/impostazioni"));
    process->kill();
    process->waitForFinished();
}

TEST_F(Process, AskedToEndItClosesAsByHand) {
    // Yesterday it ran and looked for updates: nothing is asked at the start.
    const std::string config = folders.path("config") + "/tarvello/impostazioni";
    {
        qt::SettingsFile settings(config);
        settings.write(application_name, "txtContatoreAccessi", "text", "5");
        settings.write(application_name, "txtDataUltimoAggiornamento", "text",
                       qt::from_qt(QDate::currentDate().toString(QStringLiteral("dd/MM/yyyy"))));
    }
    const auto process = start();
    ASSERT_TRUE(process->waitForStarted());
    QTest::qWait(4000);
    process->terminate();
    ASSERT_TRUE(process->waitForFinished(5000));
    EXPECT_EQ(process->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(qt::SettingsFile(config).read(application_name, "txtContatoreAccessi", "text"), "6");
}

} // namespace
} // namespace tarvello::testing
