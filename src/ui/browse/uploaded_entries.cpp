#include "ui/browse/uploaded_entries.h"

#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

#include "listing/local_listing.h"
#include "listing/tree_node.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"

namespace {

// The list's entries by name during an upload, collected for the first uploaded one: a file that is sent again replaces
// its entry.
struct ListedNames {
    std::unordered_map<std::string, const LVobject*> entries;
    bool known = false;
};
ListedNames gListedNames;

void LearnListedNames() {
    gListedNames.known = true;
    for (int i = 0; i < EntryCount(); ++i) {
        const LVobject* entry = EntryAt(i);
        gListedNames.entries.emplace(std::string(EntryName(*entry)), entry);
    }
}

// True when the list shows the folder that the files are sent to.
bool ListShows(const Site* site, const std::string& folder) {
    const TVobject* listed = ListedFolder();
    if (listed == nullptr || IsLocalNode(listed) || site == nullptr || TV_GetFtpSite(listed) != site) return false;
    // Without a folder the transfer has compared with the site's current one itself.
    return folder.empty() || TV_GetPath(listed).view() == folder;
}

// A folder's entry points at the folder's own node.
void GiveNode(TVobject* parent, LVobject& entry, const std::string& name) {
    TVobject* node = TV_FindChild(parent, name);
    if (node == nullptr) node = TV_AddItem(parent, name, entry.type, NameCheck::None);
    if (node != nullptr) entry.node = node;
}

}  // namespace

void BeginUploadedEntries() {
    gListedNames = ListedNames();
}

void LV_AddTransferItem(const Site* site, const std::string& targetFolder, LVobjectPtr entry) {
    TVobject* folder = ListedFolder();
    if (!entry || !ListShows(site, targetFolder)) return;
    if (!gListedNames.known) LearnListedNames();
    const std::string name(EntryName(*entry));
    const bool isFolder = entry->type == kKindFolder;
    entry->node = folder;
    const LVobject*& known = gListedNames.entries[name];
    const int index = known != nullptr ? IndexOfEntry(known) : -1;
    // A folder that exists already keeps its entry.
    if (isFolder && index >= 0) return;
    known = entry.get();
    if (index >= 0) {
        LV_ReplaceItem(index, std::move(entry));
        return;
    }
    if (isFolder) GiveNode(folder, *entry, name);
    // LV_AddEntries does not update the scroll bars for each entry.
    std::vector<LVobjectPtr> entries;
    entries.push_back(std::move(entry));
    LV_AddEntries(folder, std::move(entries));
}

void EndUploadedEntries() {
    if (gListedNames.known && ListedFolder() != nullptr) LV_EntriesComplete();
    gListedNames = ListedNames();
}
