#include "ui/start/views_listing.h"

#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>
#include <vector>

#include "foundation/wide_text_window.h"
#include "ftp/worker/session_view.h"
#include "listing/listing_view.h"
#include "listing/local_listing.h"
#include "ui/browse/tree_selection.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/refresh.h"
#include "ui/screen/ui_calls.h"

namespace {

// The folder's nodes from an earlier listing, by name; empty when the listing starts from scratch.
std::unordered_map<std::string_view, TVobject*> gKnownChildren;

TVobject* ChildFor(TVobject* folder, const LVobject& entry) {
    const std::string_view name = entry.name.view();
    if (const auto known = gKnownChildren.find(name); known != gKnownChildren.end()) return known->second;
    return AddChildNode(folder, name, entry.type);
}

void ShowListTitle(const TVobject* folder) {
    const std::string path = IsLocalNode(folder) ? LocalNodePath(folder) : TV_GetPath(folder).c_str();
    if (gApp.listTitle != nullptr) SetText(gApp.listTitle, ShownName(path));
}

void BeginListing(TVobject* folder, bool resetChildren) {
    InitListView();
    ShowListTitle(folder);
    gKnownChildren.clear();
    if (resetChildren) {
        CollapseAndReset(folder);
        return;
    }
    CollapseNode(folder);
    for (const auto& child : folder->children) gKnownChildren.emplace(child->pszName.view(), child.get());
}

void AddEntries(TVobject* folder, std::vector<LVobjectPtr> entries) {
    for (const LVobjectPtr& entry : entries) {
        entry->node = folder;
        if (!IsFolderKind(entry->type)) continue;
        if (TVobject* child = ChildFor(folder, *entry)) entry->node = child;
    }
    LV_AddEntries(folder, std::move(entries));
}

void EndListing(TVobject* folder) {
    gKnownChildren.clear();
    folder->listed = true;
    if (folder->wObjType == kKindSiteRoot) AddRememberedDirectories(folder->pTVparent);
    SortChildren(folder);
    RefreshNode(folder);
    if (ListedFolder() == nullptr) LV_AddEntries(folder, {});  // an empty folder is shown as well
    if (TakeNodeToOpen() == folder) ExpandNode(folder);
    LV_EntriesComplete();
    SelectOnly(0);
    RefreshWindowState();
    SetFocus(TreeWindow());
}

}  // namespace

void InstallListingView() {
    gListingView.begin = [](TVobject* folder, bool resetChildren) {
        RunOnUi([&] { BeginListing(folder, resetChildren); });
    };
    gListingView.addEntries = [](TVobject* folder, std::vector<LVobjectPtr> entries) {
        RunOnUi([&] { AddEntries(folder, std::move(entries)); });
    };
    gListingView.end = [](TVobject* folder, int) { RunOnUi([&] { EndListing(folder); }); };
    gSessionView.showFirstDirectory = [](Site* site, const char* directory) {
        RunOnUi([&] { ShowFirstDirectory(site, directory); });
    };
    gSessionView.showDisconnected = [](Site* site) { RunOnUi([&] { ShowDisconnected(site); }); };
}
