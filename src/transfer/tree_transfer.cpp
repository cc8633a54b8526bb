#include "transfer/tree_transfer.h"

#include <new>
#include <string>
#include <string_view>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/path_join.h"
#include "foundation/trace.h"
#include "ftp/control/remote_commands.h"
#include "ftp/data/remote_listing.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "listing/dot_entries.h"
#include "listing/dump_reader.h"
#include "listing/line_parser.h"
#include "listing/temporary_dump.h"
#include "transfer/destinations.h"
#include "transfer/disk_space.h"
#include "transfer/get_item.h"
#include "transfer/item_steps.h"
#include "transfer/transfer_errors.h"

namespace {

constexpr char kFuncName[] = "TransferRemoteTree";

// One folder of the walk.
struct Folder {
    TransferJob& job;
    std::string path;  // on the server
    bool lastRecursion = true;
};

// A site's root has its path in both fields.
bool IsRoot(const TransferNode& node) {
    return node.pszLocation.view() == node.pszRemoteName.view();
}

std::string RemotePathOf(const TransferNode& node) {
    if (IsRoot(node)) return node.pszLocation.c_str();
    const char delimiter = GetDelimiter(node.pszLocation.c_str());
    return JoinRemotePath(node.pszLocation.view(), node.pszRemoteName.view(), delimiter != '\0' ? delimiter : '/');
}

// A folder's name holds no separator; one that does would lead elsewhere on both sides.
bool LeadsElsewhere(const TransferNode& node) {
    if (IsRoot(node)) return false;
    const char* separators = GetDelimiter(node.pszLocation.c_str()) == '\\' ? "/\\" : "/";
    return node.pszRemoteName.view().find_first_of(separators) != std::string_view::npos;
}

bool FailTree(TransferJob& job) {
    ++job.counters.failures;
    return false;
}

// Lists the folder into the file. A folder that cannot be entered is shown here, other failures by the listing itself.
bool ListFolder(TransferJob& job, const std::string& path, const char* file) {
    while (true) {
        char reply[kReplySize] = "";
        const int result = ListContentsByName(job.site, path.c_str(), file, reply, gSession.transferAbort);
        if (result == FTP_COMPLETE) return true;
        if (StoppedByTimeOut()) {
            if (TellTimeOut(job, path.c_str()) == BoxAnswer::Retry) continue;
            return false;
        }
        if (job.Stopped() || EndIfLost(job, kFuncName, result, reply)) return false;
        if (job.site->pszCurrentDir.view() == path) return false;
        if (!WantsRetry(job, TransferDlgError(path.c_str(), kRemoteFolderOption, 0, reply))) return false;
    }
}

// Finds out where the folder goes and makes it there; a failure ends the whole transfer.
bool MakeLocalFolder(TransferJob& job, TransferNode& node) {
    const bool mapped = !node.pszDestination.empty() ||
                        Zarn_GetDestination(job.localStart.c_str(), job.remoteStart.c_str(), node, false);
    if (!mapped) return false;
    // What is in a root goes straight into the starting folder.
    if (IsRoot(node) || IsDotEntry(node.pszRemoteName.view())) return true;
    return CreateLocalFolder(job, node).code == FTP_COMPLETE;
}

// A link is what its target is: a folder when it can be entered, else a file.
// Quirk: the path that is tried has a doubled slash, kept.
std::uint32_t ResolvedLinkType(const Folder& folder, std::string_view name) {
    const std::string path = folder.path + "//" + std::string(name);
    char reply[kReplySize] = "";
    return kNodeLink | (DoCWD(folder.job.site, path.c_str(), reply, true) == FTP_COMPLETE ? kNodeFolder : kNodeFile);
}

// The node bits of an entry; 0 for what is neither fetched nor entered.
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
            DbgVsprintf(kFuncName, "(%s) Skipping Symlink. Resolve is FALSE", entry.name.c_str());
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

void GetSubFile(TransferJob& job, TransferNode& node) {
    if (FitFileOnLocalDrive(ShownName(node.pszRemoteName.view()).c_str(), node.iSize) != FTP_COMPLETE) return;
    if (Zarn_GetDestination(job.localStart.c_str(), job.remoteStart.c_str(), node, false)) {
        GetItem(job, node);
    } else {
        FailTree(job);
    }
}

void GetSubFolder(Folder& folder, TransferNode& node) {
    TransferJob& job = folder.job;
    if (!Zarn_GetDestination(job.localStart.c_str(), job.remoteStart.c_str(), node, false) || job.Stopped()) return;
    folder.lastRecursion = GetTree(job, node);
}

// False ends the walk.
bool GetEntry(Folder& folder, const LVobject& entry) {
    if (entry.name.empty() || IsDotEntry(entry.name.view())) return true;
    const std::uint32_t nodeType = NodeTypeOf(folder, entry);
    if (nodeType == 0 || folder.job.Stopped()) return true;
    const TransferNodePtr node = MakeSubNode(folder, entry, nodeType);
    if (!node) return false;
    if ((nodeType & (kNodeSiteRoot | kNodeFolder)) != 0) {
        GetSubFolder(folder, *node);
    } else {
        GetSubFile(folder.job, *node);
    }
    return true;
}

void GetEntries(Folder& folder, DumpReader& reader) {
    ListingStyle style;
    ListingCounters counters;
    std::uint32_t lineNumber = 0;
    int unreadable = 0;
    std::string_view line;
    while (!folder.job.Stopped() && reader.NextLine(line)) {
        const LVobjectPtr entry = FtpParseLine(++lineNumber, folder.job.site->dwCurType, line, style, counters);
        if (!entry) {
            ++unreadable;
            DbgVsprintf(kFuncName, "Call to FtpParseLine() Failed. continuing");
            continue;
        }
        if (!GetEntry(folder, *entry)) break;
    }
    if (unreadable > 0) DoPrintIdArgs(MSG_LISTING_LINES_UNREADABLE, unreadable);
}

}  // namespace

bool GetTree(TransferJob& job, TransferNode& node) {
    if (job.site == nullptr || node.pszLocation.empty() || node.pszRemoteName.empty() || job.Stopped()) return false;
    if (LeadsElsewhere(node)) {
        DoPrintIdArgs(MSG_UNSAFE_NAME_REFUSED, ShownName(node.pszRemoteName.view()));
        return FailTree(job);
    }
    const TemporaryDump listing("XFER");
    if (listing.Name() == nullptr) {
        DbgVsprintf(kFuncName, "ERROR. Call to Zarn_GetTmpFileHandle() Failed. Returning FALSE");
        return false;
    }
    Folder folder{job, RemotePathOf(node)};
    if (!ListFolder(job, folder.path, listing.Name())) return FailTree(job);
    if (!MakeLocalFolder(job, node)) {
        job.Stop();
        return FailTree(job);
    }
    DumpReader reader;
    if (!reader.Open(kFuncName, listing.Name())) return FailTree(job);
    GetEntries(folder, reader);
    reader.Close();
    return folder.lastRecursion;
}

bool TransferRemoteTree(TransferNode* node, const char* localStart, const char* remoteStart,
                        const std::atomic<bool>& abort) {
    TransferJob* job = RunningJob();
    if (node == nullptr || job == nullptr || abort) return false;
    job->localStart = localStart != nullptr ? localStart : "";
    job->remoteStart = remoteStart != nullptr ? remoteStart : "";
    return GetTree(*job, *node);
}
