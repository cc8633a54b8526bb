#include "ui/drops.h"

#include <commctrl.h>

#include <string_view>
#include <unordered_map>
#include <utility>

#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/session_state.h"
#include "transfer/progress_dialog.h"
#include "ui/app.h"
#include "ui/command_context.h"
#include "ui/list_pane.h"
#include "ui/local_computer.h"
#include "ui/main_window.h"
#include "ui/status_bar.h"
#include "ui/tree_pane.h"
#include "ui/ui_calls.h"
#include "ui/wide_text.h"

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
    gDrop = Drop();
    // Commands act on the selected node's site again.
    if (const TVobject* node = SelectedNode()) gSession.activeSite = TV_GetFtpSite(node);
    ShowStatusText("");
    RefreshWindowState();
}

bool StartDrop(Site* site, TransferStart start, Drop drop) {
    gSession.activeSite = site;
    gDrop = std::move(drop);
    SetPartOneSBText(MSG_TRANSFERING_FILES, nullptr);
    if (OpenTransferDialog(gApp.mainWindow, start, OnDropDone)) return true;
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

// The entry joins the list; one of the same name leaves it.
void LV_AddTransferItem(LVobjectPtr entry) {
    TVobject* folder = ListedFolder();
    if (!entry || folder == nullptr || IsLocalNode(folder)) return;
    if (!gDrop.knowsListed) LearnListedNames();
    const std::string name(EntryName(*entry));
    entry->node = folder;
    if (const auto known = gDrop.listed.find(name); known != gDrop.listed.end()) {
        const int index = IndexOfEntry(known->second);
        // A folder that was there already is the same one.
        if (IsFolderEntry(*entry) && index >= 0) return;
        LV_DeleteItem(index);
    }
    if (IsFolderEntry(*entry)) {
        TVobject* node = TV_FindChild(folder, name);
        if (node == nullptr) node = TV_AddItem(folder, name, entry->type, false);
        if (node != nullptr) entry->node = node;
    }
    gDrop.listed[name] = entry.get();
    LV_AddItem(std::move(entry));
}

std::vector<std::string> NamesIn(HDROP drop) {
    std::vector<std::string> names;
    const UINT count = DragQueryFileW(drop, 0xFFFFFFFFu, nullptr, 0);
    for (UINT i = 0; i < count; ++i) {
        std::wstring name(DragQueryFileW(drop, i, nullptr, 0), L'\0');
        if (name.empty()) continue;
        DragQueryFileW(drop, i, name.data(), static_cast<UINT>(name.size() + 1));
        names.push_back(Narrow(name.c_str()));
    }
    return names;
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
    return StartDrop(site, TransferStart::ListSelection, std::move(drop));
}

bool SendInto(Site* site, std::vector<std::string> files, const std::string& remoteFolder) {
    if (site == nullptr || site->bConnected == 0) {
        TellNotConnected();
        return false;
    }
    if (files.empty()) return false;
    Drop drop;
    drop.files = std::move(files);
    drop.target = remoteFolder;
    return StartDrop(site, TransferStart::DropFiles, std::move(drop));
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
    std::vector<std::string> files = NamesIn(drop);
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
    const TVobject* listed = ListedFolder();
    const bool showsRemote = listed != nullptr && !IsLocalNode(listed);
    Site* site = showsRemote ? TV_GetFtpSite(listed) : SelectedSite();
    SendInto(site, std::move(files), showsRemote ? TV_GetPath(listed).c_str() : "");
}

void FillDropView(TransferView& view) {
    view.droppedFiles = [] { return RunOnUi([] { return gDrop.files; }); };
    view.dropTarget = [] { return RunOnUi([] { return gDrop.target; }); };
    view.addListedEntry = [](LVobjectPtr entry) { RunOnUi([&] { LV_AddTransferItem(std::move(entry)); }); };
}
