#include "foundation/file_time.h"

#include "foundation/trace.h"

namespace {

constexpr FileTime kUnitsPerMillisecond = 10000;
constexpr FileTime kUnitsPerDay = FileTime{24} * 60 * 60 * 1000 * kUnitsPerMillisecond;
constexpr int kFirstYear = 1601;
constexpr int kLastYear = 30827;
constexpr int kDaysPer400Years = 146097;

constexpr char kMonths[12][4] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun", "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};

bool IsLeapYear(int year) {
    return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}

int DaysOfMonth(int year, int month) {
    static constexpr int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return days[month - 1] + (month == 2 && IsLeapYear(year) ? 1 : 0);
}

bool IsWithin(int value, int low, int high) {
    return value >= low && value <= high;
}

bool IsPossible(const CalendarTime& calendar) {
    return IsWithin(calendar.year, kFirstYear, kLastYear) && IsWithin(calendar.month, 1, 12) &&
           IsWithin(calendar.day, 1, DaysOfMonth(calendar.year, calendar.month)) && IsWithin(calendar.hour, 0, 23) &&
           IsWithin(calendar.minute, 0, 59) && IsWithin(calendar.second, 0, 59) &&
           IsWithin(calendar.millisecond, 0, 999);
}

// Days from 1 January 1601 to 1 January of the year.
int DaysBeforeYear(int year) {
    const int passed = year - kFirstYear;
    return passed * 365 + passed / 4 - passed / 100 + passed / 400;
}

// Quirk: advancing a stamp knows no leap days, kept.
int LastDayWithoutLeapDays(int month) {
    if (month == 2) return 28;
    return month == 4 || month == 6 || month == 9 || month == 11 ? 30 : 31;
}

// Moves one whole unit to the next higher one; true when there was one.
bool Carry(int& value, int limit, int& next) {
    if (value < limit) return false;
    value -= limit;
    ++next;
    return true;
}

void AddMilliseconds(CalendarTime& calendar, unsigned milliseconds) {
    calendar.millisecond += static_cast<int>(milliseconds);
    if (!Carry(calendar.millisecond, 1000, calendar.second)) return;
    if (!Carry(calendar.second, 60, calendar.minute)) return;
    if (!Carry(calendar.minute, 60, calendar.hour)) return;
    if (!Carry(calendar.hour, 24, calendar.day)) return;
    if (calendar.day <= LastDayWithoutLeapDays(calendar.month)) return;
    calendar.day = 1;
    if (++calendar.month <= 12) return;
    calendar.month = 1;
    ++calendar.year;
}

const char* NameOf(const char* callerName) {
    return callerName != nullptr ? callerName : "(null)";
}

}  // namespace

bool CalendarToFileTime(const CalendarTime& calendar, FileTime& time) {
    if (!IsPossible(calendar)) return false;
    int days = DaysBeforeYear(calendar.year) + calendar.day - 1;
    for (int month = 1; month < calendar.month; ++month) days += DaysOfMonth(calendar.year, month);
    const int seconds = (calendar.hour * 60 + calendar.minute) * 60 + calendar.second;
    const FileTime milliseconds = static_cast<FileTime>(seconds) * 1000 + static_cast<FileTime>(calendar.millisecond);
    time = static_cast<FileTime>(days) * kUnitsPerDay + milliseconds * kUnitsPerMillisecond;
    return true;
}

bool FileTimeToCalendar(FileTime time, CalendarTime& calendar) {
    if ((time >> 63) != 0) return false;
    int days = static_cast<int>(time / kUnitsPerDay);
    const int milliseconds = static_cast<int>(time % kUnitsPerDay / kUnitsPerMillisecond);

    int year = kFirstYear + days / kDaysPer400Years * 400;
    days %= kDaysPer400Years;
    // The quotient may be one year too high at the end of a leap year.
    int passed = days / 365;
    while (DaysBeforeYear(kFirstYear + passed) > days) --passed;
    days -= DaysBeforeYear(kFirstYear + passed);
    year += passed;

    calendar = {};
    calendar.year = year;
    for (calendar.month = 1; days >= DaysOfMonth(year, calendar.month); ++calendar.month) {
        days -= DaysOfMonth(year, calendar.month);
    }
    calendar.day = days + 1;
    calendar.millisecond = milliseconds % 1000;
    calendar.second = milliseconds / 1000 % 60;
    calendar.minute = milliseconds / 60000 % 60;
    calendar.hour = milliseconds / 3600000;
    return true;
}

const char* MonthName(int month) {
    return IsWithin(month, 1, 12) ? kMonths[month - 1] : "";
}

bool Zarn_GetTimeStamp(const char* callerName, const CalendarTime* given, FileTime* result, TimeStampKind how) {
    static constexpr char kFuncName[] = "Zarn_GetTimeStamp";
    DbgVsprintf(kFuncName, "Entered from %s", NameOf(callerName));
    if (result == nullptr || (how == TimeStampKind::Given && given == nullptr)) {
        DbgVsprintf(kFuncName, "ERROR. Entered with NULL parameter. Returning FALSE");
        return false;
    }
    CalendarTime calendar{.year = kFirstYear, .month = 1, .day = 1};
    if (how == TimeStampKind::Now) calendar = platform::LocalTimeNow();
    if (how == TimeStampKind::Given) calendar = *given;
    if (!CalendarToFileTime(calendar, *result)) {
        DbgVsprintf(kFuncName, "ERROR. The time is impossible. Returning FALSE");
        return false;
    }
    DbgVsprintf(kFuncName, "Done. Returning TRUE");
    return true;
}

bool Zarn_IncrementTimeStamp(const char* callerName, FileTime* time, unsigned milliseconds) {
    static constexpr char kFuncName[] = "Zarn_IncrementTimeStamp";
    DbgVsprintf(kFuncName, "Entered from %s", NameOf(callerName));
    CalendarTime calendar;
    if (time == nullptr || milliseconds >= 1000 || !FileTimeToCalendar(*time, calendar)) {
        DbgVsprintf(kFuncName, "ERROR. Invalid Parameter passed in. Returning FALSE");
        return false;
    }
    AddMilliseconds(calendar, milliseconds);
    if (!CalendarToFileTime(calendar, *time)) {
        DbgVsprintf(kFuncName, "ERROR. The time is impossible. Returning FALSE");
        return false;
    }
    DbgVsprintf(kFuncName, "Done. Returning TRUE");
    return true;
}
