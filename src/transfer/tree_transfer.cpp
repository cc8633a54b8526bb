#include "transfer/tree_transfer.h"

#include <new>
#include <string>
#include <string_view>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/remote_commands.h"
#include "ftp/data/dump_file.h"
#include "ftp/data/remote_listing.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "listing/dump_reader.h"
#include "listing/line_parser.h"
#include "listing/lost_connection.h"
#include "platform/files.h"
#include "transfer/destinations.h"
#include "transfer/disk_space.h"
#include "transfer/get_put.h"
#include "transfer/item_steps.h"
#include "transfer/transfer_errors.h"
#include "transfer/transfer_progress.h"

namespace {

constexpr char kName[] = "TransferRemoteTree";

// A local file that goes with the object.
class TemporaryListing {
  public:
    TemporaryListing() : path_(Zarn_GetTmpFileName("XFER")) {}
    ~TemporaryListing() {
        if (path_) platform::DeleteFilePath(path_.get());
    }
    TemporaryListing(const TemporaryListing&) = delete;
    TemporaryListing& operator=(const TemporaryListing&) = delete;
    const char* Path() const { return path_.get(); }

  private:
    OwnedText path_;
};

// One folder of the walk.
struct Folder {
    Site* site;
    const char* localStart;
    const char* remoteStart;
    std::string path;  // on the server
    std::atomic<bool>& abort;
    bool lastRecursion = true;
};

bool IsOwnOrParent(std::string_view name) {
    return name == "." || name == "..";
}

// A site root names itself in both fields.
bool IsRoot(const TransferNode& node) {
    return node.pszLocation.view() == node.pszRemoteName.view();
}

std::string RemotePathOf(const TransferNode& node) {
    std::string path(node.pszLocation.view());
    if (IsRoot(node)) return path;
    const std::string_view name = node.pszRemoteName.view();
    const char delimiter = GetDelimiter(path.c_str());
    const char separator = delimiter != '\0' ? delimiter : '/';
    if (path.empty() || (path.back() != separator && name.front() != separator)) path += separator;
    return path.append(name);
}

// No folder's name holds a separator; one that does would lead elsewhere on both sides.
bool LeadsElsewhere(const TransferNode& node) {
    if (IsRoot(node)) return false;
    const char* separators = GetDelimiter(node.pszLocation.c_str()) == '\\' ? "/\\" : "/";
    return node.pszRemoteName.view().find_first_of(separators) != std::string_view::npos;
}

void CountFailure() {
    ++gTransfer.counters.failures;
}

// Lists the folder into the file. A folder that may not be entered is told here, other failures by the listing itself.
bool ListFolder(Site* site, const std::string& path, const char* file, std::atomic<bool>& abort) {
    while (true) {
        char reply[kReplySize] = "";
        const int result = ListContentsByName(site, path.c_str(), file, reply, abort);
        if (result == FTP_COMPLETE) return true;
        if (StoppedByTimeOut()) {
            if (TellTimeOut(site, path.c_str(), abort) == BoxAnswer::Retry) continue;
            return false;
        }
        if (!abort && EndLostConnection(kName, site, result, reply)) abort = true;
        if (abort || site->pszCurrentDir.view() == path) return false;
        const BoxAnswer answer = TransferDlgError(path.c_str(), kRemoteFolderOption, 0, reply);
        if (answer == BoxAnswer::Abort) abort = true;
        if (answer != BoxAnswer::Retry) return false;
    }
}

// Where the folder goes, and the local folder itself; failures here end the whole transfer.
bool MakeLocalFolder(TransferNode& node, const char* localStart, const char* remoteStart, std::atomic<bool>& abort) {
    if (node.pszDestination.empty() && !Zarn_GetDestination(localStart, remoteStart, node, false)) return false;
    // The contents of a root go straight into the starting folder.
    if (IsRoot(node) || IsOwnOrParent(node.pszRemoteName.view())) return true;
    return DlgCreateDir(&node, abort);
}

// A link is whatever its target is: a folder when it can be entered. The doubled slash is wanted.
std::uint32_t ResolvedLinkType(const Folder& folder, std::string_view name) {
    const std::string path = folder.path + "//" + std::string(name);
    char reply[kReplySize] = "";
    return kNodeLink | (DoCWD(folder.site, path.c_str(), reply, true) == FTP_COMPLETE ? kNodeFolder : kNodeFile);
}

// Bits of an entry; 0 for what is neither fetched nor entered.
std::uint32_t NodeTypeOf(const Folder& folder, const LVobject& entry) {
    switch (entry.type) {
        case kKindSiteRoot:
            return kNodeSiteRoot;
        case kKindFolder:
            return kNodeFolder;
        case kKindFile:
            return kNodeFile;
        case kKindLink:
            if (gZarn.RESOLVELINKS != 0) return ResolvedLinkType(folder, EntryName(entry));
            DbgVsprintf(kName, "(%s) Skipping Symlink. Resolve is FALSE", entry.name.c_str());
            return 0;
        default:
            return 0;
    }
}

TransferNodePtr MakeSubNode(const Folder& folder, const LVobject& entry, std::uint32_t nodeType) {
    TransferNodePtr node(new (std::nothrow) TransferNode());
    if (!node) return nullptr;
    node->NodeType = nodeType;
    node->iSize = entry.size;
    node->time = entry.time;
    node->pszRemoteName = OwnedText::Copy(EntryName(entry));
    node->pszLocation = OwnedText::Copy(folder.path);
    return node->pszRemoteName && node->pszLocation ? std::move(node) : nullptr;
}

void TransferSubFile(const Folder& folder, TransferNode& node) {
    if (FitFileOnLocalDrive(ShownName(node.pszRemoteName.view()).c_str(), node.iSize) != FTP_COMPLETE) return;
    if (!Zarn_GetDestination(folder.localStart, folder.remoteStart, node, false)) {
        CountFailure();
        return;
    }
    DlgGetFile(&node, folder.abort);
}

void TransferSubFolder(Folder& folder, TransferNode& node) {
    if (!Zarn_GetDestination(folder.localStart, folder.remoteStart, node, false) || folder.abort) return;
    folder.lastRecursion = TransferRemoteTree(&node, folder.localStart, folder.remoteStart, folder.abort);
}

// False ends the walk.
bool TransferEntry(Folder& folder, const LVobject& entry) {
    if (entry.name.empty() || IsOwnOrParent(entry.name.view())) return true;
    const std::uint32_t nodeType = NodeTypeOf(folder, entry);
    if (nodeType == 0 || folder.abort) return true;
    const TransferNodePtr node = MakeSubNode(folder, entry, nodeType);
    if (!node) return false;
    if ((nodeType & (kNodeSiteRoot | kNodeFolder)) != 0) {
        TransferSubFolder(folder, *node);
    } else {
        TransferSubFile(folder, *node);
    }
    return true;
}

void TransferEntries(Folder& folder, DumpReader& reader) {
    ListingStyle style;
    ListingCounters counters;
    std::uint32_t lineNumber = 0;
    int unreadable = 0;
    std::string_view line;
    while (!folder.abort && reader.NextLine(line)) {
        const LVobjectPtr entry = FtpParseLine(++lineNumber, folder.site->dwCurType, line, style, counters);
        if (!entry) {
            ++unreadable;
            DbgVsprintf(kName, "Call to FtpParseLine() Failed. continuing");
            continue;
        }
        if (!TransferEntry(folder, *entry)) break;
    }
    if (unreadable > 0) DoPrintIdArgs(MSG_LISTING_LINES_UNREADABLE, unreadable);
}

}  // namespace

bool TransferRemoteTree(TransferNode* node, const char* localStart, const char* remoteStart, std::atomic<bool>& abort) {
    Site* site = gSession.activeSite;
    if (node == nullptr || site == nullptr || node->pszLocation.empty() || node->pszRemoteName.empty() || abort) {
        return false;
    }
    if (LeadsElsewhere(*node)) {
        DoPrintIdArgs(MSG_UNSAFE_NAME_REFUSED, ShownName(node->pszRemoteName.view()));
        CountFailure();
        return false;
    }
    const TemporaryListing listing;
    if (listing.Path() == nullptr) {
        DbgVsprintf(kName, "ERROR. Call to Zarn_GetTmpFileHandle() Failed. Returning FALSE");
        return false;
    }
    Folder folder{site, localStart, remoteStart, RemotePathOf(*node), abort};
    if (!ListFolder(site, folder.path, listing.Path(), abort)) {
        CountFailure();
        return false;
    }
    if (!MakeLocalFolder(*node, localStart, remoteStart, abort)) {
        abort = true;
        CountFailure();
        return false;
    }
    DumpReader reader;
    if (!reader.Open(kName, listing.Path())) {
        CountFailure();
        return false;
    }
    TransferEntries(folder, reader);
    reader.Close();
    return folder.lastRecursion;
}
