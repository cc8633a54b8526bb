// 64-bit times: 100-nanosecond units since 1 January 1601, local time as calendars show it, no time zones. Conversion
// validates every field itself, because the platforms disagree on impossible dates.
#pragma once

#include <cstdint>

#include "platform/clock.h"

using FileTime = std::uint64_t;
using platform::CalendarTime;

// False for fields that no calendar has (31 February, hour 24, year before 1601 or after 30827).
bool CalendarToFileTime(const CalendarTime& calendar, FileTime& time);
// False when the high bit is set.
bool FileTimeToCalendar(FileTime time, CalendarTime& calendar);

// "Jan" .. "Dec" for 1..12: fixed English texts, not the user's locale; empty outside. The listing parsers match
// month names against the same table.
const char* MonthName(int month);

enum class TimeStampKind { ZeroPoint = 0, Now = 1, Given = 2 };
// Now: the local time. Given: `given` converted. Otherwise 1 January 1601. False when `given` is impossible.
bool Zarn_GetTimeStamp(const char* callerName, const CalendarTime* given, FileTime* result, TimeStampKind how);
// Adds fewer than 1000 ms through the calendar form; false otherwise. Quirk: February always has 28 days here, kept.
bool Zarn_IncrementTimeStamp(const char* callerName, FileTime* time, unsigned milliseconds);
