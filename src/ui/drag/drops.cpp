#include "ui/drag/drops.h"

#include <commctrl.h>

#include <utility>

#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/worker/session_state.h"
#include "listing/local_listing.h"
#include "transfer/drop_actions_window.h"
#include "transfer/progress_dialog.h"
#include "transfer/selection_transfer.h"
#include "ui/bars/status_bar.h"
#include "ui/browse/command_context.h"
#include "ui/browse/uploaded_entries.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/refresh.h"
#include "ui/screen/ui_calls.h"

namespace {

void OnDropDone() {
    EndUploadedEntries();
    // Commands act on the selected node's site again.
    if (const TVobject* node = SelectedNode()) SetActiveSite(TV_GetFtpSite(node));
    ShowStatusText("");
    RefreshWindowState();
}

bool RefusedAsBusy() {
    if (!CommandsRefused()) return false;
    DoPrintIdArgs(MSG_BUSY_WITH_REMOTE_OPERATION);
    return true;
}

// What follows from a start that succeeded or failed.
bool ShowStarted(bool started) {
    if (started) {
        SetPartOneSBText(MSG_TRANSFERING_FILES, nullptr);
    } else {
        OnDropDone();
    }
    return started;
}

// Where files go that were not dropped on a node: the site and the folder that the list shows.
Site* ShownSite(std::string& folder) {
    const TVobject* listed = ListedFolder();
    if (listed == nullptr || IsLocalNode(listed)) return SelectedSite();
    folder = TV_GetPath(listed).c_str();
    return TV_GetFtpSite(listed);
}

bool SendIntoShownFolder(Site*, std::vector<std::string> files) {
    std::string folder;
    Site* site = ShownSite(folder);
    return SendInto(site, std::move(files), folder);
}

const TVobject* NodeUnderPointer() {
    POINT point{};
    GetCursorPos(&point);
    return WindowFromPoint(point) == TreeWindow() ? TreeHitTest(point, kHitLabel).node : nullptr;
}

}  // namespace

void TellNotConnected() {
    ShowMessageBox(CatalogueText(MSG_NOT_CONNECTED_FILES_IGNORED).c_str(), nullptr, BoxButtons::Ok,
                   BoxIcon::Exclamation);
}

bool ReceiveInto(const std::string& localFolder) {
    const TVobject* listed = ListedFolder();
    Site* site = listed != nullptr && !IsLocalNode(listed) ? TV_GetFtpSite(listed) : nullptr;
    if (site == nullptr || site->bConnected == 0) {
        TellNotConnected();
        return false;
    }
    SetActiveSite(site);
    if (RefusedAsBusy()) return false;
    BeginUploadedEntries();
    TransferJob job;
    job.site = site;
    job.start = TransferStart::ListSelection;
    job.remoteItems = ItemsOf(SelectedEntries());
    job.targetFolder = localFolder;
    return ShowStarted(OpenTransferDialog(gApp.mainWindow, std::move(job), OnDropDone));
}

bool SendInto(Site* site, std::vector<std::string> files, const std::string& remoteFolder) {
    if (files.empty() || RefusedAsBusy()) return false;
    BeginUploadedEntries();
    TransferJob job;
    job.localPaths = std::move(files);
    job.targetFolder = remoteFolder;
    return ShowStarted(drop_files_fx(site, gApp.mainWindow, std::move(job), OnDropDone));
}

DropPlace PlaceOf(const TVobject* node) {
    if (node == nullptr) return {};
    const Site* site = IsLocalNode(node) || node->wObjType == kKindAddSite ? nullptr : TV_GetFtpSite(node);
    return {node->wObjType, site != nullptr && site->bConnected != 0};
}

bool DropOnNode(const TVobject* node, DropEffect effect, std::vector<std::string> localFiles) {
    switch (effect) {
        case DropEffect::Receive:
            return ReceiveInto(LocalNodePath(node));
        case DropEffect::Send: {
            const bool isSite = node->wObjType == kKindSite;
            return SendInto(TV_GetFtpSite(node), std::move(localFiles), isSite ? "" : TV_GetPath(node).c_str());
        }
        case DropEffect::NotConnected:
            TellNotConnected();
            return false;
        default:
            return false;
    }
}

void OnShellDrop(HDROP drop) {
    std::vector<std::string> files = FilesOfDrop(drop);
    DragFinish(drop);
    DbgVsprintf("OnShellDrop", "%d files", static_cast<int>(files.size()));
    if (files.empty() || CommandsRefused()) return;
    const TVobject* node = NodeUnderPointer();
    const DragLoad load{true, false, static_cast<int>(files.size())};
    const DropEffect effect = DropEffectFor(load, PlaceOf(node));
    if (effect != DropEffect::None) {
        DropOnNode(node, effect, std::move(files));
        return;
    }
    SendIntoShownFolder(nullptr, std::move(files));
}

bool PasteFiles() {
    std::string folder;
    return paste_files_fx(ShownSite(folder), gApp.mainWindow, SendIntoShownFolder);
}

bool ClipboardHoldsFiles() {
    return IsClipboardFormatAvailable(CF_HDROP) != 0;
}

void FillDropView(TransferView& view) {
    view.addListedEntry = [](const Site* site, const std::string& folder, LVobjectPtr entry) {
        RunOnUi([&] { LV_AddTransferItem(site, folder, std::move(entry)); });
    };
}
