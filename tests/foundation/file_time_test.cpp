#include "foundation/file_time.h"

#include "traced_test.h"

namespace {

class TimeStamp : public TracedTest {};

FileTime Time(const CalendarTime& calendar) {
    FileTime time = 0;
    EXPECT_TRUE(CalendarToFileTime(calendar, time));
    return time;
}

CalendarTime Calendar(FileTime time) {
    CalendarTime calendar;
    EXPECT_TRUE(FileTimeToCalendar(time, calendar));
    return calendar;
}

CalendarTime Incremented(const CalendarTime& calendar, unsigned milliseconds) {
    FileTime time = Time(calendar);
    EXPECT_TRUE(Zarn_IncrementTimeStamp("Test", &time, milliseconds));
    return Calendar(time);
}

TEST_F(TimeStamp, KnownPoints) {
    EXPECT_EQ(Time({.year = 1601, .month = 1, .day = 1}), 0U);
    EXPECT_EQ(Time({.year = 1970, .month = 1, .day = 1}), 116444736000000000U);
    EXPECT_EQ(Time({.year = 2000, .month = 2, .day = 29, .hour = 12}), 125962992000000000U);
    EXPECT_EQ(Time({.year = 1601, .month = 1, .day = 1, .millisecond = 1}), 10000U);
}

TEST_F(TimeStamp, EveryDayComesBackAsItWas) {
    FileTime time = 0;
    CalendarTime before = Calendar(0);
    constexpr FileTime kDay = FileTime{864000000000};
    for (int day = 1; day < 400 * 366 + 800; ++day) {
        time += kDay;
        const CalendarTime calendar = Calendar(time);
        ASSERT_EQ(Time(calendar), time);
        const bool next = calendar.day == before.day + 1 || calendar.day == 1;
        ASSERT_TRUE(next) << calendar.year << "-" << calendar.month << "-" << calendar.day;
        before = calendar;
    }
}

TEST_F(TimeStamp, LastYear) {
    const CalendarTime last{30827, 12, 31, 23, 59, 59, 999};
    EXPECT_EQ(Calendar(Time(last)), last);
}

TEST_F(TimeStamp, ImpossibleFieldsAreRefused) {
    const CalendarTime impossible[] = {
        {1998, 2, 29, 0, 0, 0, 0}, {1998, 2, 31, 0, 0, 0, 0},   {1900, 2, 29, 0, 0, 0, 0}, {1998, 4, 31, 0, 0, 0, 0},
        {1998, 0, 1, 0, 0, 0, 0},  {1998, 13, 1, 0, 0, 0, 0},   {1998, 1, 0, 0, 0, 0, 0},  {1998, 1, 32, 0, 0, 0, 0},
        {1998, 1, 1, 24, 0, 0, 0}, {1998, 1, 1, -1, 0, 0, 0},   {1998, 1, 1, 0, 60, 0, 0}, {1998, 1, 1, 0, 0, 60, 0},
        {1600, 1, 1, 0, 0, 0, 0},  {1998, 1, 1, 0, 0, 0, 1000}, {30828, 1, 1, 0, 0, 0, 0},
    };
    for (const CalendarTime& calendar : impossible) {
        FileTime time = 77;
        EXPECT_FALSE(CalendarToFileTime(calendar, time)) << calendar.year << "-" << calendar.month;
        EXPECT_EQ(time, 77U);
    }
}

TEST_F(TimeStamp, HighBitIsRefused) {
    CalendarTime calendar;
    EXPECT_FALSE(FileTimeToCalendar(FileTime{1} << 63, calendar));
    EXPECT_TRUE(FileTimeToCalendar((FileTime{1} << 63) - 1, calendar));
}

TEST_F(TimeStamp, MonthNames) {
    EXPECT_STREQ(MonthName(1), "Jan");
    EXPECT_STREQ(MonthName(12), "Dec");
    EXPECT_STREQ(MonthName(0), "");
    EXPECT_STREQ(MonthName(13), "");
}

TEST_F(TimeStamp, Get_Now) {
    FileTime time = 0;
    const FileTime before = Time(platform::LocalTimeNow());
    ASSERT_TRUE(Zarn_GetTimeStamp("Test", nullptr, &time, TimeStampKind::Now));
    EXPECT_GE(time, before);
    EXPECT_LE(time, Time(platform::LocalTimeNow()));
}

TEST_F(TimeStamp, Get_GivenAndZeroPoint) {
    const CalendarTime given{1998, 3, 5, 14, 7, 0, 0};
    FileTime time = 0;
    EXPECT_TRUE(Zarn_GetTimeStamp("Test", &given, &time, TimeStampKind::Given));
    EXPECT_EQ(Calendar(time), given);
    EXPECT_TRUE(Zarn_GetTimeStamp("Test", &given, &time, TimeStampKind::ZeroPoint));
    EXPECT_EQ(time, 0U);
    time = 5;
    EXPECT_TRUE(Zarn_GetTimeStamp("Test", nullptr, &time, static_cast<TimeStampKind>(9)));
    EXPECT_EQ(time, 0U);
}

TEST_F(TimeStamp, Get_ImpossibleOrMissingIsRefused) {
    const CalendarTime impossible{1998, 2, 31, 0, 0, 0, 0};
    FileTime time = 0;
    EXPECT_FALSE(Zarn_GetTimeStamp("Test", &impossible, &time, TimeStampKind::Given));
    EXPECT_FALSE(Zarn_GetTimeStamp("Test", nullptr, &time, TimeStampKind::Given));
    EXPECT_FALSE(Zarn_GetTimeStamp("Test", nullptr, nullptr, TimeStampKind::Now));
    EXPECT_FALSE(Zarn_GetTimeStamp(nullptr, nullptr, nullptr, TimeStampKind::Now));
}

TEST_F(TimeStamp, Increment_EndOf28FebruaryIsTheFirstOfMarchInEveryYear) {
    for (const int year : {1998, 2000, 2004, 1900}) {
        EXPECT_EQ(Incremented({year, 2, 28, 23, 59, 59, 999}, 1), (CalendarTime{year, 3, 1, 0, 0, 0, 0})) << year;
    }
}

TEST_F(TimeStamp, Increment_EndOfTheYearCarriesThrough) {
    EXPECT_EQ(Incremented({1998, 12, 31, 23, 59, 59, 500}, 600), (CalendarTime{1999, 1, 1, 0, 0, 0, 100}));
}

TEST_F(TimeStamp, Increment_CarriesOneUnitAtATime) {
    EXPECT_EQ(Incremented({1998, 1, 1, 0, 0, 0, 0}, 999), (CalendarTime{1998, 1, 1, 0, 0, 0, 999}));
    EXPECT_EQ(Incremented({1998, 1, 1, 0, 0, 0, 1}, 999), (CalendarTime{1998, 1, 1, 0, 0, 1, 0}));
    EXPECT_EQ(Incremented({1998, 1, 1, 0, 0, 59, 999}, 2), (CalendarTime{1998, 1, 1, 0, 1, 0, 1}));
    EXPECT_EQ(Incremented({1998, 1, 1, 0, 59, 59, 999}, 1), (CalendarTime{1998, 1, 1, 1, 0, 0, 0}));
    EXPECT_EQ(Incremented({1998, 1, 30, 23, 59, 59, 999}, 1), (CalendarTime{1998, 1, 31, 0, 0, 0, 0}));
    EXPECT_EQ(Incremented({1998, 4, 30, 23, 59, 59, 999}, 1), (CalendarTime{1998, 5, 1, 0, 0, 0, 0}));
    EXPECT_EQ(Incremented({1998, 7, 31, 23, 59, 59, 999}, 1), (CalendarTime{1998, 8, 1, 0, 0, 0, 0}));
}

TEST_F(TimeStamp, Increment_29FebruaryStaysUntilItsDayEnds) {
    EXPECT_EQ(Incremented({2000, 2, 29, 12, 0, 0, 0}, 5), (CalendarTime{2000, 2, 29, 12, 0, 0, 5}));
    EXPECT_EQ(Incremented({2000, 2, 29, 23, 59, 59, 999}, 1), (CalendarTime{2000, 3, 1, 0, 0, 0, 0}));
}

TEST_F(TimeStamp, Increment_ASecondOrMoreIsRefusedAndChangesNothing) {
    FileTime time = 5;
    EXPECT_FALSE(Zarn_IncrementTimeStamp("Test", &time, 1000));
    EXPECT_EQ(time, 5U);
    EXPECT_FALSE(Zarn_IncrementTimeStamp("Test", nullptr, 1));
    time = ~FileTime{0};
    EXPECT_FALSE(Zarn_IncrementTimeStamp("Test", &time, 1));
}

}  // namespace
