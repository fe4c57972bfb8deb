#include "db_tools/file_info.h"

#include "support/fake_platform.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace tarvello {
namespace {

struct FileInfo : ::testing::Test {
    testing::FakePlatform fake;
    Platform platform = fake.platform();
    CFileInfo info{platform};
    std::string folder = fake.program_directory;
};

TEST_F(FileInfo, TellsTheSizeInSteps) {
    const std::pair<std::uint64_t, const char*> cases[] = {
        {0, "0 bytes"},
        {1023, "1.023 bytes"},
        {1024, "1,00KB (1.024 bytes)"},
        {1536, "1,50KB (1.536 bytes)"},
        {1152, "1,13KB (1.152 bytes)"}, // 1.125: half goes up
        {10239, "10,00KB (10.239 bytes)"},
        {10240, "10,0KB (10.240 bytes)"},
        {102400, "100KB (102.400 bytes)"},
        {999 * 1024 + 1023, "1000KB (1.023.999 bytes)"},
        {1000 * 1024, "0,98MB (1.024.000 bytes)"},
        {10000 * 1024, "9,8MB (10.240.000 bytes)"},
        {100000 * 1024, "98MB (102.400.000 bytes)"},
        {1000000ULL * 1024, "0,95GB (1.024.000.000 bytes)"},
        {6ULL << 30, "6,00GB (6.442.450.944 bytes)"},
    };
    for (const auto& [size, text] : cases) EXPECT_EQ(info.FormatFileSize(size), text);
    platform.regional.decimal_separator = ".";
    platform.regional.thousands_separator = ",";
    EXPECT_EQ(info.FormatFileSize(1536), "1.50KB (1,536 bytes)");
}

TEST_F(FileInfo, GathersWhatTheDiskKnows) {
    const std::string path = folder + "/copia di sicurezza.v2.bak";
    std::ofstream(path) << "12345";
    const auto time = std::filesystem::last_write_time(path);
    info.set_FullPathName(folder + "/./altro/../copia di sicurezza.v2.bak");
    EXPECT_EQ(info.FullPathName(), path);
    EXPECT_EQ(info.FileName, "copia di sicurezza.v2.bak");
    EXPECT_EQ(info.FilePath, folder + "/");
    EXPECT_EQ(info.FileExtension, "bak");
    EXPECT_EQ(info.TypeName, "BAK File");
    EXPECT_TRUE(info.FileExists);
    EXPECT_TRUE(info.PathExists);
    EXPECT_EQ(info.FileSize, 5u);
    EXPECT_EQ(info.FileSizeHigh, 0u);
    ASSERT_TRUE(info.ModifyTime.has_value());

    std::filesystem::last_write_time(path, time - std::chrono::hours(24));
    const DateTime before = *info.ModifyTime;
    info.Refresh();
    EXPECT_LT(*info.ModifyTime, before);

    EXPECT_EQ(info.Attributes, 0u);
    const std::string hidden = folder + "/.nascosta.bak";
    std::filesystem::copy_file(path, hidden);
    info.set_FullPathName(hidden);
    EXPECT_TRUE(info.attrHidden);
    EXPECT_EQ(info.Attributes, 2u);

    info.set_FullPathName(path);
    std::filesystem::remove(path);
    info.Refresh();
    EXPECT_FALSE(info.FileExists);
    EXPECT_EQ(info.FileName, "copia di sicurezza.v2.bak");
    EXPECT_EQ(info.ShortPathName, "");
    EXPECT_TRUE(info.PathExists);
    EXPECT_EQ(info.FileSize, 0u);
    EXPECT_EQ(info.TypeName, "");
    EXPECT_EQ(info.FormatFileDate(info.ModifyTime), "");
}

TEST_F(FileInfo, KnowsSizesPastFourGigabytes) {
    const std::string path = folder + "/grande.bak";
    std::ofstream(path).close();
    std::filesystem::resize_file(path, (std::uintmax_t{5} << 32) + 7);
    info.set_FullPathName(path);
    EXPECT_EQ(info.FileSize, 7u);
    EXPECT_EQ(info.FileSizeHigh, 5u);
}

TEST_F(FileInfo, FoldersAndRootsHaveNoName) {
    info.set_FullPathName(folder);
    EXPECT_TRUE(info.FileExists);
    EXPECT_EQ(info.TypeName, " File") << "no extension";
    info.set_FullPathName(folder + "/");
    EXPECT_EQ(info.FileName, "");
    EXPECT_EQ(info.FilePath, folder + "/");
    EXPECT_FALSE(info.FileExists);
    info.set_FullPathName("/");
    EXPECT_EQ(info.FileName, "");
    EXPECT_EQ(info.FilePath, "/");
    info.set_FullPathName("");
    EXPECT_FALSE(info.PathExists);
}

TEST_F(FileInfo, TellsDateAndTimeInWords) {
    using namespace std::chrono;
    EXPECT_EQ(info.FormatFileDate(DateTime(local_days(make_date(2006, 3, 5))) + hours(14) + minutes(5) +
                                  seconds(9)),
              "domenica 5 marzo 2006 14:05:09");
}

} // namespace
} // namespace tarvello
