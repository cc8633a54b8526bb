#include "ui/browse/local_computer.h"

#include <windows.h>

#include <cstdio>
#include <utility>
#include <vector>

#include "config/file_types.h"
#include "config/host_types.h"
#include "foundation/catalogue.h"
#include "foundation/date_text.h"
#include "foundation/error_text.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/path_join.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "listing/listing_view.h"
#include "listing/nt_parser.h"
#include "platform/files.h"
#include "platform/system.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/ui_calls.h"
#include "ui/screen/wide_text.h"

namespace {

std::string ComputerName() {
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1] = L"";
    DWORD length = MAX_COMPUTERNAME_LENGTH + 1;
    if (!GetComputerNameW(name, &length) || length == 0) return CatalogueText(MSG_LOCAL_COMPUTER);
    return Narrow(name);
}

std::vector<std::string> DriveNames() {
    std::vector<std::string> names;
    const DWORD drives = GetLogicalDrives();
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        if ((drives >> (letter - 'A') & 1u) != 0) names.push_back(std::string(1, letter) + ":\\");
    }
    return names;
}

LVobjectPtr DriveEntry(const std::string& name) {
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

// A line in the form of NT and DOS listings, which is what local entries are made from.
std::string NtLine(const platform::FileInfo& info) {
    CalendarTime time;
    if (!FileTimeToCalendar(info.writeTime, time)) time = CalendarTime();
    const int hour = time.hour % 12 == 0 ? 12 : time.hour % 12;
    char front[64];
    std::snprintf(front, sizeof(front), "%02d-%02d-%02d  %02d:%02d%s       ", time.month, time.day, time.year % 100,
                  hour, time.minute, time.hour < 12 ? "AM" : "PM");
    // Sizes of 4 GiB and more cannot be shown.
    const std::uint64_t size = info.size > UINT32_MAX ? UINT32_MAX : info.size;
    return front + (info.isFolder ? std::string("<DIR> ") : std::to_string(size) + " ") + info.name;
}

LVobjectPtr EntryOf(const platform::FileInfo& info) {
    LVobjectPtr entry(AllocateLVobject(nullptr));
    if (!entry || !BuildItemFromNTStr(NtLine(info), entry.get(), HOST_TYPE_LOCAL)) return nullptr;
    // What the form cannot hold: the century, the seconds, a name that looks like a folder's mark.
    entry->name = OwnedText::Copy(info.name);
    entry->type = info.isFolder ? kKindLocalFolder : kKindLocalFile;
    entry->time = info.writeTime;
    entry->dateText = Zarn_GetFileTimeString(&entry->time);
    entry->fileType = FileTypeOf(info.name, info.isFolder);
    return entry;
}

void HandOver(TVobject* node, std::vector<LVobjectPtr>& batch) {
    if (batch.empty()) return;
    gListingView.addEntries(node, std::exchange(batch, {}));
}

void HandOverFiles(TVobject* node, const std::vector<platform::FileInfo>& files) {
    std::vector<LVobjectPtr> batch;
    for (const platform::FileInfo& info : files) {
        if (LVobjectPtr entry = EntryOf(info)) {
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
    for (const std::string& name : DriveNames()) {
        if (LVobjectPtr entry = DriveEntry(name)) batch.push_back(std::move(entry));
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

TVobject* AddLocalComputer() {
    SitePtr site(Zarn_CreateDefaultSite(ComputerName().c_str()));
    if (!site) return nullptr;
    site->dwType = site->dwCurType = HOST_TYPE_LOCAL;
    TVobject* node = AddTopNode(std::move(site), kKindLocalComputer, TVI_LAST);
    if (node == nullptr) return nullptr;
    for (const std::string& name : DriveNames()) AddChildNode(node, name, kKindLocalRoot);
    RefreshNode(node);
    return node;
}

bool IsLocalNode(const TVobject* node) {
    return node != nullptr && IsLocalNodeKind(node->wObjType);
}

std::string LocalNodePath(const TVobject* node) {
    if (node == nullptr || node->wObjType == kKindLocalComputer) return std::string();
    if (node->wObjType == kKindLocalRoot) return node->pszName.c_str();
    return JoinLocalPath(LocalNodePath(node->pTVparent), node->pszName.view());
}

void OpenLocalNodeInPlace(TVobject* node) {
    const std::string path = LocalNodePath(node);
    StartWorker("OpenLocalNodeInPlace", [node, path] {
        std::vector<platform::FileInfo> files;
        if (!platform::ListFolder(path.c_str(), files)) return;
        RunOnUi([&] {
            for (const platform::FileInfo& info : files) {
                if (info.isFolder) AddChildNode(node, info.name, kKindLocalFolder);
            }
            SortChildren(node);
            node->listed = node->children.empty();
            RefreshNode(node);
            ExpandNode(node);
        });
    });
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
