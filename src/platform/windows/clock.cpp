#include "platform/clock.h"

#include <windows.h>

namespace platform {
namespace {

CalendarTime FromSystemTime(const SYSTEMTIME& time) {
    return {time.wYear, time.wMonth, time.wDay, time.wHour, time.wMinute, time.wSecond, time.wMilliseconds};
}

}  // namespace

CalendarTime LocalTimeNow() {
    SYSTEMTIME time = {};
    ::GetLocalTime(&time);
    return FromSystemTime(time);
}

CalendarTime UniversalTimeNow() {
    SYSTEMTIME time = {};
    ::GetSystemTime(&time);
    return FromSystemTime(time);
}

std::uint32_t TickCount() {
    return ::GetTickCount();
}

std::uint64_t Microseconds() {
    LARGE_INTEGER frequency = {};
    LARGE_INTEGER counter = {};
    ::QueryPerformanceFrequency(&frequency);
    ::QueryPerformanceCounter(&counter);
    const auto ticksPerSecond = static_cast<std::uint64_t>(frequency.QuadPart);
    const auto ticks = static_cast<std::uint64_t>(counter.QuadPart);
    if (ticksPerSecond == 0) return 0;
    // In two parts: the product of all ticks and a million leaves 64 bits after three weeks.
    return ticks / ticksPerSecond * 1'000'000u + ticks % ticksPerSecond * 1'000'000u / ticksPerSecond;
}

}  // namespace platform
