#include "foundation/date_text.h"

#include "traced_test.h"

namespace {

class DateText : public TracedTest {};

std::string Shown(int year, int month, int day, int hour, int minute) {
    FileTime time = 0;
    EXPECT_TRUE(CalendarToFileTime({.year = year, .month = month, .day = day, .hour = hour, .minute = minute}, time));
    return Zarn_GetFileTimeString(&time).c_str();
}

TEST_F(DateText, AtMidnightShowsTheYear) {
    EXPECT_EQ(Shown(1998, 3, 5, 0, 0), "Mar 5  1998");
}

TEST_F(DateText, OnTheFullHourOrInTheMidnightHourShowsTheYear) {
    EXPECT_EQ(Shown(1998, 3, 5, 12, 0), "Mar 5  1998");
    EXPECT_EQ(Shown(1998, 3, 5, 17, 0), "Mar 5  1998");
    EXPECT_EQ(Shown(1998, 3, 5, 0, 30), "Mar 5  1998");
}

TEST_F(DateText, TwoBlanksBeforeTheHourWhenTheMinuteIsBelowTen) {
    EXPECT_EQ(Shown(1998, 3, 5, 14, 7), "Mar 5  2:07PM");
    EXPECT_EQ(Shown(1998, 3, 5, 12, 1), "Mar 5  0:01PM");
}

TEST_F(DateText, OneBlankOtherwise) {
    EXPECT_EQ(Shown(1998, 3, 5, 9, 45), "Mar 5 9:45AM");
    EXPECT_EQ(Shown(1998, 12, 31, 12, 30), "Dec 31 0:30PM");
    EXPECT_EQ(Shown(1998, 1, 1, 23, 59), "Jan 1 11:59PM");
    EXPECT_EQ(Shown(1998, 1, 1, 11, 10), "Jan 1 11:10AM");
}

TEST_F(DateText, NullOrImpossibleTimeIsNow) {
    const FileTime impossible = ~FileTime{0};
    EXPECT_TRUE(Zarn_GetFileTimeString(nullptr));
    const OwnedText text = Zarn_GetFileTimeString(&impossible);
    EXPECT_EQ(text.view().substr(0, 3), MonthName(platform::LocalTimeNow().month));
}

}  // namespace
