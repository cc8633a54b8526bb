#include "listing/unix_parser.h"

#include "foundation/date_text.h"
#include "foundation/error_report.h"
#include "foundation/number_text.h"
#include "listing/line_tokens.h"
#include "listing/present_time.h"

namespace {

constexpr std::size_t kModeLength = 10;
constexpr std::size_t kLinksLength = 5;
constexpr std::size_t kOwnerLength = 29;
constexpr std::size_t kSizeLength = 14;
constexpr std::size_t kMonthLength = 3;
constexpr std::size_t kDayLength = 2;
constexpr std::size_t kTimeLength = 5;

struct UnixLine {
    std::string_view mode, links, owner, group, size, month, day, timeOrYear, name;
};

UnixLine CutLine(std::string_view line) {
    UnixLine cut;
    LineTokens tokens(line);
    cut.mode = tokens.Next(kModeLength);
    cut.links = tokens.Next(kLinksLength);
    cut.owner = tokens.Next(kOwnerLength);
    cut.group = tokens.Next(kOwnerLength);
    cut.size = tokens.Next(kSizeLength);
    cut.month = tokens.Next(kMonthLength);
    cut.day = tokens.Next(kDayLength);
    cut.timeOrYear = tokens.Next(kTimeLength);
    cut.name = tokens.Rest();
    // Quirk: one separator is dropped, further blanks belong to the name, kept.
    if (!cut.name.empty()) cut.name.remove_prefix(1);
    return cut;
}

// 1..12, or 0.
int MonthNumber(std::string_view token) {
    if (token.size() < kMonthLength) return 0;
    for (int month = 1; month <= 12; ++month) {
        const char* name = MonthName(month);
        if (AsciiLower(token[0]) == AsciiLower(name[0]) && AsciiLower(token[1]) == AsciiLower(name[1]) &&
            AsciiLower(token[2]) == AsciiLower(name[2])) {
            return month;
        }
    }
    return 0;
}

std::uint32_t KindOf(std::string_view line) {
    switch (line.empty() ? '\0' : line.front()) {
        case 'b':
        case 'c':
            return kKindDevice;
        case 'd':
            return kKindFolder;
        case 'l':
            return kKindLink;
        case 'p':
            return kKindPipe;
        default:
            return kKindFile;
    }
}

// Hour and minute of a time token, whose year is then the present one or the one before.
void ReadTimeOfDay(std::string_view token, std::size_t colon, const CalendarTime& present, CalendarTime& date) {
    // Quirk: days are not compared, so a later day of the present month stays in the present year, kept.
    date.year = date.month > present.month ? present.year - 1 : present.year;
    const std::size_t hourStart = colon > 2 ? colon - 2 : 0;
    date.hour = LeadingNumber(token.substr(hourStart, colon - hourStart));
    date.minute = LeadingNumber(token.substr(colon + 1, 2));
}

void SetTime(const UnixLine& line, int month, LVobject* entry) {
    const PresentTime& present = ReadPresentTime();
    CalendarTime date;
    date.month = month;
    date.day = LeadingNumber(line.day);
    const std::size_t colon = line.timeOrYear.find(':');
    if (colon != std::string_view::npos) {
        ReadTimeOfDay(line.timeOrYear, colon, present.calendar, date);
    } else {
        date.year = LeadingNumber(line.timeOrYear);
    }
    if (!CalendarToFileTime(date, entry->time)) entry->time = present.time;
    entry->dateText = FileTimeText(&entry->time);
}

}  // namespace

bool BuildItemFromUnixStr(std::string_view line, LVobject* entry) {
    ClearLVobject(entry);
    while (line.size() > 2 && (line.back() == '\r' || line.back() == '\n')) line.remove_suffix(1);
    const UnixLine cut = CutLine(line);
    const int month = MonthNumber(cut.month);
    if (month == 0) return false;

    entry->type = KindOf(line);
    entry->mode = OwnedText::Copy(cut.mode);
    entry->links = ParseUnsigned(cut.links);
    entry->owner = OwnedText::Copy(cut.owner);
    entry->group = OwnedText::Copy(cut.group);
    entry->size = ParseUnsigned(cut.size);
    SetTime(cut, month, entry);
    entry->name = OwnedText::Copy(cut.name);
    if (!entry->name) {
        ShowNoMemoryError();
        return false;
    }
    return true;
}
