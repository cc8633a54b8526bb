// The list: a virtual list view of the entries of one folder. The pane owns the entries in a vector; the control asks
// for what it shows. Columns are list_columns.h, the order is list_sort.h.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <vector>

#include "config/settings.h"
#include "listing/directory_entry.h"
#include "listing/tree_node.h"

bool CreateListPane(HWND parent);
void DestroyListPane();
HWND ListWindow();

// Frees every entry and empties the control.
void InitListView();
// Takes ownership of entries of `folder`. The first ones show at once, later ones shortly after, or with
// LV_EntriesComplete.
void LV_AddEntries(TVobject* folder, std::vector<LVobjectPtr> entries);
// All entries have been added: shows their number and arranges them.
void LV_EntriesComplete();
// Adds one entry and returns its index; -1 if there is no list, and the entry is freed.
int LV_AddItem(LVobjectPtr entry);
// Replaces and frees the entry at `index`; selection and focus stay.
void LV_ReplaceItem(int index, LVobjectPtr entry);
void LV_DeleteItem(int index);
int EntryCount();
LVobject* EntryAt(int index);
TVobject* ListedFolder();
std::vector<const LVobject*> SelectedEntries();
int FirstSelected();
int SelectedCount();
// True when a remote or local file is among the selected entries; stops at the first one.
bool AnyFileSelected();
// Sum of the selected entries' sizes.
std::uint64_t SelectedBytes();
void SelectAllEntries();
// Selects one entry, and no other, gives it the focus and scrolls it into view.
void SelectOnly(int index);
// The view of the list, and in the details view its layout. Other windows that show which view is on are the caller's
// to refresh.
void LV_ChangeView(UiStyle style, std::uint32_t columns);
// Sorts by a column number of the present layout, as in CompareEntries; selection and focus stay with their entries.
void SortEntriesByColumn(int column);
// A click on the heading at a display position.
void SortEntriesByClick(int position);
// The entry's index; -1 when the list does not have it, or no longer has it.
int IndexOfEntry(const LVobject* entry);
void RedrawEntry(int index);
// The entry that the control shows at an index; while it measures texts, one of a small sample.
LVobject* ShownEntryAt(int index);
