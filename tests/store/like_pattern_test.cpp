#include "store/like_pattern.h"

#include <gtest/gtest.h>

#include <string>

namespace tarvello::store {
namespace {

bool like(const std::string& text, const char* pattern) { return LikePattern(pattern).matches(text); }

TEST(LikePattern, Wildcards) {
    EXPECT_TRUE(like("Rossi", "rossi"));
    EXPECT_FALSE(like("Rossini", "rossi"));
    EXPECT_TRUE(like("Rossini", "%SSI%"));
    EXPECT_TRUE(like("", "%%"));
    EXPECT_TRUE(like("", "%"));
    EXPECT_TRUE(like("", ""));
    EXPECT_FALSE(like("a", ""));
    EXPECT_TRUE(like("Nicolò", "nicol_")) << "one character, however many bytes";
    EXPECT_FALSE(like("Nicol", "nicol_"));
    EXPECT_TRUE(like("aab", "%ab"));
    EXPECT_TRUE(like("mississippi", "m%iss%ip%i"));
    EXPECT_FALSE(like("mississippi", "m%issp%i"));
    EXPECT_FALSE(like("ab", "%abc%"));
    EXPECT_TRUE(like("x%y", "%[%]%"));
    EXPECT_FALSE(like("xy", "%[%]%"));
    EXPECT_TRUE(like("a_b", "a[_]b"));
}

TEST(LikePattern, Lists) {
    EXPECT_TRUE(like("caso", "[a-d]as[!xyz]"));
    EXPECT_FALSE(like("easo", "[a-d]as[!xyz]"));
    EXPECT_FALSE(like("casX", "[a-d]as[!xyz]"));
    EXPECT_TRUE(like("Ò", "[à-ö]"));
    EXPECT_TRUE(like("-", "[a-]"));
    EXPECT_TRUE(like("!", "[!]")) << "alone it is itself";
    EXPECT_TRUE(like("ab", "a[]b")) << "an empty list stands for nothing";
    EXPECT_TRUE(like("50 [circa", "%[circa%")) << "a bracket that nothing closes is itself";
}

TEST(LikePattern, LetterCaseOfAllAlphabets) {
    EXPECT_TRUE(like("SOCIETÀ AGRICOLA", "%società%"));
    EXPECT_TRUE(like("SOCIETÀ AGRICOLA", "%agri%"));
    EXPECT_FALSE(like("SOCIETA AGRICOLA", "%società%"));
    EXPECT_TRUE(like("\u212Aelvin", "%kel%")) << "the sign of kelvin";
    EXPECT_TRUE(like("kelvin", "%\u212AEL%"));
    EXPECT_TRUE(like("ΣΊΣΥΦΟΣ", "%σίς%"));
    EXPECT_TRUE(like("bytes \xff\xfe here", "%HERE")) << "what is no UTF-8 does no harm";
}

} // namespace
} // namespace tarvello::store
