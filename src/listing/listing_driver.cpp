#include "listing/listing_driver.h"

#include <string>
#include <utility>

#include "config/host_types.h"
#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "foundation/trace_address.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/dump_file.h"
#include "ftp/data/remote_listing.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/session_view.h"
#include "ftp/worker/worker.h"
#include "listing/dot_entries.h"
#include "listing/dump_reader.h"
#include "listing/host_detection.h"
#include "listing/line_parser.h"
#include "listing/listing_view.h"
#include "listing/lost_connection.h"
#include "listing/symlinks.h"
#include "platform/clock.h"

ListingView gListingView;

namespace {

// The first entries are shown at once, the rest in large batches.
constexpr std::size_t kFirstBatch = 200;
// While links are followed, entries already read are shown after this time.
constexpr std::uint32_t kShowWithinMilliseconds = 250;
// Longest listing that is read, in bytes: about two million entries, as many as a 32-bit program can hold.
constexpr std::uint64_t kLongestListing = 160u << 20;

// Marks a listing as being parsed for the lifetime of the object.
class ParsingMark {
  public:
    ParsingMark() { gSession.parsing = true; }
    ~ParsingMark() { gSession.parsing = false; }
    ParsingMark(const ParsingMark&) = delete;
    ParsingMark& operator=(const ParsingMark&) = delete;
};

// No site means the local computer.
std::uint32_t HostTypeOf(const Site* site) {
    return site != nullptr ? site->dwCurType : HOST_TYPE_LOCAL;
}

// Turns lines into entries and hands them over in batches.
class ListingRun {
  public:
    ListingRun(TVobject* node, Site* site, std::uint32_t hostType, std::string_view folder)
        : node_(node), site_(site), hostType_(hostType), folder_(folder) {}

    void Take(std::string_view line) {
        LVobjectPtr entry = FtpParseLine(++lineNumber_, hostType_, line, style_, counters_);
        if (!entry) {
            ++unreadable_;
            return;
        }
        if (entry->name.empty() || IsDotEntry(entry->name.view())) return;
        if (FollowsLinks() && entry->type == kKindLink && !Resolve(*entry)) return;
        entry->node = node_;
        batch_.push_back(std::move(entry));
        if (batch_.size() >= batchSize_) HandOver();
    }

    void HandOver() {
        node_->folders = counters_.folders;
        node_->files = counters_.files;
        node_->links = counters_.links;
        node_->bytes = counters_.bytes;
        handedOverAt_ = platform::TickCount();
        if (batch_.empty()) return;
        batchSize_ = kListingBatch;
        std::vector<LVobjectPtr> full;
        full.swap(batch_);
        gListingView.addEntries(node_, std::move(full));
        batch_.reserve(kListingBatch);
    }

    int Unreadable() const { return unreadable_; }
    // Every line was rejected: the server may be of another type than assumed.
    bool NothingParsed() const { return unreadable_ > 0 && lineNumber_ == static_cast<std::uint32_t>(unreadable_); }

  private:
    bool FollowsLinks() const {
        return gZarn.RESOLVELINKS != 0 && hostType_ != HOST_TYPE_LOCAL && site_ != nullptr && !serverLost_ &&
               !site_->pszCurrentDir.empty() && !StopRequested();
    }
    // False when the link leads nowhere. Quirk: its entry is dropped, which the console reports, kept.
    bool Resolve(LVobject& entry) {
        // Each link costs several round trips, so show what has been read before it.
        if (platform::TickCount() - handedOverAt_ >= kShowWithinMilliseconds) HandOver();
        int result = FTP_COMPLETE;
        const SymLinkItemPtr target = Zarn_ResolveSymLink(site_, folder_.c_str(), &entry, result);
        if (target && ApplyLinkTarget(*target, &entry)) return true;
        DoPrintIdArgs(MSG_LINK_NOT_RESOLVED, ShownName(entry.name.view()));
        const bool broken = result == SOCKET_ERROR || result == FTP_CLOSE || !HasControlSocket(site_);
        serverLost_ = broken && EndLostConnection("LV_ParseObjects", site_, result, "");
        return false;
    }

    TVobject* node_;
    Site* site_;
    std::uint32_t hostType_;
    std::string folder_;
    ListingStyle style_;
    ListingCounters counters_;
    std::vector<LVobjectPtr> batch_;
    std::size_t batchSize_ = kFirstBatch;
    std::uint32_t lineNumber_ = 0;
    std::uint32_t handedOverAt_ = platform::TickCount();
    int unreadable_ = 0;
    bool serverLost_ = false;
};

void ParseLines(DumpReader& reader, ListingRun& run) {
    std::string_view line;
    while (reader.NextLine(line)) {
        if (reader.BytesRead() > kLongestListing) {
            DoPrintIdArgs(MSG_LISTING_TOO_LONG, static_cast<unsigned>(kLongestListing));
            break;
        }
        run.Take(line);
        if (gSession.transferAbort.load(std::memory_order_relaxed)) break;
    }
    run.HandOver();
}

// A worker clears the busy flag when it ends: cleared earlier, the next command would find it still running.
void ClearFlags() {
    if (!WorkerRunning()) SetBusy(false);
    SetConnecting(false);
}

void EndListing(TVobject* node, int result) {
    gListingView.end(node, result);
    ClearFlags();
}

// Parses the whole dump file for one host type; false when it cannot be opened.
bool ParseWholeDump(TVobject* node, Site* site, const OwnedText& path, bool mayAskServer) {
    static constexpr char kFuncName[] = "LV_ParseObjects";
    const std::uint32_t hostType = HostTypeOf(site);
    DumpReader reader;
    if (!reader.Open(kFuncName, ListingDumpFile())) {
        DbgVsprintf(kFuncName, "(ERROR) Failed to get Dumpfile Handle for %s! Returning -1", path.c_str());
        return false;
    }
    gSessionView.setStatusText(CatalogueText(MSG_PARSING_LIST).c_str());
    // The root of a Windows NT server keeps its children: its drives and folders, which the server never lists.
    const bool resetChildren = !(node->wObjType == kKindSiteRoot && hostType == HOST_TYPE_WINDOWS_NT);
    gListingView.begin(node, resetChildren);
    node->folders = node->files = node->links = 0;
    node->bytes = 0;

    ListingRun run(node, site, hostType, path.view());
    ParseLines(reader, run);
    reader.Close();
    if (mayAskServer && run.NothingParsed() && DetectUnreadableHost(site))
        return ParseWholeDump(node, site, path, false);
    if (run.Unreadable() > 0) DoPrintIdArgs(MSG_LISTING_LINES_UNREADABLE, run.Unreadable());
    return true;
}

int ParseDumpFile(TVobject* node, Site* site) {
    static constexpr char kFuncName[] = "LV_ParseObjects";
    const OwnedText path = TV_GetPath(node);
    if (!path) {
        DbgVsprintf(kFuncName, "(ERROR) Call to TV_GetPath(%x) Failed.", TraceAddress(node));
        return FTP_ERROR;
    }
    if (!ParseWholeDump(node, site, path, true)) return FTP_ERROR;
    EndListing(node, FTP_COMPLETE);
    return FTP_COMPLETE;
}

// Changes to a path; failures are shown, and a server that cannot be reached is disconnected.
bool ChangeTo(const char* caller, Site* site, const OwnedText& path) {
    char reply[kReplySize] = "";
    int result = 0;
    if (ChangeRemoteDirectory(site, path.c_str(), reply, &result, true)) return true;
    // A connection without a socket has been reported and is being disconnected.
    if ((result == FTP_CLOSE || result == SOCKET_ERROR) && HasControlSocket(site)) {
        DbgVsprintf(caller, "ERROR. Can't Send to FTP Server. Closing Connection");
        gSessionView.postDisconnect(site);
    }
    return false;
}

enum class FolderEntry { AlreadyThere, Changed, Failed };

// Makes the node's folder, whose path is `path`, the session's current one. `traceChange` is called before a change.
FolderEntry EnterNodeFolder(
    const char* caller, Site* site, const OwnedText& path, void (*traceChange)(const char* path) = [](const char*) {}) {
    if (path && site->pszCurrentDir && path.view() == site->pszCurrentDir.view()) return FolderEntry::AlreadyThere;
    traceChange(path.c_str());
    return ChangeTo(caller, site, path) ? FolderEntry::Changed : FolderEntry::Failed;
}

// What a change of folder does before it lists; the result of the listing, or 0.
int ChangeAndList(TVobject* node) {
    static constexpr char kFuncName[] = "LV_ChangeDir";
    Site* site = node != nullptr && !node->pszName.empty() ? TV_GetFtpSite(node) : nullptr;
    const OwnedText path = site != nullptr ? TV_GetPath(node) : OwnedText();
    if (path.empty()) return 0;
    const std::string from = site->pszCurrentDir.c_str();
    switch (EnterNodeFolder(kFuncName, site, path)) {
        case FolderEntry::AlreadyThere:
            DbgVsprintf(kFuncName, "(%s) Didn't have to change dir!", path.c_str());
            break;
        case FolderEntry::Changed:
            DbgVsprintf(kFuncName, "( FROM %s TO %s ) HAD to change dir!", from.c_str(), path.c_str());
            break;
        case FolderEntry::Failed:
            return 0;
    }
    return LV_ListDirectory(node);
}

}  // namespace

int LV_ListDirectory(TVobject* node) {
    static constexpr char kFuncName[] = "LV_ListDirectory";
    if (node == nullptr || node->pszName.empty()) return FTP_ERROR;
    Site* site = TV_GetFtpSite(node);
    if (site == nullptr) {
        DbgVsprintf(kFuncName, "ERROR. Call to TV_GetFtpSite() Failed. Returning FTP_ERROR");
        return FTP_ERROR;
    }
    if (!site->bConnected) return FTP_NOTCONNECTED;
    if (site->pszCurrentDir.empty()) return FTP_ERROR;
    const OwnedText path = TV_GetPath(node);
    if (!path) {
        DbgVsprintf(kFuncName, "(ERROR) Call to TV_GetPath(%x) Failed.", TraceAddress(node));
        return FTP_ERROR;
    }
    const auto traceChange = [](const char* to) { DbgVsprintf(kFuncName, "Changing Directory to %s", to); };
    if (EnterNodeFolder(kFuncName, site, path, traceChange) == FolderEntry::Failed) return FTP_ERROR;

    char reply[kReplySize] = "";
    const int result = DoDirList(site, "LIST", reply);
    if (result != FTP_COMPLETE) {
        // A part of a listing is not the folder: the list stays as it was.
        DeleteListingDumpFile();
        DoPrintIdArgs(MSG_DIR_LIST_RETURNED, static_cast<unsigned>(result));
        EndLostConnection(kFuncName, site, result, reply);
        return result;
    }
    if (!gSession.exiting) SetTransferAbort(false);
    const ParsingMark mark;
    return LV_ParseObjects(node);
}

int LV_ParseObjects(TVobject* node) {
    if (node == nullptr || gSession.transferAbort) {
        DbgVsprintf("LV_ParseObjects", "(ERROR) Bad Parameter passed in!");
        DeleteListingDumpFile();
        return FTP_ERROR;
    }
    const int result = ParseDumpFile(node, TV_GetFtpSite(node));
    DeleteListingDumpFile();
    return result;
}

int LV_ChangeDir(TVobject* node) {
    static constexpr char kFuncName[] = "LV_ChangeDir";
    const char* name = node != nullptr ? node->pszName.c_str() : "";
    DbgVsprintf(kFuncName, "(0x%x:%s) Entered", TraceAddress(node), name);
    SetBusy(true);
    gSessionView.refreshWindow();
    gSessionView.setStatusText(CatalogueText(MSG_CHANGING_FOLDER).c_str());

    const int result = ChangeAndList(node);
    if (result != FTP_COMPLETE) {
        DbgVsprintf(kFuncName, "ERROR. Call to LV_ListDirectory(%x:%s) returned %d", TraceAddress(node), name, result);
        ClearFlags();
        gSessionView.refreshWindow();
        gSessionView.setStatusText(CatalogueText(MSG_CONNECTION_FAILED).c_str());
    }
    gSessionView.refreshWindow();
    gSessionView.setStatusText("");
    DbgVsprintf(kFuncName, "Done. Returning %d", result);
    return result;
}

bool TV_PreSelect(TVobject* node) {
    static constexpr char kFuncName[] = "TV_PreSelect";
    Site* site = node != nullptr ? TV_GetFtpSite(node) : nullptr;
    const OwnedText path = site != nullptr ? TV_GetPath(node) : OwnedText();
    if (path.empty()) return false;
    const auto traceChange = [](const char* to) { DbgVsprintf(kFuncName, "Calling ChangeRemoteDirectory(%s)", to); };
    return EnterNodeFolder(kFuncName, site, path, traceChange) != FolderEntry::Failed;
}
