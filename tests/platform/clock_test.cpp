#include "platform/clock.h"

#include <gtest/gtest.h>

#include "platform/threads.h"

namespace platform_tests {
namespace {

void ExpectPlausible(const platform::CalendarTime& time) {
    EXPECT_GE(time.year, 2024);
    EXPECT_LE(time.year, 2200);
    EXPECT_GE(time.month, 1);
    EXPECT_LE(time.month, 12);
    EXPECT_GE(time.day, 1);
    EXPECT_LE(time.day, 31);
    EXPECT_GE(time.hour, 0);
    EXPECT_LE(time.hour, 23);
    EXPECT_GE(time.minute, 0);
    EXPECT_LE(time.minute, 59);
    EXPECT_GE(time.second, 0);
    EXPECT_LE(time.second, 60);
    EXPECT_GE(time.millisecond, 0);
    EXPECT_LE(time.millisecond, 999);
}

TEST(Clock, CalendarFieldsArePlausible) {
    ExpectPlausible(platform::LocalTimeNow());
    ExpectPlausible(platform::UniversalTimeNow());
}

TEST(Clock, ZonesAreWholeQuartersOfAnHour) {
    // Between the two readings a minute may end.
    for (int attempt = 0;; ++attempt) {
        const auto universal = platform::UniversalTimeNow();
        const auto local = platform::LocalTimeNow();
        if (universal.second > local.second && attempt < 3) continue;
        EXPECT_EQ((universal.minute - local.minute + 60) % 15, 0);
        break;
    }
}

TEST(Clock, CountersRunForwardAtTheSamePace) {
    const std::uint32_t ticks = platform::TickCount();
    const std::uint64_t microseconds = platform::Microseconds();
    platform::SleepMilliseconds(100);
    const std::uint32_t ticksPassed = platform::TickCount() - ticks;
    const std::uint64_t microsecondsPassed = platform::Microseconds() - microseconds;
    EXPECT_GE(microsecondsPassed, 95'000u);
    // The tick counter may step by 16 ms.
    EXPECT_NEAR(static_cast<double>(ticksPassed), static_cast<double>(microsecondsPassed) / 1000, 40);
}

TEST(Clock, CalendarTimesCompareFieldByField) {
    const platform::CalendarTime time = {1999, 2, 14, 1, 2, 3, 4};
    platform::CalendarTime other = time;
    EXPECT_TRUE(time == other);
    other.millisecond = 5;
    EXPECT_FALSE(time == other);
}

}  // namespace
}  // namespace platform_tests
