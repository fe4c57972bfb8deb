#include "platform/posix/settings_file.h"

#include "store/store_fixture.h"

#include <sys/stat.h>
#include <unistd.h>

namespace tarvello::testing {
namespace {

namespace fs = std::filesystem;

const std::string app = "Tarvello";

struct SettingsInAFile : ::testing::Test {
    TemporaryFolder folder;
    std::string path = folder.in("config/tarvello/impostazioni");

    void given(const std::string& content) {
        fs::create_directories(fs::path(path).parent_path());
        write_bytes(path, content);
    }
    std::optional<std::string> stored(const std::string& section, const std::string& key = "text") {
        return SettingsFile(path).read(app, section, key);
    }
};

TEST_F(SettingsInAFile, AnyTextSurvivesTheProcess) {
    const std::vector<std::string> texts = {"",
                                            "False",
                                            "a\nb\r\nc\t\\n\\p\\",
                                            "in fondo\r",
                                            "\"'%;--",
                                            "😀 àèì שלום",
                                            std::string("a\0b", 3),
                                            std::string(100000, 'x'),
                                            "\xFF\xFE broken"};
    {
        SettingsFile settings(path);
        for (std::size_t i = 0; i < texts.size(); ++i)
            settings.write(app, "campo\t" + std::to_string(i), "text", texts[i]);
        settings.write(app, "campo\t0", "value", "1");
    }
    for (std::size_t i = 0; i < texts.size(); ++i) EXPECT_EQ(stored("campo\t" + std::to_string(i)), texts[i]);
    EXPECT_EQ(stored("campo\t0", "value"), "1");
    EXPECT_EQ(stored("campo"), std::nullopt);
    EXPECT_EQ(SettingsFile(path).read("Altro", "campo\t0", "text"), std::nullopt);
}

TEST_F(SettingsInAFile, EachWriteIsInTheFileWhenItReturnsAndNobodyElseReadsIt) {
    SettingsFile settings(path);
    for (const char* text : {"M", "Ma"}) {
        settings.write(app, "Text1", "text", text);
        EXPECT_EQ(stored("Text1"), text);
    }
    EXPECT_EQ(fs::status(path).permissions(), fs::perms{0600});
    EXPECT_EQ(fs::status(fs::path(path).parent_path()).permissions(), fs::perms{0700});
    EXPECT_EQ(std::distance(fs::directory_iterator(fs::path(path).parent_path()), {}), 1)
        << "nothing else is left there";
}

TEST_F(SettingsInAFile, AnEditorOfAnotherSystemHasBeenAtIt) {
    given("\xEF\xBB\xBFTarvello\tText1\ttext\tRossi\r\nTarvello\ttxt_IVA_default\ttext\t\r\n"
          "Tarvello\tCheck1\tvalue\t1\r\nTarvello\tCheck2\tvalue\t0");
    EXPECT_EQ(stored("Text1"), "Rossi");
    EXPECT_EQ(stored("txt_IVA_default"), "");
    EXPECT_EQ(stored("Check1", "value"), "1");
    EXPECT_EQ(stored("Check2", "value"), "0");
}

TEST_F(SettingsInAFile, ARouteInTheProgramsDirectoryMovesWithIt) {
    const char* const routes[] = {"/stick/t/tarvello.mdb", "/stick/t/a/\\b.mdb", "/stick/t",
                                  "/stick/t2/x.mdb",       "x/stick/t/y.mdb",    ""};
    const char* const moved[] = {"/altro/tarvello.mdb", "/altro/a/\\b.mdb", "/stick/t",
                                 "/stick/t2/x.mdb",     "x/stick/t/y.mdb",  ""};
    SettingsFile settings(path, "/stick/t");
    for (std::size_t i = 0; i < std::size(routes); ++i) {
        settings.write(app, "txtDatabaseRoute", "text", routes[i]);
        EXPECT_EQ(settings.read(app, "txtDatabaseRoute", "text"), routes[i]);
        EXPECT_EQ(SettingsFile(path, "/altro").read(app, "txtDatabaseRoute", "text"), moved[i]);
    }
}

TEST_F(SettingsInAFile, GarbageIsAFirstRunAndTakesNothingElseAlong) {
    std::string garbage;
    for (int i = 0; i < 5000; ++i) garbage += static_cast<char>(i * 7919 % 251);
    for (const std::string& content :
         {garbage, std::string("\n\r\n\n"), std::string("a\tb\tc"), std::string("a\tb\tc\td\te\n"),
          std::string("Tarvello\ttxtDatabaseRoute\ttext\tx\\")}) {
        given(content);
        EXPECT_EQ(stored("txtDatabaseRoute"), std::nullopt);
        SettingsFile(path).write(app, "txtDatabaseRoute", "text", "/casa/tarvello.mdb");
        EXPECT_EQ(stored("txtDatabaseRoute"), "/casa/tarvello.mdb");
    }
    given("Tarvello\tText1\ttext\tRossi\n" + garbage + "\nTarvello\tCheck1\tvalue\t1\nTarvello\tCheck1\tva");
    EXPECT_EQ(stored("Text1"), "Rossi");
    EXPECT_EQ(stored("Check1", "value"), "1");
}

TEST_F(SettingsInAFile, WhatCannotBeWrittenIsKeptForTheSessionAndStopsNothing) {
    fs::create_directories(folder.in("config"));
    const std::string in_the_way = folder.in("config/tarvello");
    write_bytes(in_the_way, "a file where the folder should be");
    SettingsFile settings(path);
    settings.write(app, "Text1", "text", "Rossi");
    EXPECT_EQ(settings.read(app, "Text1", "text"), "Rossi");
    EXPECT_EQ(bytes_of(in_the_way), "a file where the folder should be");
    fs::remove(in_the_way);
    fs::create_directories(path); // a folder where the file should be
    EXPECT_EQ(stored("Text1"), std::nullopt);
    fs::remove(path);
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); // or what would wait for ever
    EXPECT_EQ(stored("Text1"), std::nullopt);
}

TEST_F(SettingsInAFile, AFileThatCannotBeReadTodayIsNotLost) {
    given("Tarvello\tText1\ttext\tRossi\n");
    fs::permissions(path, fs::perms::none);
    SettingsFile settings(path);
    fs::permissions(path, fs::perms{0600});
    EXPECT_EQ(settings.read(app, "Text1", "text"), std::nullopt);
    settings.write(app, "Text1", "text", "Verdi");
    EXPECT_EQ(stored("Text1"), "Verdi");
    EXPECT_EQ(bytes_of(path + "-non-letto"), "Tarvello\tText1\ttext\tRossi\n");
}

} // namespace
} // namespace tarvello::testing
