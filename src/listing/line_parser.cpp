#include "listing/line_parser.h"

#include <string>

#include "config/file_types.h"
#include "config/host_types.h"
#include "foundation/trace.h"
#include "listing/line_tokens.h"
#include "listing/nt_parser.h"
#include "listing/unix_parser.h"

namespace {

constexpr char kFuncName[] = "FtpParseLine";

void TraceBadLine(std::string_view line) {
    if (!gTrace.Any()) return;
    DbgVsprintf(kFuncName, "ERROR. BAD Line was read!!!!\n(%s)\n", std::string(line.substr(0, kTextBuffer)).c_str());
}

bool ParseNtServerLine(std::uint32_t lineNumber, std::string_view line, ListingStyle& style, LVobject* entry) {
    if (lineNumber == 1) style = ListingStyle();
    // A line that does not show its style leaves the choice to the next one.
    if (!style.decided && !DecideListingStyle(line, style)) {
        TraceBadLine(line);
        return false;
    }
    return style.isUnix ? BuildItemFromUnixStr(line, entry) : BuildItemFromNTStr(line, entry, HOST_TYPE_WINDOWS_NT);
}

bool ParseByHostType(std::uint32_t lineNumber, std::uint32_t hostType, std::string_view line, ListingStyle& style,
                     LVobject* entry) {
    if (hostType == HOST_TYPE_WINDOWS_NT) return ParseNtServerLine(lineNumber, line, style, entry);
    if (hostType == HOST_TYPE_LOCAL) return BuildItemFromNTStr(line, entry, HOST_TYPE_LOCAL);
    return BuildItemFromUnixStr(SkipLeadingNumbers(line), entry);
}

void Count(const LVobject& entry, ListingCounters& counters) {
    switch (entry.type) {
        case kKindSiteRoot:
        case kKindFolder:
        case kKindLocalFolder:
            ++counters.folders;
            break;
        case kKindLink:
            ++counters.links;
            break;
        case kKindFile:
        case kKindLocalFile:
            ++counters.files;
            break;
        default:
            ++counters.files;
            return;
    }
    counters.bytes += entry.size;
}

}  // namespace

bool DecideListingStyle(std::string_view line, ListingStyle& style) {
    if (line.empty()) return false;
    const bool isNt = IsDigit(line.front());
    constexpr std::string_view kFirst = "-dlcb";
    constexpr std::string_view kSecond = "-rwx";
    const bool isUnix = line.size() > 1 && kFirst.find(line[0]) != std::string_view::npos &&
                        kSecond.find(line[1]) != std::string_view::npos;
    if (!isNt && !isUnix) return false;
    style.decided = true;
    style.isUnix = isUnix;
    return true;
}

LVobjectPtr FtpParseLine(std::uint32_t lineNumber, std::uint32_t hostType, std::string_view line, ListingStyle& style,
                         ListingCounters& counters) {
    LVobjectPtr entry(AllocateLVobject(nullptr));
    if (!entry || !ParseByHostType(lineNumber, hostType, line, style, entry.get())) return nullptr;
    entry->fileType = FileTypeOf(EntryName(*entry), IsFolderKind(entry->type));
    Count(*entry, counters);
    return entry;
}
