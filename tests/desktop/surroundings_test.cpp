#include "desktop/desktop_test.h"
#include "places.h"
#include "platform/posix/settings_file.h"
#include "platform/qt/desktop.h"
#include "platform/qt/installation.h"
#include "platform/qt/qt_text.h"
#include "platform/qt/regional.h"
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

// The program's directory

struct ProgramDirectory : ::testing::Test {
    UserFolders folders;
    std::string bin = folders.path("home") + "/prefix/bin";
    std::string own = folders.path("data") + "/tarvello";
};

TEST_F(ProgramDirectory, IsTheFolderOfThePortableProgram) {
    write_file(bin + "/pictures/tarvello.svg", "<svg/>");
    EXPECT_EQ(qt::program_directory(bin, own), bin);
}

TEST_F(ProgramDirectory, IsTheUsersOwnForAnInstalledProgramAndFilledFromWhatWasInstalled) {
    const fs::path installed = folders.path("home") + "/prefix/share/tarvello";
    write_file(installed / "pictures/x.svg", "<svg/>");
    write_file(installed / "originali/modelli/a.rtf", "model");
    fs::create_directories(
        bin); // as an administrator one may write there, and it is no place for data all the same
    EXPECT_EQ(qt::program_directory(bin, own), own);
    EXPECT_FALSE(fs::exists(own)) << "a second copy of the program may ask too";
    qt::fill_program_directory(bin, own);
    EXPECT_EQ(read_file(own + "/modelli/a.rtf"), "model");
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
    struct Money {
        const char* locale;
        std::string amount, negative;
    };
    for (const Money& it : {Money{"en_US", "$1,234.50", "($1,234.50)"},
                            {"fr_FR", "1\u202f234,50 €", "(1\u202f234,50 €)"},
                            {"nl_NL", "€ 1.234,50", "(€ 1.234,50)"},
                            {"en_GB", "£1,234.50", "(£1,234.50)"},
                            {"sv_SE", "1\u00a0234,50 kr", "\u22121\u00a0234,50 kr"}}) {
        const RegionalSettings money = qt::regional_settings_of(QLocale(it.locale), QLocale(it.locale));
        EXPECT_EQ(currency_text(1234.5, money), it.amount);
        EXPECT_EQ(currency_text(-1234.5, money), it.negative);
        EXPECT_EQ(read_amount(it.amount, money), 1234.5) << it.locale;
        EXPECT_EQ(read_amount(it.negative, money), -1234.5) << it.locale;
    }
    // Whether francs have a sign, and on which side, each version of the toolkit says otherwise.
    const RegionalSettings francs = qt::regional_settings_of(QLocale("it_CH"), QLocale("it_CH"));
    const std::string amount = currency_text(1234.5, francs);
    EXPECT_TRUE(amount == "1’234.50 CHF" || amount == "CHF 1’234.50") << amount;
    EXPECT_EQ(read_amount(currency_text(-1234.5, francs), francs), -1234.5);
}

// The program as a process

struct Process : ::testing::Test {
    UserFolders folders;
    fs::path program = fs::path(folders.path("program")) / "tarvello";
    const std::string config = folders.path("config") + "/tarvello/impostazioni";

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

TEST_F(Process, OfTwoStartsWithinMillisecondsOneGoesOnOnAnEmptyHome) {
    const auto first = start();
    const auto second = start();
    ASSERT_TRUE(first->waitForStarted() && second->waitForStarted());
    const auto ended = [](const auto& process) { return process->state() == QProcess::NotRunning; };
    EXPECT_TRUE(QTest::qWaitFor([&] { return ended(first) || ended(second); }, longest_wait));
    // The first thing that is written: the reminder's dates, with the load of the main window.
    EXPECT_TRUE(QTest::qWaitFor([&] { return fs::exists(config); }, longest_wait));
    EXPECT_NE(ended(first), ended(second)) << first->readAll().toStdString();
    EXPECT_EQ((ended(first) ? first : second)->exitStatus(), QProcess::NormalExit);
    for (QProcess* process : {first.get(), second.get()}) {
        process->kill();
        process->waitForFinished();
    }

    // However it ends, the lock ends with it.
    fs::remove(config);
    const auto third = start();
    EXPECT_TRUE(QTest::qWaitFor([&] { return fs::exists(config) || ended(third); }, longest_wait));
    EXPECT_FALSE(ended(third));
    third->kill();
    third->waitForFinished();
}

TEST_F(Process, AskedToEndItClosesAsByHandAndWaitsForNobody) {
    // Yesterday it ran and looked for updates: nothing is asked at the start. Its backup will fail.
    {
        SettingsFile settings(config);
        settings.write(application_name, "txtContatoreAccessi", "text", "5");
        settings.write(application_name, "txtDataUltimoAggiornamento", "text",
                       qt::from_qt(QDate::currentDate().toString(QStringLiteral("dd/MM/yyyy"))));
        settings.write(application_name, "CheckBoxBackup", "value", "1");
        settings.write(application_name, "TxtDestinazioneBackup", "text", config + "/copia.bak");
    }
    const auto process = start();
    ASSERT_TRUE(process->waitForStarted());
    // The reminder's days are written with the load of the main window.
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            return SettingsFile(config).read(application_name, "txtGiorniTraCuiAvvisare", "text").has_value();
        },
        longest_wait));
    process->terminate();
    process->terminate();
    ASSERT_TRUE(process->waitForFinished(longest_wait));
    EXPECT_EQ(process->exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(SettingsFile(config).read(application_name, "txtContatoreAccessi", "text"), "6");
}

} // namespace
} // namespace tarvello::testing
