#include "listing/local_listing.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "config/file_types.h"
#include "foundation/catalogue.h"
#include "foundation/date_text.h"
#include "foundation/error_report.h"
#include "foundation/error_text.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/path_join.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "listing/listing_view.h"
#include "listing/nt_parser.h"
#include "platform/system.h"

namespace {

void HandOver(TVobject* node, std::vector<LVobjectPtr>& batch) {
    if (batch.empty()) return;
    gListingView.addEntries(node, std::exchange(batch, {}));
}

void HandOverFiles(TVobject* node, const std::vector<platform::FileInfo>& files) {
    std::vector<LVobjectPtr> batch;
    for (const platform::FileInfo& info : files) {
        if (LVobjectPtr entry = MakeLocalEntry(info)) {
            info.isFolder ? ++node->folders : ++node->files;
            node->bytes += info.size;
            batch.push_back(std::move(entry));
        }
        if (batch.size() >= kListingBatch) HandOver(node, batch);
        if (gSession.transferAbort) break;
    }
    HandOver(node, batch);
}

void HandOverDrives(TVobject* node) {
    std::vector<LVobjectPtr> batch;
    for (const std::string& name : platform::DriveNames()) {
        if (LVobjectPtr entry = MakeDriveEntry(name)) batch.push_back(std::move(entry));
    }
    node->folders = static_cast<std::uint32_t>(batch.size());
    HandOver(node, batch);
}

void ShowCannotList(const std::string& path) {
    const OwnedText reason = GetErrorText(platform::LastSystemError());
    const OwnedText text = Zarn_ResVsprintf(MSG_BOX_CANNOT_LIST_LOCAL_FOLDER, path, reason.c_str());
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
}

}  // namespace

bool IsLocalNode(const TVobject* node) {
    return node != nullptr && IsLocalNodeKind(node->wObjType);
}

std::string LocalNodePath(const TVobject* node) {
    if (node == nullptr || node->wObjType == kKindLocalComputer) return std::string();
    if (node->wObjType == kKindLocalRoot) return node->pszName.c_str();
    return JoinLocalPath(LocalNodePath(node->pTVparent), node->pszName.view());
}

LVobjectPtr MakeLocalEntry(const platform::FileInfo& info) {
    LVobjectPtr entry(AllocateLVobject(nullptr));
    if (!entry) return nullptr;
    entry->name = OwnedText::Copy(info.name);
    if (!entry->name) {
        ShowNoMemoryError();
        return nullptr;
    }
    SetUnknownOwner(*entry);
    entry->mode = OwnedText::Copy(info.isFolder ? "d---------" : "----------");
    entry->type = info.isFolder ? kKindLocalFolder : kKindLocalFile;
    entry->links = 1;
    if (!info.isFolder) entry->size = static_cast<std::uint32_t>(std::min<std::uint64_t>(info.size, UINT32_MAX));
    entry->time = info.writeTime;
    entry->dateText = Zarn_GetFileTimeString(&entry->time);
    entry->fileType = FileTypeOf(info.name, info.isFolder);
    return entry;
}

LVobjectPtr MakeDriveEntry(const std::string& name) {
    LVobjectTemplate filling;
    filling.name = name.c_str();
    filling.mode = "d---------";
    filling.links = 1;
    LVobjectPtr entry(AllocateLVobject(&filling));
    if (!entry) return nullptr;
    entry->type = kKindLocalRoot;
    entry->fileType = FileTypeOf(name, true);
    return entry;
}

bool ListLocalNode(TVobject* node) {
    const std::string path = LocalNodePath(node);
    std::vector<platform::FileInfo> files;
    if (node->wObjType != kKindLocalComputer &&
        (!platform::SetCurrentFolder(path.c_str()) || !platform::ListFolder(path.c_str(), files))) {
        ShowCannotList(path);
        return false;
    }
    SetTransferAbort(false);
    gListingView.begin(node, true);
    node->folders = node->files = node->links = 0;
    node->bytes = 0;
    if (node->wObjType == kKindLocalComputer) {
        HandOverDrives(node);
    } else {
        HandOverFiles(node, files);
    }
    gListingView.end(node, FTP_COMPLETE);
    return true;
}
