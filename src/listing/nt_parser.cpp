#include "listing/nt_parser.h"

#include <algorithm>
#include <string>

#include "config/host_types.h"
#include "foundation/catalogue.h"
#include "foundation/date_text.h"
#include "foundation/error_report.h"
#include "foundation/message_ids.h"
#include "foundation/number_text.h"
#include "foundation/trace.h"
#include "listing/line_tokens.h"
#include "listing/present_time.h"

namespace {

constexpr std::size_t kDateLength = 19;
constexpr std::size_t kSizeLength = 14;
constexpr std::size_t kOwnerLength = 28;
constexpr std::string_view kFolderMark = "<DIR>";

std::string OwnerText(unsigned id) {
    return CatalogueText(id).substr(0, kOwnerLength);
}

// Hour and minute with AM or PM behind them. Quirk: upper case only, kept.
void ReadTimeOfDay(std::string_view text, CalendarTime& date) {
    date.hour = LeadingNumber(text.substr(0, 2));
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) return;
    const std::string_view minuteOn = text.substr(colon + 1);
    date.minute = LeadingNumber(minuteOn.substr(0, 2));
    const std::string_view half = minuteOn.size() > 2 ? minuteOn.substr(2, 2) : std::string_view();
    if (half == "PM" && date.hour != 12) date.hour += 12;
    if (half == "AM" && date.hour == 12) date.hour = 0;
}

// Leaves day and year zero, which no calendar has, when the text is not in the expected form.
CalendarTime ReadDate(std::string_view text) {
    static constexpr char kFuncName[] = "DosDateStringToFileTime";
    CalendarTime date;
    date.month = LeadingNumber(text.substr(0, 2));
    if (text.size() < 3 || text[2] != '-') {
        DbgVsprintf(kFuncName, "failed on Third Character");
        return date;
    }
    if (text.find('-', 3) != 5) {
        DbgVsprintf(kFuncName, "failed on first two chars");
        return date;
    }
    date.day = LeadingNumber(text.substr(3, 2));
    // Quirk: a year of four digits is read by its first two, kept.
    const int year = LeadingNumber(text.substr(6, 2));
    date.year = year < 70 ? 2000 + year : 1900 + year;
    const std::string_view afterYear = text.substr(std::min<std::size_t>(8, text.size()));
    ReadTimeOfDay(SkipBlanks(afterYear.substr(TokenLength(afterYear))), date);
    return date;
}

// Returns the name in a folder line whose mark is at `mark`.
std::string_view FillFolder(std::string_view rest, std::size_t mark, std::uint32_t hostType, LVobject* entry) {
    entry->mode = OwnedText::Copy("d---------");
    entry->size = 0;
    entry->type = hostType == HOST_TYPE_LOCAL ? kKindLocalFolder : kKindFolder;
    const std::string_view afterMark = rest.substr(mark + kFolderMark.size());
    return SkipBlanks(afterMark.substr(TokenLength(afterMark)));
}

std::string_view FillFile(std::string_view rest, std::uint32_t hostType, LVobject* entry) {
    const std::string_view size = rest.substr(0, TokenLength(rest));
    if (!size.empty() && std::all_of(size.begin(), size.end(), IsDigit)) {
        entry->size = ParseUnsigned(size.substr(0, kSizeLength));
        entry->mode = OwnedText::Copy("----------");
        entry->type = hostType == HOST_TYPE_LOCAL ? kKindLocalFile : kKindFile;
    } else {
        // Quirk: the entry gets neither mode nor kind, kept.
        entry->size = 0;
    }
    return rest.substr(std::min(size.size() + 1, rest.size()));
}

}  // namespace

void SetUnknownOwner(LVobject& entry) {
    static const std::string owner = OwnerText(MSG_COLUMN_OWNER);
    static const std::string group = OwnerText(MSG_COLUMN_GROUP);
    entry.owner = OwnedText::Copy(owner);
    entry.group = OwnedText::Copy(group);
}

bool DosDateStringToFileTime(std::string_view date, LVobject* entry) {
    if (date.empty()) return false;
    if (!CalendarToFileTime(ReadDate(date), entry->time)) entry->time = ReadPresentTime().time;
    entry->dateText = FileTimeText(&entry->time);
    return true;
}

bool BuildItemFromNTStr(std::string_view line, LVobject* entry, std::uint32_t hostType) {
    line = SkipBlanks(line);
    if (line.empty() || !IsDigit(line.front())) return false;
    ClearLVobject(entry);
    SetUnknownOwner(*entry);
    entry->links = 1;
    if (!DosDateStringToFileTime(line.substr(0, kDateLength), entry)) return false;

    const std::string_view rest = SkipBlanks(line.substr(std::min(kDateLength, line.size())));
    // Quirk: a file whose name contains the mark is taken for a folder, kept.
    const std::size_t mark = rest.find(kFolderMark);
    const std::string_view name =
        mark != std::string_view::npos ? FillFolder(rest, mark, hostType, entry) : FillFile(rest, hostType, entry);
    entry->name = OwnedText::Copy(name);
    if (!entry->name) {
        ShowNoMemoryError();
        return false;
    }
    return true;
}
