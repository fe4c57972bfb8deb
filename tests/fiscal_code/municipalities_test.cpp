#include "fiscal_code/municipalities.h"

#include "failure.h"
#include "places.h"
#include "support/fake_platform.h"
#include "text/letter_case.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <vector>

namespace tarvello {
namespace {

struct Source {
    std::string name;
    std::string province;
    std::string code;
    std::string last_day;
};

std::vector<Source> source_rows() {
    std::ifstream file(TARVELLO_COMUNI_CSV);
    std::string line;
    std::getline(file, line);
    std::vector<Source> rows;
    while (std::getline(file, line)) {
        std::stringstream fields(line);
        Source row;
        std::string first_day;
        for (std::string* field : {&row.name, &row.province, &row.code, &first_day, &row.last_day}) {
            std::getline(fields, *field, ';');
        }
        rows.push_back(row);
    }
    return rows;
}

TEST(Municipalities, EveryPlaceIsReachedByANameOfItsOwn) {
    Municipalities municipalities(TARVELLO_COMUNI_MDB);
    std::map<std::string, Municipality> by_code;
    std::string previous;
    // From each name to the next: nothing sorts between a name and that name with one more control character.
    for (auto place = municipalities.seek(""); place; place = municipalities.seek(place->name + '\x01')) {
        const std::string folded = fold_case(place->name);
        ASSERT_LT(previous, folded) << "names must rise, and none may come twice";
        previous = folded;
        EXPECT_TRUE(by_code.emplace(place->code, *place).second) << place->code;
    }

    const std::vector<Source> rows = source_rows();
    ASSERT_EQ(rows.size(), 10063U);
    ASSERT_EQ(by_code.size(), rows.size());
    std::map<std::string, int> today;
    std::map<std::string, int> at_all;
    for (const Source& row : rows) {
        today[fold_case(row.name)] += row.last_day.empty();
        ++at_all[fold_case(row.name)];
    }
    for (const Source& row : rows) {
        const Municipality& place = by_code.at(row.code);
        EXPECT_EQ(place.province, row.province) << row.name;
        const bool keeps_its_name =
            row.last_day.empty() ? today[fold_case(row.name)] == 1 : at_all[fold_case(row.name)] == 1;
        EXPECT_EQ(place.name == row.name, keeps_its_name) << place.name;
        EXPECT_TRUE(place.name.starts_with(row.name)) << place.name;
    }
    EXPECT_EQ(by_code.at("H501").name, "Roma");
    EXPECT_EQ(by_code.at("C337").name, "Castro (BG)");
    EXPECT_EQ(by_code.at("M261").name, "Castro (LE)");
    EXPECT_EQ(by_code.at("Z734").name, "Palau (EE)");
    EXPECT_EQ(municipalities.seek("meano (to")->name, "Meano (TO, fino al 1928)");
    EXPECT_EQ(municipalities.seek("meano (tn")->name, "Meano (TN, fino al 1926)");
    EXPECT_EQ(municipalities.seek("ischia")->name, "Ischia");
    EXPECT_EQ(municipalities.seek("ischia (")->name, "Ischia (TN, fino al 1929)");
}

TEST(Municipalities, SeeksTheFirstNameNotBelowWhateverTheLetterCase) {
    Municipalities municipalities(TARVELLO_COMUNI_MDB);
    for (const char* text : {"ROM", "rom", "Roma"})
        EXPECT_EQ(municipalities.seek(text)->code, "H501") << text;
    EXPECT_EQ(municipalities.seek("FORLÌ")->name, "Forlì");
    EXPECT_EQ(municipalities.seek("sant'angelo l")->name, "Sant'Angelo Le Fratte");
    EXPECT_NE(municipalities.seek("xxxx"), std::nullopt) << "the next name, though it does not begin so";
    EXPECT_EQ(municipalities.seek("zzzz"), std::nullopt);
    EXPECT_EQ(municipalities.seek("ROM")->name, "Roma") << "a seek that found nothing leaves the next free";
}

struct BadMunicipalities : ::testing::Test {
    testing::FakePlatform fake;
    std::string path = fake.program_directory + "/Comuni.mdb";

    /// The failure of opening the file, or else of the first seek in it.
    std::string failure() const {
        try {
            Municipalities(path).seek("roma");
        } catch (const Failure& failure) {
            return failure.description();
        }
        return {};
    }
};

TEST_F(BadMunicipalities, FailWithASentence) {
    EXPECT_EQ(failure(), "Il file \"" + path + "\" non esiste.");
    EXPECT_FALSE(std::filesystem::exists(path)) << "nothing is created";

    std::ofstream(path).close();
    EXPECT_EQ(failure(), "Il file \"" + path + "\" non contiene la tabella attesa o il suo indice.");

    std::ofstream(path) << std::string(5000, 'x');
    EXPECT_EQ(failure(), "Il file \"" + path + "\" non è un archivio.");

    std::filesystem::copy_file(TARVELLO_COMUNI_MDB, path, std::filesystem::copy_options::overwrite_existing);
    EXPECT_EQ(failure(), "");
    {
        std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
        file.seekp(4096);
        file << std::string(std::filesystem::file_size(path) - 4096, '\x7f');
    }
    EXPECT_EQ(failure(), "Il file \"" + path + "\" è danneggiato.");
    std::filesystem::resize_file(path, 1000);
    EXPECT_NE(failure(), "");
}

} // namespace
} // namespace tarvello
