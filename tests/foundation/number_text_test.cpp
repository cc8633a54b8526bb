#include "foundation/number_text.h"

#include <climits>

#include "traced_test.h"

namespace {

class NumberText : public TracedTest {};

TEST_F(NumberText, GroupDigits_ByThreesUpToTwelveCharacters) {
    EXPECT_EQ(GroupDigits(""), "");
    EXPECT_EQ(GroupDigits("7"), "7");
    EXPECT_EQ(GroupDigits("123"), "123");
    EXPECT_EQ(GroupDigits("1234"), "1,234");
    EXPECT_EQ(GroupDigits("1234567"), "1,234,567");
    EXPECT_EQ(GroupDigits("-123456"), "-123,456");
    EXPECT_EQ(GroupDigits("123456789012"), "123,456,789,012");
    EXPECT_EQ(GroupDigits("1234567890123"), "1234567890123");
}

TEST_F(NumberText, GroupDigits_MoreThanTwentyAreReported) {
    TraceToConsole();
    EXPECT_EQ(GroupDigits(std::string(21, '1')), std::string(21, '1'));
    EXPECT_EQ(view.ConsoleLines().back(), "ERROR. Too Many chars read from szDiskUsage. Max:20, Read:21");
}

TEST_F(NumberText, Atoi_LeadingNumber) {
    EXPECT_EQ(Zarn_atoi(" \t42abc"), 42);
    EXPECT_EQ(Zarn_atoi("-17"), -17);
    EXPECT_EQ(Zarn_atoi("+5"), 5);
    EXPECT_EQ(Zarn_atoi(""), 0);
    EXPECT_EQ(Zarn_atoi("-"), 0);
    EXPECT_EQ(Zarn_atoi("x1"), 0);
}

TEST_F(NumberText, Atoi_SaturatesInsteadOfOverflowing) {
    EXPECT_EQ(Zarn_atoi("2147483647"), INT_MAX);
    EXPECT_EQ(Zarn_atoi("2147483648"), INT_MAX);
    EXPECT_EQ(Zarn_atoi("-2147483648"), INT_MIN);
    EXPECT_EQ(Zarn_atoi("-99999999999999999999999999"), INT_MIN);
    EXPECT_EQ(Zarn_atoi("99999999999999999999999999"), INT_MAX);
}

TEST_F(NumberText, ParseUnsigned_IsModulo2To32) {
    EXPECT_EQ(ParseUnsigned("4294967295"), 4294967295U);
    EXPECT_EQ(ParseUnsigned("4294967297"), 1U);
    EXPECT_EQ(ParseUnsigned("12 bytes"), 12U);
    EXPECT_EQ(ParseUnsigned("x"), 0U);
}

}  // namespace
