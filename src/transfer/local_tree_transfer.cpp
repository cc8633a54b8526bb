#include "transfer/local_tree_transfer.h"

#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "config/file_types.h"
#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/path_join.h"
#include "foundation/trace.h"
#include "ftp/data/transfer_node.h"
#include "platform/system.h"
#include "transfer/destinations.h"
#include "transfer/item_steps.h"
#include "transfer/put_item.h"
#include "transfer/transfer_view.h"

namespace {

constexpr char kFuncName[] = "TransferLocalTree";

bool IsMissing(const char* text) {
    return text == nullptr || *text == '\0';
}

// Quirk: the low half less the high half, kept. The high half is 0 for every file that is sent.
std::uint32_t NodeSize(std::uint64_t size) {
    return static_cast<std::uint32_t>(size) - static_cast<std::uint32_t>(size >> 32);
}

TransferNodePtr MakeNode(const std::string& location, const platform::FileInfo& found) {
    TransferNodePtr node(new (std::nothrow) TransferNode());
    if (!node) return nullptr;
    node->pszLocation = OwnedText::Copy(location);
    node->pszLocalName = OwnedText::Copy(found.name);
    node->NodeType = found.isFolder ? kNodeFolder : kNodeFile;
    node->iSize = found.isFolder ? 0 : NodeSize(found.size);
    return node->pszLocation && node->pszLocalName ? std::move(node) : nullptr;
}

// Every item at the top of a drop must be in the folder of the first one.
bool FindDestination(TransferJob& job, TransferNode& node) {
    if (Zarn_GetDestination(job.localStart.c_str(), job.remoteStart.c_str(), node, true)) return true;
    ++job.counters.failures;
    const std::string path = JoinLocalPath(node.pszLocation.view(), node.pszLocalName.view());
    const OwnedText text = Zarn_ResVsprintf(MSG_BOX_OUTSIDE_LOCAL_START, ShownName(path), ShownName(job.localStart));
    ShowTransferBox(text, BoxButtons::Ok);
    return false;
}

// The new item as the list shows it until the folder is listed again.
LVobjectPtr MakeEntry(const TransferJob& job, const TransferNode& node) {
    const bool isFolder = (node.NodeType & kNodeFolder) != 0;
    const OwnedText& sent = node.pszRemoteName.empty() ? node.pszLocalName : node.pszRemoteName;
    const OwnedText& name = node.pszStoredName.empty() ? sent : node.pszStoredName;
    LVobjectTemplate filling;
    filling.name = name.c_str();
    filling.mode = isFolder ? "d---------" : "----------";
    filling.owner = job.site->pszUID.c_str();
    filling.group = "group";
    filling.links = 1;
    filling.size = node.iSize;
    filling.stampTime = true;
    LVobjectPtr entry(AllocateLVobject(&filling));
    if (!entry) return nullptr;
    entry->type = isFolder ? kKindFolder : kKindFile;
    entry->fileType = FileTypeOf(name.view(), isFolder);
    return entry;
}

void AddToList(const TransferJob& job, const TransferNode& node) {
    if (node.pszDestination.view() != job.listedFolder) return;
    LVobjectPtr entry = MakeEntry(job, node);
    if (entry) gTransferView.addListedEntry(job.site, job.targetFolder, std::move(entry));
}

// A folder that cannot be read counts as one failure, whatever is in it.
BoxAnswer TellUnreadableFolder(const std::string& path, std::uint32_t error) {
    const OwnedText text =
        Zarn_ResVsprintf(MSG_BOX_CANNOT_LIST_LOCAL_FOLDER, ShownName(path), platform::SystemErrorText(error));
    return ShowTransferBox(text, BoxButtons::AbortRetryIgnore);
}

// What is in the folder; nothing when the user goes on without it. False ends the transfer.
bool ReadFolder(TransferJob& job, const std::string& path, std::vector<platform::FileInfo>& entries) {
    BoxAnswer answer = BoxAnswer::Retry;
    while (answer == BoxAnswer::Retry) {
        entries.clear();
        if (platform::ListFolder(path.c_str(), entries)) return true;
        const std::uint32_t error = platform::LastSystemError();
        DbgVsprintf(kFuncName, "ERROR. Call to FindFirstFile(%s) Failed!", path.c_str());
        answer = TellUnreadableFolder(path, error);
    }
    entries.clear();
    ++job.counters.failures;
    return answer == BoxAnswer::Ignore;
}

bool SendSubFolder(TransferJob& job, const std::string& treePath, const platform::FileInfo& found) {
    const std::string path = JoinLocalPath(treePath, found.name);
    if (found.isLink) {
        DoPrintIdArgs(MSG_LOCAL_LINK_SKIPPED, ShownName(path));
        return true;
    }
    if (SendLocalItem(job, treePath, found) && SendLocalTree(job, path)) return true;
    job.Stop();
    return false;
}

// The running job with the start folders that an entry point was given; null when there is nothing to run.
TransferJob* JobFrom(const char* localStart, const char* remoteStart) {
    TransferJob* job = RunningJob();
    if (job == nullptr) return nullptr;
    job->localStart = localStart != nullptr ? localStart : "";
    job->remoteStart = remoteStart != nullptr ? remoteStart : "";
    return job;
}

}  // namespace

bool SendLocalItem(TransferJob& job, const std::string& location, const platform::FileInfo& found) {
    const TransferNodePtr node = MakeNode(location, found);
    if (!node || !FindDestination(job, *node)) return false;
    const ItemOutcome outcome = PutItem(job, *node);
    if (outcome.code != FTP_COMPLETE) return GoesOnWithout(job, outcome);
    AddToList(job, *node);
    return true;
}

bool SendLocalTree(TransferJob& job, const std::string& treePath) {
    std::vector<platform::FileInfo> entries;
    if (!ReadFolder(job, treePath, entries)) return false;
    bool done = true;
    for (const platform::FileInfo& found : entries) {
        if (job.Stopped()) break;
        done = found.isFolder ? SendSubFolder(job, treePath, found) : SendLocalItem(job, treePath, found);
        if (!done) break;
    }
    return done;
}

bool TransferLocalFile(const char* location, const char* localStart, const char* remoteStart,
                       const platform::FileInfo* found, const std::atomic<bool>& abort) {
    const bool missing = IsMissing(location) || IsMissing(localStart) || IsMissing(remoteStart) || found == nullptr;
    TransferJob* job = missing || abort ? nullptr : JobFrom(localStart, remoteStart);
    return job != nullptr && SendLocalItem(*job, location, *found);
}

bool TransferLocalTree(const char* treePath, const char* localStart, const char* remoteStart,
                       const std::atomic<bool>& abort) {
    TransferJob* job = IsMissing(treePath) || abort ? nullptr : JobFrom(localStart, remoteStart);
    return job != nullptr && SendLocalTree(*job, treePath);
}
