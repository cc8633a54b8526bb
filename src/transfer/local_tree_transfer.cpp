#include "transfer/local_tree_transfer.h"

#include <new>
#include <string>
#include <string_view>
#include <vector>

#include "config/file_types.h"
#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/data/transfer_node.h"
#include "ftp/worker/session_state.h"
#include "platform/system.h"
#include "transfer/destinations.h"
#include "transfer/get_put.h"
#include "transfer/item_steps.h"
#include "transfer/transfer_progress.h"

namespace {

constexpr char kName[] = "TransferLocalTree";

bool IsMissing(const char* text) {
    return text == nullptr || *text == '\0';
}

// The low half less the high half, as wanted: the high half is 0 for every file that is sent.
std::uint32_t NodeSize(std::uint64_t size) {
    return static_cast<std::uint32_t>(size) - static_cast<std::uint32_t>(size >> 32);
}

TransferNodePtr MakeNode(const char* location, const platform::FileInfo& found) {
    TransferNodePtr node(new (std::nothrow) TransferNode());
    if (!node) return nullptr;
    node->pszLocation = OwnedText::Copy(location);
    node->pszLocalName = OwnedText::Copy(found.name);
    node->NodeType = found.isFolder ? kNodeFolder : kNodeFile;
    node->iSize = found.isFolder ? 0 : NodeSize(found.size);
    return node->pszLocation && node->pszLocalName ? std::move(node) : nullptr;
}

std::string PathInside(const char* folder, const std::string& name) {
    std::string path = folder;
    if (path.back() != platform::kPathSeparator) path += platform::kPathSeparator;
    return path + name;
}

// What stands at the top of a drop must lie in the folder of its first item.
bool Map(TransferNode& node, const char* localStart, const char* remoteStart) {
    if (Zarn_GetDestination(localStart, remoteStart, node, true)) return true;
    ++gTransfer.counters.failures;
    const OwnedText text = Zarn_ResVsprintf(MSG_BOX_OUTSIDE_LOCAL_START,
                                            ShownName(PathInside(node.pszLocation.c_str(), node.pszLocalName.c_str())),
                                            ShownName(localStart));
    ShowTransferBox(text, BoxButtons::Ok);
    return false;
}

// The new item as the list shows it until the folder is listed again.
LVobjectPtr MakeEntry(const TransferNode& node) {
    const bool isFolder = (node.NodeType & kNodeFolder) != 0;
    const OwnedText& sent = node.pszRemoteName.empty() ? node.pszLocalName : node.pszRemoteName;
    const OwnedText& name = node.pszStoredName.empty() ? sent : node.pszStoredName;
    LVobjectTemplate filling;
    filling.name = name.c_str();
    filling.mode = isFolder ? "d---------" : "----------";
    filling.owner = gSession.activeSite.load()->pszUID.c_str();
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

void AddToList(const TransferNode& node) {
    if (node.pszDestination.view() != gTransfer.listedFolder || gTransferView.addListedEntry == nullptr) return;
    LVobjectPtr entry = MakeEntry(node);
    if (entry) gTransferView.addListedEntry(std::move(entry));
}

enum class Choice { GoOn, Stop };

// A folder that cannot be read counts as one failure, whatever is in it.
Choice TellUnreadableFolder(const char* path, std::uint32_t error, bool& retry) {
    const OwnedText text =
        Zarn_ResVsprintf(MSG_BOX_CANNOT_LIST_LOCAL_FOLDER, ShownName(path), platform::SystemErrorText(error));
    const BoxAnswer answer = ShowTransferBox(text, BoxButtons::AbortRetryIgnore);
    retry = answer == BoxAnswer::Retry;
    if (!retry) ++gTransfer.counters.failures;
    return answer == BoxAnswer::Ignore ? Choice::GoOn : Choice::Stop;
}

// Which of the folder's items are to be sent. With Stop the transfer is over.
Choice ReadFolder(const char* path, std::vector<platform::FileInfo>& entries) {
    bool retry = true;
    Choice choice = Choice::GoOn;
    while (retry) {
        entries.clear();
        if (platform::ListFolder(path, entries)) return Choice::GoOn;
        const std::uint32_t error = platform::LastSystemError();
        DbgVsprintf(kName, "ERROR. Call to FindFirstFile(%s) Failed!", path);
        choice = TellUnreadableFolder(path, error, retry);
    }
    entries.clear();
    return choice;
}

bool TransferSubFolder(const char* treePath, const char* localStart, const char* remoteStart,
                       const platform::FileInfo& found, std::atomic<bool>& abort) {
    const std::string path = PathInside(treePath, found.name);
    if (found.isLink) {
        DoPrintIdArgs(MSG_LOCAL_LINK_SKIPPED, ShownName(path));
        return true;
    }
    if (TransferLocalFile(treePath, localStart, remoteStart, &found, abort) &&
        TransferLocalTree(path.c_str(), localStart, remoteStart, abort)) {
        return true;
    }
    abort = true;
    return false;
}

}  // namespace

bool TransferLocalFile(const char* location, const char* localStart, const char* remoteStart,
                       const platform::FileInfo* found, std::atomic<bool>& abort) {
    if (IsMissing(location) || IsMissing(localStart) || IsMissing(remoteStart) || found == nullptr) return false;
    const TransferNodePtr node = MakeNode(location, *found);
    if (!node || !Map(*node, localStart, remoteStart)) return false;
    bool ignored = false;
    if (!DlgPutFile(node.get(), abort, &ignored)) return ignored;
    AddToList(*node);
    return true;
}

bool TransferLocalTree(const char* treePath, const char* localStart, const char* remoteStart,
                       std::atomic<bool>& abort) {
    if (IsMissing(treePath)) return false;
    std::vector<platform::FileInfo> entries;
    if (ReadFolder(treePath, entries) == Choice::Stop) return false;
    bool done = true;
    for (const platform::FileInfo& found : entries) {
        if (abort) break;
        done = found.isFolder ? TransferSubFolder(treePath, localStart, remoteStart, found, abort)
                              : TransferLocalFile(treePath, localStart, remoteStart, &found, abort);
        if (!done) break;
    }
    return done;
}
