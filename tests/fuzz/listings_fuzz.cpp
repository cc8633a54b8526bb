// Listings: each parser alone and a whole listing through the dump file.
#include <string>

#include "config/host_types.h"
#include "fuzz/harness.h"
#include "fuzz/input_file.h"
#include "listing/dump_reader.h"
#include "listing/line_parser.h"
#include "listing/nt_parser.h"
#include "listing/unix_parser.h"

namespace {

bool IsKindOfListing(std::uint32_t type) {
    return type == kKindUnclassified || type == kKindFolder || type == kKindFile || type == kKindLink ||
           type == kKindDevice || type == kKindPipe || type == kKindLocalFolder || type == kKindLocalFile;
}

// What the panes and the commands rely on in an accepted entry.
void CheckEntry(const LVobject& entry, std::string_view line) {
    REQUIRE_THAT(entry.name && entry.owner && entry.group && entry.dateText);
    REQUIRE_THAT(IsKindOfListing(entry.type));
    REQUIRE_THAT(entry.mode.view().size() <= 10);
    REQUIRE_THAT(entry.owner.view().size() <= 29 && entry.group.view().size() <= 29);
    // A name is never made up: it is in the line.
    REQUIRE_THAT(line.find(entry.name.view()) != std::string_view::npos);
    REQUIRE_THAT(entry.name.view().starts_with(EntryName(entry)));
    REQUIRE_THAT(IsUtf8(ShownName(entry.name.view())));
    REQUIRE_THAT(Zarn_GetColumnSizeText(entry.size).view().ends_with("KB"));
    CalendarTime calendar;
    REQUIRE_THAT(FileTimeToCalendar(entry.time, calendar));
}

// Blank lines, or one line without end, of `size` bytes.
std::string LinesBefore(std::size_t size, bool blank) {
    std::string bytes(size, blank ? ' ' : 'x');
    if (!blank) return bytes;
    for (std::size_t end = size; end > 8192; end -= 8192) bytes[end - 1] = '\n';
    return bytes;
}

void CheckLine(std::string_view line) {
    REQUIRE_THAT(!line.empty() && line.size() <= kLongestListingLine);
    REQUIRE_THAT(line.front() != ' ' && line.front() != '\t');
    REQUIRE_THAT(line.find_first_of("\r\n") == std::string_view::npos);
}

}  // namespace

// Lines of one record, which is used again for each as a listing does with a rejected line's.
void FuzzUnixParser(std::string_view input) {
    const LVobjectPtr entry(AllocateLVobject(nullptr));
    FuzzInput from(input);
    do {
        const std::string_view line = from.TextUntil('\n');
        if (BuildItemFromUnixStr(line, entry.get())) CheckEntry(*entry, line);
    } while (!from.AtEnd());
}

void FuzzNtParser(std::string_view input) {
    FuzzInput from(input);
    const std::uint32_t hostType = from.Byte() % 2 == 0 ? HOST_TYPE_WINDOWS_NT : HOST_TYPE_LOCAL;
    const LVobjectPtr entry(AllocateLVobject(nullptr));
    do {
        const std::string_view line = from.TextUntil('\n');
        if (BuildItemFromNTStr(line, entry.get(), hostType)) CheckEntry(*entry, line);
    } while (!from.AtEnd());
}

// One byte for the host type, one for what precedes the listing, then the listing.
void FuzzListing(std::string_view input) {
    static const InputFile dump;
    FuzzInput from(input);
    const std::uint32_t hostType = HOST_TYPE_AUTO + from.Byte() % 24u;
    // Now and then the listing lies across the border of the reader's blocks, or follows a line without end.
    const std::uint8_t before = from.Byte();
    std::string bytes;
    if (before >= 240) bytes = LinesBefore(65536u - (before - 240u), before % 2 == 0);
    bytes += from.Rest();

    DumpReader reader;
    REQUIRE_THAT(reader.Open("fuzz", dump.Fill(bytes)));
    ListingStyle style;
    ListingCounters counters;
    std::uint32_t lines = 0, entries = 0;
    std::string_view line;
    while (reader.NextLine(line)) {
        CheckLine(line);
        const LVobjectPtr entry = FtpParseLine(++lines, hostType, line, style, counters);
        if (!entry) continue;
        ++entries;
        CheckEntry(*entry, line);
        REQUIRE_THAT(entry->fileType != nullptr);
    }
    REQUIRE_THAT(reader.BytesRead() == bytes.size());
    REQUIRE_THAT(counters.folders + counters.files + counters.links == entries);
}
