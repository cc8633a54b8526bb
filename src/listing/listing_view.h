// What a listing asks of the windows. Entries are handed over in batches, from the worker.
#pragma once

#include <vector>

#include "listing/directory_entry.h"
#include "listing/tree_node.h"

struct ListingView {
    // A listing of `folder` begins: empty the list pane, collapse and (with `resetChildren`) forget the children.
    void (*begin)(TVobject* folder, bool resetChildren) = nullptr;
    // Entries in listing order; the pane owns them from here on. Folders get their tree nodes here.
    void (*addEntries)(TVobject* folder, std::vector<LVobjectPtr> entries) = nullptr;
    // All shown, or stopped: refresh the node, select the first item, status bar, toolbar, focus.
    void (*end)(TVobject* folder, int result) = nullptr;
};
extern ListingView gListingView;

// Entries in one batch: large enough that the hand-over costs nothing, small enough that the window answers meanwhile.
inline constexpr std::size_t kListingBatch = 2000;
