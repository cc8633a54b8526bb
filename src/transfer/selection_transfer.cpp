#include "transfer/selection_transfer.h"

#include <new>
#include <string>

#include "ftp/data/transfer_node.h"
#include "ftp/worker/result_codes.h"
#include "listing/tree_node.h"
#include "transfer/destinations.h"
#include "transfer/disk_space.h"
#include "transfer/get_item.h"
#include "transfer/transfer_run.h"
#include "transfer/tree_transfer.h"

namespace {

// The folder that holds the entry; empty when the entry does not tell.
std::string FolderOf(const LVobject& entry) {
    const TVobject* node = entry.node;
    // A folder's entry points at the folder's own node, one below the listed one.
    if (node != nullptr && IsFolderKind(entry.type)) node = node->pTVparent;
    if (node == nullptr || !IsRemoteFolderKind(node->wObjType)) return {};
    return TV_GetPath(node).c_str();
}

std::string ListedFolder(const std::vector<const LVobject*>& entries) {
    for (const LVobject* entry : entries) {
        if (IsFolderKind(entry->type)) continue;
        std::string folder = FolderOf(*entry);
        if (!folder.empty()) return folder;
    }
    return entries.empty() ? std::string() : FolderOf(*entries.front());
}

TransferNodePtr MakeNode(const TransferJob& job, const RemoteItem& item, std::uint32_t nodeType) {
    TransferNodePtr node(new (std::nothrow) TransferNode());
    if (!node) return nullptr;
    node->pszLocation = OwnedText::Copy(job.remoteStart);
    node->pszRemoteName = OwnedText::Copy(item.name);
    node->NodeType = nodeType;
    node->iSize = nodeType == kNodeFile ? item.size : 0;
    node->time = nodeType == kNodeFile ? item.time : 0;
    return node->pszLocation && node->pszRemoteName ? std::move(node) : nullptr;
}

void ReceiveFile(TransferJob& job, const RemoteItem& item) {
    if (FitFileOnLocalDrive(ShownName(item.name).c_str(), item.size) != FTP_COMPLETE) return;
    const TransferNodePtr node = MakeNode(job, item, kNodeFile);
    if (node && Zarn_GetDestination(job.localStart.c_str(), job.remoteStart.c_str(), *node, false)) {
        GetItem(job, *node);
    } else {
        ++job.counters.failures;
    }
}

void ReceiveFolder(TransferJob& job, const RemoteItem& item) {
    const TransferNodePtr node = MakeNode(job, item, item.kind == kKindSiteRoot ? kNodeSiteRoot : kNodeFolder);
    if (node) {
        GetTree(job, *node);
    } else {
        ++job.counters.failures;
    }
}

void ReceiveItem(TransferJob& job, const RemoteItem& item) {
    switch (item.kind) {
        case kKindLink:
        case kKindDevice:
        case kKindPipe:
            return;
        case kKindSiteRoot:
        case kKindFolder:
            ReceiveFolder(job, item);
            return;
        default:
            ReceiveFile(job, item);
    }
}

// The selection begins in the folder that its items tell, where that is not the session's current one.
void StartWhereTheItemsAre(TransferJob& job) {
    const std::string& folder = job.remoteItems.front().folder;
    if (!folder.empty()) job.remoteStart = folder;
}

}  // namespace

std::vector<RemoteItem> ItemsOf(const std::vector<const LVobject*>& entries) {
    const std::string folder = ListedFolder(entries);
    std::vector<RemoteItem> items;
    items.reserve(entries.size());
    for (const LVobject* entry : entries) {
        items.push_back({entry->name.c_str(), entry->type, entry->size, entry->time, folder});
    }
    return items;
}

std::vector<RemoteItem> ItemsOf(const TVobject* node) {
    if (node == nullptr || !IsRemoteFolderKind(node->wObjType)) return {};
    const bool isRoot = node->wObjType == kKindSiteRoot;
    const std::string location = TV_GetPath(isRoot ? node : node->pTVparent).c_str();
    return {{isRoot ? location : std::string(node->pszName.c_str()), node->wObjType, 0, 0, location}};
}

int ReceiveListItems(TransferJob& job) {
    TransferRun run(job);
    if (job.remoteItems.empty() || !run.Start("Zarn_TransferLVitems")) return kNothingDone;
    StartWhereTheItemsAre(job);
    for (const RemoteItem& item : job.remoteItems) {
        if (job.Stopped()) break;
        ReceiveItem(job, item);
    }
    return run.Done();
}

int ReceiveTreeItem(TransferJob& job) {
    TransferRun run(job);
    if (job.remoteItems.empty() || !run.Start("Zarn_TransferTVitem")) return kNothingDone;
    StartWhereTheItemsAre(job);
    const RemoteItem& item = job.remoteItems.front();
    const TransferNodePtr node = MakeNode(job, item, item.kind == kKindSiteRoot ? kNodeSiteRoot : kNodeFolder);
    if (!node) return run.Done();
    node->pszDestination = OwnedText::Copy(job.localStart);
    GetTree(job, *node);
    return run.Done();
}

int Zarn_TransferLVitems(const std::atomic<bool>&) {
    return RunRunningJob(ReceiveListItems);
}

int Zarn_TransferTVitem(const std::atomic<bool>&) {
    return RunRunningJob(ReceiveTreeItem);
}
