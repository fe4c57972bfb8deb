#include "fiscal_code/fiscal_code.h"
#include "places.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <vector>

namespace tarvello {
namespace {

std::vector<std::string> split(const std::string& line, char separator) {
    std::vector<std::string> fields;
    std::stringstream rest(line);
    for (std::string field; std::getline(rest, field, separator);) fields.push_back(field);
    return fields;
}

/// A line of codes.txt: the arguments, and the working that leads to the code.
struct Worked {
    explicit Worked(const std::string& line) : fields(split(line, '|')) {}
    bool complete() const { return fields.size() == 10; }

    Date born() const {
        const auto parts = split(fields[2], '-');
        return make_date(std::stoi(parts.at(0)), static_cast<unsigned>(std::stoi(parts.at(1))),
                         static_cast<unsigned>(std::stoi(parts.at(2))));
    }
    std::string code() const { return fields[5] + fields[6] + fields[7] + fields[4] + fields[9]; }
    /// The check letter that the listed values lead to.
    char letter_of_values() const {
        std::stringstream values(fields[8]);
        int sum = 0;
        for (int value = 0; values >> value;) sum += value;
        return static_cast<char>('A' + sum % 26);
    }

    std::vector<std::string> fields;
};

TEST(FiscalCode, AgreesWithTheCodesWorkedOutByHand) {
    std::ifstream file(TARVELLO_TEST_DATA "/fiscal_code/codes.txt");
    int codes = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line.front() == '#') continue;
        const Worked worked(line);
        ASSERT_TRUE(worked.complete()) << line;
        EXPECT_EQ(std::string(1, worked.letter_of_values()), worked.fields[9]) << "a slip in " << line;
        EXPECT_EQ(CalcoloCodFis(worked.fields[0], worked.fields[1], worked.born(), worked.fields[3],
                                worked.fields[4]),
                  worked.code())
            << line;
        ++codes;
    }
    EXPECT_EQ(codes, 46);
}

} // namespace
} // namespace tarvello
