#include "foundation/text_helpers.h"

#include <climits>

#include "traced_test.h"

namespace {

class TextHelpers : public TracedTest {};

std::string SizeText(std::int32_t count, bool useMegabytes) {
    char out[64] = "untouched";
    return Zarn_GetSizeText(count, out, useMegabytes, sizeof out) ? out : "(failed)";
}

std::string DateText(int year, int month, int day, int hour, int minute) {
    FileTime time = 0;
    EXPECT_TRUE(CalendarToFileTime({.year = year, .month = month, .day = day, .hour = hour, .minute = minute}, time));
    return Zarn_GetFileTimeString(&time).c_str();
}

TEST_F(TextHelpers, DupString_OfAnEmptyText_IsAnEmptyTextAndNotNull) {
    const OwnedText copy = DupString("");
    ASSERT_TRUE(copy);
    EXPECT_EQ(copy.view(), "");
}

TEST_F(TextHelpers, DupString_OfNull_IsNull) {
    TraceToConsole();
    EXPECT_FALSE(DupString(nullptr));
    EXPECT_TRUE(view.HasLine("DupString() ERROR. Entered with NULL parameter. Returning NULL"));
}

TEST_F(TextHelpers, DupString_ThreeCharactersInThreeBytes_Fail) {
    TraceToConsole();
    EXPECT_FALSE(DupString("abc", 3));
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorInsufficientBuffer);
    EXPECT_TRUE(view.HasLine("ERROR. Buffer too small! Len: (3 < 4 by 1 bytes) , In: (0x"));
    EXPECT_TRUE(view.HasLine(":abc)"));
}

TEST_F(TextHelpers, DupString_ThreeCharactersInTenBytes_LeaveZeroedRoom) {
    OwnedText copy = DupString("abc", 10);
    ASSERT_TRUE(copy);
    EXPECT_EQ(std::string(copy.data(), 10), std::string("abc\0\0\0\0\0\0\0", 10));
}

TEST_F(TextHelpers, DupString_TracesItsReturnInDebugModeOnly) {
    gTrace.verbose = true;
    gTrace.debug = false;
    DupString("abc", 10);
    gTrace.debug = true;
    EXPECT_FALSE(view.HasLine("RETURNING"));
    DupString("abc", 10);
    EXPECT_TRUE(view.HasLine(":abc) Size:10 Len:(3) In Addr:(0x"));
    const std::string line = view.ConsoleLines().back();
    EXPECT_EQ(line.substr(line.size() - 2), ", ");
}

TEST_F(TextHelpers, WideString_Exact) {
    const auto wide = Zarn_GetWideString("h\xc3\xa4");
    ASSERT_NE(wide, nullptr);
    EXPECT_EQ(std::u16string(wide.get()), u"h\u00e4");
}

TEST_F(TextHelpers, WideString_TooSmallAndLargerAreTraced) {
    TraceToConsole();
    EXPECT_EQ(Zarn_GetWideString("abc", 7), nullptr);
    EXPECT_EQ(platform::LastSystemError(), platform::kErrorInsufficientBuffer);
    EXPECT_TRUE(view.HasLine("( TOO SMALL! Len: (7 < 8 by 1) , In: (0x"));
    const auto wide = Zarn_GetWideString("abc", 12);
    ASSERT_NE(wide, nullptr);
    EXPECT_EQ(std::u16string(wide.get(), 6), std::u16string(u"abc\0\0\0", 6));
    EXPECT_TRUE(view.HasLine("BUF LARGER! Len: (12 > 8 by 4) , In: (0x"));
    EXPECT_EQ(Zarn_GetWideString(nullptr), nullptr);
}

TEST_F(TextHelpers, SizeText_ZeroIsShownInKilobytes) {
    EXPECT_EQ(SizeText(0, false), "0.00KB  ( 0 bytes )");
}

TEST_F(TextHelpers, SizeText_OneMegabyteExactlyIsStillKilobytes) {
    EXPECT_EQ(SizeText(1048576, true), "1024.00KB  ( 1,048,576 bytes )");
}

TEST_F(TextHelpers, SizeText_OneByteMoreIsMegabytes) {
    EXPECT_EQ(SizeText(1048577, true), "1.00MB  ( 1,048,577 bytes )");
    EXPECT_EQ(SizeText(1048577, false), "1024.00KB  ( 1,048,577 bytes )");
}

TEST_F(TextHelpers, SizeText_Below1024IsAFractionOfAKilobyte) {
    EXPECT_EQ(SizeText(512, false), "0.50KB  ( 512 bytes )");
    EXPECT_EQ(SizeText(512, true), "0.50KB  ( 512 bytes )");
}

TEST_F(TextHelpers, SizeText_LargestAndNegative) {
    EXPECT_EQ(SizeText(INT_MAX, true), "2048.00MB  ( 2,147,483,647 bytes )");
    EXPECT_EQ(SizeText(-1024, true), "-1.00KB  ( -1,024 bytes )");
}

TEST_F(TextHelpers, SizeText_CapacityEqualToTheLengthFailsAndEmpties) {
    TraceToConsole();
    const std::string text = "0.50KB  ( 512 bytes )";
    std::string out(64, 'x');
    EXPECT_FALSE(Zarn_GetSizeText(512, out.data(), false, text.size()));
    EXPECT_STREQ(out.c_str(), "");
    EXPECT_TRUE(view.HasLine("Zarn_GetSizeText() 21 > 21. Returning FALSE"));
    EXPECT_TRUE(Zarn_GetSizeText(512, out.data(), false, text.size() + 1));
    EXPECT_STREQ(out.c_str(), text.c_str());
    out[0] = 'x';
    EXPECT_FALSE(Zarn_GetSizeText(512, out.data(), false, 0));
    EXPECT_EQ(out[0], 'x');
}

TEST_F(TextHelpers, SizeText_WithoutItsMessageFailsAndEmpties) {
    SetText(1, "other");
    TraceToConsole();
    char out[64] = "untouched";
    EXPECT_FALSE(Zarn_GetSizeText(512, out, false, sizeof out));
    EXPECT_STREQ(out, "");
    EXPECT_TRUE(view.HasLine("ERROR. Call to Zarn_ResVsprintf() Failed. Returning FALSE"));
}

TEST_F(TextHelpers, GroupDigits_ByThreesUpToTwelveCharacters) {
    EXPECT_EQ(GroupDigits(""), "");
    EXPECT_EQ(GroupDigits("7"), "7");
    EXPECT_EQ(GroupDigits("123"), "123");
    EXPECT_EQ(GroupDigits("1234"), "1,234");
    EXPECT_EQ(GroupDigits("1234567"), "1,234,567");
    EXPECT_EQ(GroupDigits("-123456"), "-123,456");
    EXPECT_EQ(GroupDigits("123456789012"), "123,456,789,012");
    EXPECT_EQ(GroupDigits("1234567890123"), "1234567890123");
}

TEST_F(TextHelpers, GroupDigits_MoreThanTwentyAreReported) {
    TraceToConsole();
    EXPECT_EQ(GroupDigits(std::string(21, '1')), std::string(21, '1'));
    EXPECT_EQ(view.ConsoleLines().back(), "ERROR. Too Many chars read from szDiskUsage. Max:20, Read:21");
}

TEST_F(TextHelpers, Date_AtMidnightShowsTheYear) {
    EXPECT_EQ(DateText(1998, 3, 5, 0, 0), "Mar 5  1998");
}

TEST_F(TextHelpers, Date_OnTheFullHourOrInTheMidnightHourShowsTheYear) {
    EXPECT_EQ(DateText(1998, 3, 5, 12, 0), "Mar 5  1998");
    EXPECT_EQ(DateText(1998, 3, 5, 17, 0), "Mar 5  1998");
    EXPECT_EQ(DateText(1998, 3, 5, 0, 30), "Mar 5  1998");
}

TEST_F(TextHelpers, Date_TwoBlanksBeforeTheHourWhenTheMinuteIsBelowTen) {
    EXPECT_EQ(DateText(1998, 3, 5, 14, 7), "Mar 5  2:07PM");
    EXPECT_EQ(DateText(1998, 3, 5, 12, 1), "Mar 5  0:01PM");
}

TEST_F(TextHelpers, Date_OneBlankOtherwise) {
    EXPECT_EQ(DateText(1998, 3, 5, 9, 45), "Mar 5 9:45AM");
    EXPECT_EQ(DateText(1998, 12, 31, 12, 30), "Dec 31 0:30PM");
    EXPECT_EQ(DateText(1998, 1, 1, 23, 59), "Jan 1 11:59PM");
    EXPECT_EQ(DateText(1998, 1, 1, 11, 10), "Jan 1 11:10AM");
}

TEST_F(TextHelpers, Date_NullOrImpossibleTimeIsNow) {
    const FileTime impossible = ~FileTime{0};
    EXPECT_TRUE(Zarn_GetFileTimeString(nullptr));
    const OwnedText text = Zarn_GetFileTimeString(&impossible);
    EXPECT_EQ(text.view().substr(0, 3), MonthName(platform::LocalTimeNow().month));
}

TEST_F(TextHelpers, Compare_ATextLongerThanNIsCutToOneLess) {
    EXPECT_EQ(Zarn_strncmp("abcd", "abxy", 3), 0);
    EXPECT_EQ(Zarn_strncmpi("ABcd", "abXY", 3), 0);
    // Exactly n characters are kept whole.
    EXPECT_NE(Zarn_strncmp("abc", "abx", 3), 0);
    EXPECT_LT(Zarn_strncmpi("abc", "ABX", 3), 0);
}

TEST_F(TextHelpers, Compare_CaseMattersInOneOnly) {
    EXPECT_EQ(Zarn_strncmpi("Hello", "hELLO", 10), 0);
    EXPECT_NE(Zarn_strncmp("Hello", "hELLO", 10), 0);
    EXPECT_GT(Zarn_strncmp("b", "a", 10), 0);
}

TEST_F(TextHelpers, Compare_NullAndZeroLength) {
    EXPECT_EQ(Zarn_strncmp(nullptr, "", 5), 0);
    EXPECT_EQ(Zarn_strncmpi("abc", "xyz", 0), 0);
}

TEST_F(TextHelpers, Atoi_LeadingNumber) {
    EXPECT_EQ(Zarn_atoi(" \t42abc"), 42);
    EXPECT_EQ(Zarn_atoi("-17"), -17);
    EXPECT_EQ(Zarn_atoi("+5"), 5);
    EXPECT_EQ(Zarn_atoi(""), 0);
    EXPECT_EQ(Zarn_atoi("-"), 0);
    EXPECT_EQ(Zarn_atoi("x1"), 0);
}

TEST_F(TextHelpers, Atoi_SaturatesInsteadOfOverflowing) {
    EXPECT_EQ(Zarn_atoi("2147483647"), INT_MAX);
    EXPECT_EQ(Zarn_atoi("2147483648"), INT_MAX);
    EXPECT_EQ(Zarn_atoi("-2147483648"), INT_MIN);
    EXPECT_EQ(Zarn_atoi("-99999999999999999999999999"), INT_MIN);
    EXPECT_EQ(Zarn_atoi("99999999999999999999999999"), INT_MAX);
}

TEST_F(TextHelpers, ParseUnsigned_IsModulo2To32) {
    EXPECT_EQ(ParseUnsigned("4294967295"), 4294967295U);
    EXPECT_EQ(ParseUnsigned("4294967297"), 1U);
    EXPECT_EQ(ParseUnsigned("12 bytes"), 12U);
    EXPECT_EQ(ParseUnsigned("x"), 0U);
}

TEST_F(TextHelpers, ClipboardNeverHasFiles) {
    TraceToConsole();
    EXPECT_FALSE(ClipHasFiles());
    EXPECT_TRUE(view.HasLine("ClipHasFiles() Entered"));
}

TEST_F(TextHelpers, AsciiCaseLeavesOtherBytesAlone) {
    EXPECT_EQ(AsciiLower("AZ[\xc3\x84]"), "az[\xc3\x84]");
    EXPECT_EQ(AsciiUpper("az{\xc3\xa4}"), "AZ{\xc3\xa4}");
    EXPECT_TRUE(EqualsIgnoringCase("QUIT", "quit"));
    EXPECT_FALSE(EqualsIgnoringCase("QUIT", "quits"));
}

TEST_F(TextHelpers, StripTrailing_NeverBelowTheShortest) {
    std::string text = "a// ";
    StripTrailing(text, " /");
    EXPECT_EQ(text, "a");
    text = "///";
    StripTrailing(text, "/", 1);
    EXPECT_EQ(text, "/");
}

TEST_F(TextHelpers, DisplayName_KeepsUtf8AndReadsOtherBytesInTheSystemPage) {
    EXPECT_EQ(DisplayName("h\xc3\xa4"), "h\xc3\xa4");
    EXPECT_EQ(DisplayName("h\xe4"), "h\xc3\xa4");
}

}  // namespace
