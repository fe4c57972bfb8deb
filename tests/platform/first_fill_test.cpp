#include "platform/posix/first_fill.h"

#include "store/store_fixture.h"

namespace tarvello::testing {
namespace {

namespace fs = std::filesystem;

struct FirstFill : ::testing::Test {
    TemporaryFolder folder;
    fs::path originals = folder.path / "share/originali";
    fs::path own = folder.path / "data/tarvello";

    FirstFill() {
        put(originals / "tarvello.mdb", "new");
        put(originals / "Comuni.mdb", list("0002", "TvCo"));
        put(originals / "modelli/a.rtf", "model");
        fs::permissions(originals / "modelli/a.rtf", fs::perms::owner_read);
    }
    static void put(const fs::path& path, const std::string& content) {
        fs::create_directories(path.parent_path());
        write_bytes(path, content);
    }
    static std::string list(const char* version, const char* maker) {
        return std::string(60, '-') + version + "...." + maker + "rows";
    }
    void fill() const { fill_program_directory(originals, own); }
    std::string held(const std::string& name) const { return bytes_of(own / name); }
};

TEST_F(FirstFill, BringsAllForTheUserAloneAndOnlyOnce) {
    fill();
    EXPECT_EQ(held("tarvello.mdb") + held("modelli/a.rtf") + held("Comuni.mdb"),
              "newmodel" + list("0002", "TvCo"));
    for (const char* file : {"tarvello.mdb", "modelli/a.rtf", "Comuni.mdb"})
        EXPECT_EQ(fs::status(own / file).permissions(), fs::perms{0600}) << file;
    for (const char* made : {"", "modelli"})
        EXPECT_EQ(fs::status(own / made).permissions(), fs::perms{0700}) << made;

    for (const char* taken : {"tarvello.mdb", "Comuni.mdb"}) fs::remove(own / taken);
    put(own / "modelli/a.rtf", "the user's work");
    fill();
    EXPECT_EQ(held("modelli/a.rtf"), "the user's work");
    // An empty one in its place would be saved over the last backup at the end of the session.
    EXPECT_FALSE(fs::exists(own / "tarvello.mdb")) << "what the user took away does not come back";
    EXPECT_FALSE(fs::exists(own / "Comuni.mdb"));
}

TEST_F(FirstFill, OneThatWasCutShortGoesOn) {
    struct {
        const char* there;
        const char* content;
    } const states[] = {{"tarvello.mdb", "the user's work"},
                        {"tarvello.mdb", ""},
                        {"Comuni.mdb", ""},
                        {"Comuni.mdb", "of the user's own"}};
    for (const auto& state : states) {
        SCOPED_TRACE(state.there + std::string(state.content));
        fs::remove_all(own);
        put(own / state.there, state.content);
        fill();
        EXPECT_EQ(held("modelli/a.rtf"), "model");
        const bool kept = *state.content != '\0';
        EXPECT_EQ(held(state.there), kept ? state.content : bytes_of(originals / state.there));
        EXPECT_TRUE(fs::exists(own / "tarvello.mdb") && fs::exists(own / "Comuni.mdb"));
    }
    fs::remove_all(own);
    put(own / "modelli", "a file where a folder should be");
    fill(); // nobody is told
    EXPECT_EQ(held("modelli"), "a file where a folder should be");
    fs::remove(own / "modelli");
    fill();
    EXPECT_EQ(held("modelli/a.rtf"), "model");
}

TEST_F(FirstFill, OneOfAnEarlierVersionIsMendedAndNotRepeated) {
    put(own / "Comuni.mdb", list("0001", "TvCo"));
    put(own / "modelli/a.rtf", ""); // a power cut has taken its content
    fill();
    EXPECT_EQ(held("modelli/a.rtf"), "model");
    EXPECT_FALSE(fs::exists(own / "tarvello.mdb")) << "the user took it away";
    EXPECT_EQ(held("Comuni.mdb"), list("0002", "TvCo"));
}

TEST_F(FirstFill, ANewerListOfMunicipalitiesComesButNotOverTheUsersOwn) {
    fill();
    for (const char* maker : {"TvCo", "mine"}) {
        put(own / "Comuni.mdb", list("0001", maker));
        fill();
        EXPECT_EQ(held("Comuni.mdb"),
                  maker == std::string("TvCo") ? list("0002", "TvCo") : list("0001", maker));
    }
}

TEST_F(FirstFill, WithoutOriginalsThereIsOnlyTheFolder) {
    fs::remove_all(originals);
    fill();
    EXPECT_TRUE(fs::is_empty(own));
}

} // namespace
} // namespace tarvello::testing
