#include "transfer/selection_transfer.h"

#include <new>
#include <string>
#include <vector>

#include "ftp/data/transfer_node.h"
#include "ftp/worker/result_codes.h"
#include "transfer/destinations.h"
#include "transfer/disk_space.h"
#include "transfer/get_put.h"
#include "transfer/transfer_progress.h"
#include "transfer/transfer_run.h"
#include "transfer/tree_transfer.h"

namespace {

TransferNodePtr MakeNode(std::string_view location, std::string_view name, std::uint32_t nodeType, std::uint32_t size) {
    TransferNodePtr node(new (std::nothrow) TransferNode());
    if (!node) return nullptr;
    node->pszLocation = OwnedText::Copy(location);
    node->pszRemoteName = OwnedText::Copy(name);
    node->NodeType = nodeType;
    node->iSize = size;
    return node->pszLocation && node->pszRemoteName ? std::move(node) : nullptr;
}

// The folder whose entries are shown. It differs from the session's current one after a listing that failed: the list
// then still shows the folder before. Empty when the entry does not tell.
std::string FolderOf(const LVobject& entry) {
    const TVobject* node = entry.node;
    // A folder's entry points at the folder's own node, one below the listed one.
    if (node != nullptr && IsFolderKind(entry.type)) node = node->pTVparent;
    if (node == nullptr || (node->wObjType != kKindSiteRoot && node->wObjType != kKindFolder)) return {};
    return TV_GetPath(node).c_str();
}

std::string ListedFolder(const std::vector<const LVobject*>& entries, const std::string& currentFolder) {
    for (const LVobject* entry : entries) {
        if (IsFolderKind(entry->type)) continue;
        std::string folder = FolderOf(*entry);
        if (!folder.empty()) return folder;
    }
    const std::string folder = entries.empty() ? std::string() : FolderOf(*entries.front());
    return folder.empty() ? currentFolder : folder;
}

void TransferFile(const LVobject& entry, const std::string& localStart, const std::string& folder,
                  std::atomic<bool>& abort) {
    if (FitFileOnLocalDrive(ShownName(entry.name.view()).c_str(), entry.size) != FTP_COMPLETE) return;
    const TransferNodePtr node = MakeNode(folder, entry.name.view(), kNodeFile, entry.size);
    if (!node || !Zarn_GetDestination(localStart.c_str(), folder.c_str(), *node, false)) {
        ++gTransfer.counters.failures;
        return;
    }
    node->time = entry.time;
    DlgGetFile(node.get(), abort);
}

void TransferFolder(const LVobject& entry, const std::string& localStart, const std::string& folder,
                    std::atomic<bool>& abort) {
    const std::uint32_t nodeType = entry.type == kKindSiteRoot ? kNodeSiteRoot : kNodeFolder;
    const TransferNodePtr node = MakeNode(folder, entry.name.view(), nodeType, 0);
    if (!node) {
        ++gTransfer.counters.failures;
        return;
    }
    TransferRemoteTree(node.get(), localStart.c_str(), folder.c_str(), abort);
}

void TransferSelected(const LVobject& entry, const std::string& localStart, const std::string& folder,
                      std::atomic<bool>& abort) {
    switch (entry.type) {
        case kKindLink:
        case kKindDevice:
        case kKindPipe:
            return;
        case kKindSiteRoot:
        case kKindFolder:
            TransferFolder(entry, localStart, folder, abort);
            return;
        default:
            TransferFile(entry, localStart, folder, abort);
    }
}

}  // namespace

int Zarn_TransferLVitems(std::atomic<bool>& abort) {
    TransferRun run(TransferDirection::Download);
    const std::vector<const LVobject*> entries =
        gTransferView.selectedEntries != nullptr ? gTransferView.selectedEntries() : std::vector<const LVobject*>();
    if (entries.empty() || !run.Start("Zarn_TransferLVitems", abort)) return kNothingDone;
    const std::string folder = ListedFolder(entries, run.RemoteStart());
    for (const LVobject* entry : entries) {
        if (abort) break;
        TransferSelected(*entry, run.LocalStart(), folder, abort);
    }
    return run.Done(abort);
}

int Zarn_TransferTVitem(std::atomic<bool>& abort) {
    TransferRun run(TransferDirection::Download);
    const TVobject* selected = gTransferView.selectedNode != nullptr ? gTransferView.selectedNode() : nullptr;
    if (selected == nullptr || (selected->wObjType != kKindSiteRoot && selected->wObjType != kKindFolder)) {
        return kNothingDone;
    }
    if (!run.Start("Zarn_TransferTVitem", abort)) return kNothingDone;
    const bool isRoot = selected->wObjType == kKindSiteRoot;
    const OwnedText location = TV_GetPath(isRoot ? selected : selected->pTVparent);
    const TransferNodePtr node = MakeNode(location.view(), isRoot ? location.view() : selected->pszName.view(),
                                          isRoot ? kNodeSiteRoot : kNodeFolder, 0);
    if (!node) return run.Done(abort);
    node->pszDestination = OwnedText::Copy(run.LocalStart());
    TransferRemoteTree(node.get(), run.LocalStart().c_str(), location.c_str(), abort);
    return run.Done(abort);
}
