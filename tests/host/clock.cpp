#include "platform/clock.h"

#include <ctime>

#include "recorded_calls.h"

namespace platform {
namespace {

timespec Now(clockid_t clock) {
    timespec time = {};
    ::clock_gettime(clock, &time);
    return time;
}

CalendarTime FromFields(const std::tm& fields, long nanoseconds) {
    return {fields.tm_year + 1900,
            fields.tm_mon + 1,
            fields.tm_mday,
            fields.tm_hour,
            fields.tm_min,
            fields.tm_sec,
            static_cast<int>(nanoseconds / 1'000'000)};
}

}  // namespace

CalendarTime LocalTimeNow() {
    const timespec now = Now(CLOCK_REALTIME);
    std::tm fields = {};
    ::localtime_r(&now.tv_sec, &fields);
    return FromFields(fields, now.tv_nsec);
}

CalendarTime UniversalTimeNow() {
    const timespec now = Now(CLOCK_REALTIME);
    std::tm fields = {};
    ::gmtime_r(&now.tv_sec, &fields);
    return FromFields(fields, now.tv_nsec);
}

std::uint32_t TickCount() {
    std::uint32_t ticks = 0;
    if (recorded_calls::ClockIsStopped(ticks)) return ticks;
    return static_cast<std::uint32_t>(Microseconds() / 1000);
}

std::uint64_t Microseconds() {
    const timespec now = Now(CLOCK_MONOTONIC);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000u + static_cast<std::uint64_t>(now.tv_nsec) / 1000u;
}

}  // namespace platform
