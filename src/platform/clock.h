// What time it is: calendar fields of the local clock, and a millisecond counter for intervals.
#pragma once

#include <cstdint>

namespace platform {

struct CalendarTime {
    int year = 0, month = 0, day = 0, hour = 0, minute = 0, second = 0, millisecond = 0;
    bool operator==(const CalendarTime&) const = default;
};

CalendarTime LocalTimeNow();
CalendarTime UniversalTimeNow();
// Milliseconds since some start; wraps after 49 days, so only differences have a meaning.
std::uint32_t TickCount();
// Microseconds since some start, for measuring.
std::uint64_t Microseconds();

}  // namespace platform
