#include "listing/recursive_count.h"

#include <new>

#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/message_ids.h"
#include "foundation/path_join.h"
#include "foundation/trace.h"
#include "ftp/data/dump_file.h"
#include "ftp/data/remote_listing.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "listing/dot_entries.h"
#include "listing/line_parser.h"
#include "listing/listing_view.h"
#include "listing/lost_connection.h"
#include "platform/clock.h"

namespace {

constexpr char kFuncName[] = "FtpRecurseDirContents";
constexpr std::uint32_t kShowEveryMilliseconds = 50;

using ContentsPtr = std::unique_ptr<RecursiveContents, RecursiveContentsDeleter>;

// The counters that outlive the record, which the walk frees.
struct SharedCount {
    std::uint32_t* folders;
    std::uint32_t* files;
    void* dialog;
    std::uint64_t* bytes;
};

SharedCount SharedOf(const RecursiveContents& contents) {
    return {contents.folders, contents.files, contents.dialog, contents.bytes};
}

void ShowCount(const SharedCount& count) {
    if (*count.bytes != 0) gListingView.showCountedBytes(count.dialog, *count.bytes);
    if (*count.files != 0 || *count.folders != 0)
        gListingView.showCountedEntries(count.dialog, *count.files, *count.folders);
}

// A message for each entry would cost the window more than the entry costs the server.
void ShowCountIfDue(const SharedCount& count) {
    thread_local std::uint32_t shownAt = platform::TickCount() - kShowEveryMilliseconds;
    const std::uint32_t now = platform::TickCount();
    if (now - shownAt < kShowEveryMilliseconds) return;
    shownAt = now;
    ShowCount(count);
}

bool IsComplete(const RecursiveContents& contents) {
    return contents.pszLocation && contents.bAborted != nullptr && contents.folders != nullptr &&
           contents.files != nullptr && contents.bytes != nullptr;
}

bool Stopped(const RecursiveContents& contents) {
    return *contents.bAborted || StopRequested();
}

char SeparatorOf(const Site* site) {
    return site->chSeparator != 0 ? static_cast<char>(site->chSeparator) : '/';
}

// Quirk: a folder other than the separator alone gets a separator, even one that ends with it, kept.
std::string LocationBelow(std::string_view folder, std::string_view name, char separator) {
    if (folder == std::string_view(&separator, 1)) return JoinRemotePath(folder, name, separator);
    return std::string(folder) + separator + std::string(name);
}

int Walk(ContentsPtr contents, Site* site);

// Depth first, in listing order, with the parent's dump file still open. The longest path that a command takes bounds
// the depth.
int WalkChild(const RecursiveContents& parent, Site* site, const LVobject& entry) {
    const std::string location = LocationBelow(parent.pszLocation.view(), entry.name.view(), SeparatorOf(site));
    ContentsPtr child(
        AllocateContents(location, *parent.bAborted, *parent.folders, *parent.files, parent.dialog, *parent.bytes));
    if (!child) return FTP_ERROR;
    ++*parent.folders;
    *parent.bytes += entry.size;
    return Stopped(parent) ? FTP_ERROR : Walk(std::move(child), site);
}

void CountEntry(const RecursiveContents& contents, Site* site, const LVobject& entry, int& result) {
    switch (entry.type) {
        case kKindSiteRoot:
        case kKindFolder:
            result = WalkChild(contents, site, entry);
            return;
        case kKindFile:
        case kKindLink:
            *contents.bytes += entry.size;
            break;
        default:
            break;
    }
    ++*contents.files;
}

// Walking into "." or ".." would never end.
bool IsCounted(const LVobject& entry) {
    return !entry.name.empty() && !IsDotEntry(entry.name.view());
}

int CountEntries(RecursiveContents& contents, Site* site) {
    int result = FTP_COMPLETE;
    ListingStyle style;
    ListingCounters ignored;
    std::uint32_t lineNumber = 0;
    std::string_view line;
    while (contents.reader.NextLine(line)) {
        const LVobjectPtr entry = FtpParseLine(++lineNumber, site->dwCurType, line, style, ignored);
        if (entry && IsCounted(*entry)) CountEntry(contents, site, *entry, result);
        if (Stopped(contents)) return FTP_ERROR;
        ShowCountIfDue(SharedOf(contents));
    }
    return result;
}

int Walk(ContentsPtr contents, Site* site) {
    contents->dumpFile = Zarn_GetTmpFileName("DCON");
    if (!contents->dumpFile) return FTP_ERROR;
    char reply[kReplySize] = "";
    const int result =
        ListContentsByName(site, contents->pszLocation.get(), contents->dumpFile.get(), reply, *contents->bAborted);
    if (result != FTP_COMPLETE) {
        DoPrintIdArgs(MSG_DIR_LIST_RETURNED, static_cast<unsigned>(result));
        // Every remaining folder would fail, too.
        if (EndLostConnection(kFuncName, site, result, reply)) *contents->bAborted = true;
        return result;
    }
    if (Stopped(*contents) || !contents->reader.Open(kFuncName, contents->dumpFile.get())) return FTP_ERROR;
    return CountEntries(*contents, site);
}

}  // namespace

RecursiveContents* AllocateContents(std::string_view location, std::atomic<bool>& aborted, std::uint32_t& folders,
                                    std::uint32_t& files, void* dialog, std::uint64_t& bytes) {
    ContentsPtr contents(new (std::nothrow) RecursiveContents());
    if (contents) contents->pszLocation = OwnedText::Copy(location);
    if (!contents || !contents->pszLocation) {
        ShowNoMemoryError();
        return nullptr;
    }
    contents->bAborted = &aborted;
    contents->folders = &folders;
    contents->files = &files;
    contents->dialog = dialog;
    contents->bytes = &bytes;
    return contents.release();
}

void Zarn_FreeContents(RecursiveContents* pContents) {
    if (pContents == nullptr) return;
    if (pContents->reader.Handle() != platform::kNoFile) {
        DbgVsprintf("Zarn_FreeContents", "Closing FileHandle:%x for(%s)",
                    static_cast<unsigned>(pContents->reader.Handle()), pContents->pszLocation.c_str());
        pContents->reader.Close();
    }
    if (pContents->dumpFile) platform::DeleteFilePath(pContents->dumpFile.get());
    delete pContents;
}

int FtpRecurseDirContents(RecursiveContents* pContents) {
    if (pContents == nullptr) return FTP_ERROR;
    ContentsPtr contents(pContents);
    Site* site = gSession.activeSite;
    if (site == nullptr || !IsComplete(*contents)) return FTP_ERROR;
    if (*contents->bAborted) {
        DbgVsprintf(kFuncName, "WARNING. pContents->bAborted was TRUE upon func() entry.");
        return FTP_ERROR;
    }
    if (StopRequested()) return FTP_ERROR;
    const SharedCount count = SharedOf(*contents);
    const int result = Walk(std::move(contents), site);
    ShowCount(count);
    return result;
}
