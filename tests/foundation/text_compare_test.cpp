#include "foundation/text_compare.h"

#include <gtest/gtest.h>

namespace {

TEST(TextCompare, Compare_ATextLongerThanNIsCutToOneLess) {
    EXPECT_EQ(Zarn_strncmp("abcd", "abxy", 3), 0);
    EXPECT_EQ(Zarn_strncmpi("ABcd", "abXY", 3), 0);
    // Exactly n characters are kept whole.
    EXPECT_NE(Zarn_strncmp("abc", "abx", 3), 0);
    EXPECT_LT(Zarn_strncmpi("abc", "ABX", 3), 0);
}

TEST(TextCompare, Compare_CaseMattersInOneOnly) {
    EXPECT_EQ(Zarn_strncmpi("Hello", "hELLO", 10), 0);
    EXPECT_NE(Zarn_strncmp("Hello", "hELLO", 10), 0);
    EXPECT_GT(Zarn_strncmp("b", "a", 10), 0);
}

TEST(TextCompare, Compare_NullAndZeroLength) {
    EXPECT_EQ(Zarn_strncmp(nullptr, "", 5), 0);
    EXPECT_EQ(Zarn_strncmpi("abc", "xyz", 0), 0);
}

TEST(TextCompare, AsciiCaseLeavesOtherBytesAlone) {
    EXPECT_EQ(AsciiLower("AZ[\xc3\x84]"), "az[\xc3\x84]");
    EXPECT_EQ(AsciiUpper("az{\xc3\xa4}"), "AZ{\xc3\xa4}");
    EXPECT_TRUE(EqualsIgnoringCase("QUIT", "quit"));
    EXPECT_FALSE(EqualsIgnoringCase("QUIT", "quits"));
}

TEST(TextCompare, StripTrailing_NeverBelowTheShortest) {
    std::string text = "a// ";
    StripTrailing(text, " /");
    EXPECT_EQ(text, "a");
    text = "///";
    StripTrailing(text, "/", 1);
    EXPECT_EQ(text, "/");
}

}  // namespace
