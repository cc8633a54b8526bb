// The present local time for the parsers. Reading the clock costs more than parsing a line, so one reading serves the
// lines of a tenth of a second.
#pragma once

#include "foundation/file_time.h"

struct PresentTime {
    CalendarTime calendar;
    FileTime time = 0;
};
const PresentTime& ReadPresentTime();
