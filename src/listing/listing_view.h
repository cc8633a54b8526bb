// What a listing asks of the windows; each member does nothing until the windows fill it in. Entries are handed over in
// batches, from the worker.
#pragma once

#include <vector>

#include "listing/directory_entry.h"
#include "listing/tree_node.h"

struct ListingView {
    // A listing of `folder` begins: empty the list pane, collapse and (with `resetChildren`) forget the children.
    void (*begin)(TVobject* folder, bool resetChildren) = [](TVobject*, bool) {};
    // Entries in listing order; the pane owns them from here on. Folders get their tree nodes here.
    // NOLINTNEXTLINE(performance-unnecessary-value-param): the one that fills it in keeps them.
    void (*addEntries)(TVobject* folder, std::vector<LVobjectPtr> entries) = [](TVobject*, std::vector<LVobjectPtr>) {};
    // All shown, or stopped: refresh the node, select the first item, status bar, toolbar, focus.
    void (*end)(TVobject* folder, int result) = [](TVobject*, int) {};
    // What a folder's count has found so far, at most 20 times a second and at its end; `dialog` is what the count was
    // started with.
    void (*showCountedBytes)(void* dialog, std::uint64_t bytes) = [](void*, std::uint64_t) {};
    void (*showCountedEntries)(void* dialog, std::uint32_t files, std::uint32_t folders) = [](void*, std::uint32_t,
                                                                                              std::uint32_t) {};
};
extern ListingView gListingView;

// Entries in one batch: large enough that the hand-over costs nothing, small enough that the window stays responsive.
inline constexpr std::size_t kListingBatch = 2000;
