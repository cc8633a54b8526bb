#include "ui/drag/drops.h"

#include <commctrl.h>

#include <string_view>
#include <unordered_map>
#include <utility>

#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/worker/session_state.h"
#include "transfer/drop_actions_window.h"
#include "transfer/progress_dialog.h"
#include "ui/bars/status_bar.h"
#include "ui/browse/command_context.h"
#include "ui/browse/local_computer.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/refresh.h"
#include "ui/screen/ui_calls.h"
#include "ui/screen/wide_text.h"

namespace {

// Of the transfer that runs. The window's thread only.
struct Drop {
    std::vector<std::string> files;
    std::string target;
    // Entries of the list by name, made when the first one is to be added: a file that is sent again replaces its
    // entry.
    std::unordered_map<std::string, const LVobject*> listed;
    bool knowsListed = false;
};
Drop gDrop;

void OnDropDone() {
    if (gDrop.knowsListed && ListedFolder() != nullptr) LV_EntriesComplete();
    gDrop = Drop();
    // Commands act on the selected node's site again.
    if (const TVobject* node = SelectedNode()) gSession.activeSite = TV_GetFtpSite(node);
    ShowStatusText("");
    RefreshWindowState();
}

// `start` is called when all is in place for the transfer.
template <class Start>
bool StartDrop(Drop drop, Start&& start) {
    if (CommandsRefused()) {
        DoPrintIdArgs(MSG_BUSY_WITH_REMOTE_OPERATION);
        return false;
    }
    gDrop = std::move(drop);
    if (start()) {
        SetPartOneSBText(MSG_TRANSFERING_FILES, nullptr);
        return true;
    }
    OnDropDone();
    return false;
}

bool IsFolderEntry(const LVobject& entry) {
    return entry.type == kKindFolder;
}

void LearnListedNames() {
    gDrop.knowsListed = true;
    for (int i = 0; i < EntryCount(); ++i) {
        const LVobject* entry = EntryAt(i);
        gDrop.listed.emplace(std::string(EntryName(*entry)), entry);
    }
}

// True when the list shows the folder that the files are sent to.
bool ListShowsTarget() {
    const TVobject* folder = ListedFolder();
    const Site* site = gSession.activeSite;
    if (folder == nullptr || IsLocalNode(folder) || site == nullptr || TV_GetFtpSite(folder) != site) return false;
    // Without a target the transfers have compared with the site's current folder.
    return gDrop.target.empty() || TV_GetPath(folder).view() == gDrop.target;
}

// The entry joins the list, or takes the place of the one of the same name.
void LV_AddTransferItem(LVobjectPtr entry) {
    TVobject* folder = ListedFolder();
    if (!entry || !ListShowsTarget()) return;
    if (!gDrop.knowsListed) LearnListedNames();
    const std::string name(EntryName(*entry));
    entry->node = folder;
    const LVobject*& known = gDrop.listed[name];
    const int index = known != nullptr ? IndexOfEntry(known) : -1;
    // A folder that was there already is the same one.
    if (IsFolderEntry(*entry) && index >= 0) return;
    known = entry.get();
    if (index >= 0) {
        LV_ReplaceItem(index, std::move(entry));
        return;
    }
    if (IsFolderEntry(*entry)) {
        TVobject* node = TV_FindChild(folder, name);
        if (node == nullptr) node = TV_AddItem(folder, name, entry->type, NameCheck::None);
        if (node != nullptr) entry->node = node;
    }
    // Not one by one: each time the control is told a number of entries it looks at its scroll bars.
    std::vector<LVobjectPtr> entries;
    entries.push_back(std::move(entry));
    LV_AddEntries(folder, std::move(entries));
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
    if (WindowFromPoint(point) != TreeWindow()) return nullptr;
    TVHITTESTINFO hit{};
    hit.pt = point;
    ScreenToClient(TreeWindow(), &hit.pt);
    const HTREEITEM item = TreeView_HitTest(TreeWindow(), &hit);
    return item != nullptr && (hit.flags & TVHT_ONITEM) != 0 ? GetTVobjectByItem(item) : nullptr;
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
    Drop drop;
    drop.target = localFolder;
    gSession.activeSite = site;
    return StartDrop(std::move(drop),
                     [] { return OpenTransferDialog(gApp.mainWindow, TransferStart::ListSelection, OnDropDone); });
}

bool SendInto(Site* site, std::vector<std::string> files, const std::string& remoteFolder) {
    if (files.empty()) return false;
    Drop drop;
    drop.files = std::move(files);
    drop.target = remoteFolder;
    return StartDrop(std::move(drop), [site] { return drop_files_fx(site, gApp.mainWindow, OnDropDone); });
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
    view.droppedFiles = [] { return RunOnUi([] { return gDrop.files; }); };
    view.dropTarget = [] { return RunOnUi([] { return gDrop.target; }); };
    view.addListedEntry = [](LVobjectPtr entry) { RunOnUi([&] { LV_AddTransferItem(std::move(entry)); }); };
}
