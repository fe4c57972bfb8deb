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

TEST(FiscalCode, AgreesWithTheCodesWorkedOutByHand) {
    std::ifstream file(TARVELLO_TEST_DATA "/fiscal_code/codes.txt");
    int codes = 0;
    for (std::string line; std::getline(file, line);) {
        if (line.empty() || line.front() == '#') continue;
        // Surname, name, day, sex, municipality; the parts of the code, the values behind its last letter.
        const auto fields = split(line, '|');
        ASSERT_EQ(fields.size(), 10u) << line;
        const auto day = split(fields[2], '-');
        const Date born = make_date(std::stoi(day.at(0)), static_cast<unsigned>(std::stoi(day.at(1))),
                                    static_cast<unsigned>(std::stoi(day.at(2))));
        EXPECT_EQ(CalcoloCodFis(fields[0], fields[1], born, fields[3], fields[4]),
                  fields[5] + fields[6] + fields[7] + fields[4] + fields[9])
            << line;
        ++codes;
    }
    EXPECT_EQ(codes, 46);
}

} // namespace
} // namespace tarvello
