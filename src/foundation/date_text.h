// Date and time as the list pane shows them. Converting times belongs to file_time.h.
#pragma once

#include "foundation/file_time.h"
#include "foundation/owned_text.h"

// "Nov 5  2026", "Nov 5  4:07PM" or "Nov 5 4:17PM"; the present time for null or an impossible time. Quirk: at midnight
// and on every full hour the year is shown instead of the time, kept.
OwnedText Zarn_GetFileTimeString(const FileTime* time);
// The same text without the trace of its entry, for listings of many thousand lines: a trace line costs more than
// parsing the line that it is about.
OwnedText FileTimeText(const FileTime* time);
