#include "listing/present_time.h"

namespace {

constexpr std::uint32_t kReadingServes = 100;  // milliseconds

}  // namespace

const PresentTime& ReadPresentTime() {
    thread_local PresentTime present;
    thread_local std::uint32_t readAt = 0;
    thread_local bool read = false;
    const std::uint32_t now = platform::TickCount();
    if (read && now - readAt < kReadingServes) return present;
    present.calendar = platform::LocalTimeNow();
    if (!CalendarToFileTime(present.calendar, present.time)) present.time = 0;
    readAt = now;
    read = true;
    return present;
}
