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
    // Each reading of the ticks is taken between two of the microseconds, so a pause of this thread changes nothing.
    const std::uint64_t beforeFirst = platform::Microseconds();
    const std::uint32_t first = platform::TickCount();
    const std::uint64_t afterFirst = platform::Microseconds();
    platform::SleepMilliseconds(100);
    const std::uint64_t beforeSecond = platform::Microseconds();
    const std::uint32_t second = platform::TickCount();
    const std::uint64_t afterSecond = platform::Microseconds();
    EXPECT_GE(beforeSecond - afterFirst, 95'000u);
    constexpr std::uint64_t kStep = 17'000;  // the tick counter may step by 16 ms
    const std::uint64_t ticksPassed = std::uint64_t{second - first} * 1000;
    EXPECT_LE(ticksPassed, afterSecond - beforeFirst + kStep);
    EXPECT_GE(ticksPassed + kStep, beforeSecond - afterFirst);
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
