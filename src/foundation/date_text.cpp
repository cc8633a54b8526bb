#include "foundation/date_text.h"

#include "foundation/trace.h"

namespace {

constexpr char kFuncName[] = "Zarn_GetFileTimeString";
constexpr std::size_t kLongestDate = 20;

}  // namespace

OwnedText Zarn_GetFileTimeString(const FileTime* time) {
    DbgVsprintf(kFuncName, "Entered");
    return FileTimeText(time);
}

OwnedText FileTimeText(const FileTime* time) {
    CalendarTime calendar;
    if (time == nullptr || !FileTimeToCalendar(*time, calendar)) calendar = platform::LocalTimeNow();

    const char* month = MonthName(calendar.month);
    OwnedText text;
    if (calendar.hour == 0 || calendar.minute == 0) {
        // Listing lines that carry a year only are stored as midnight.
        text = Zarn_Vsprintf(kFuncName, "%s %d  %d", month, calendar.day, calendar.year);
    } else {
        // Quirk: 12:30 is shown as 0:30PM, and the two forms differ in their blanks, kept.
        const char* half = calendar.hour >= 12 ? "PM" : "AM";
        const int hour = calendar.hour % 12;
        text = calendar.minute < 10
                   ? Zarn_Vsprintf(kFuncName, "%s %d  %d:0%d%s", month, calendar.day, hour, calendar.minute, half)
                   : Zarn_Vsprintf(kFuncName, "%s %d %d:%d%s", month, calendar.day, hour, calendar.minute, half);
    }
    if (!text) {
        DbgVsprintf(kFuncName, "ERROR. Returning NULL Date String");
        return {};
    }
    const std::size_t length = text.view().size();
    if (length > kLongestDate) {
        DbgVsprintf(kFuncName, "WARNING. Date text too long. (%s) by %d chars", text.get(),
                    static_cast<int>(length - kLongestDate));
    }
    return text;
}
