// The list: entries of the folder selected in the tree, as a virtual list view. The entries stand in a vector that the
// pane owns; the control asks for what it shows. Columns: list_columns.h. Order: list_sort.h.
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
// The pane owns the entries from here on. The first ones show at once, later ones within a moment or with
// LV_EntriesComplete; the folder they belong to is `folder`.
void LV_AddEntries(TVobject* folder, std::vector<LVobjectPtr> entries);
// The last of them was added: what depends on all of them is settled.
void LV_EntriesComplete();
// Adds one entry; returns its index, or -1 (and frees it).
int LV_AddItem(LVobjectPtr entry);
// Another entry takes the place of one, which is freed; selection and focus stay.
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
// Selected, focused and scrolled into view; the others are not selected any more.
void SelectOnly(int index);
// The view of the list, and in the details view its layout. Other windows that show which view is on are the caller's
// to refresh.
void LV_ChangeView(UiStyle style, std::uint32_t columns);
// Sorts by a column number of the shown layout, as CompareEntries takes it; selection and focus stay with their
// entries.
void SortEntriesByColumn(int column);
// A click on the heading at a display position.
void SortEntriesByClick(int position);
// The entry's index, -1 when the pane does not hold it (any more).
int IndexOfEntry(const LVobject* entry);
void RedrawEntry(int index);
// What the control is to show at an index: the entry there, except while it measures.
LVobject* ShownEntryAt(int index);
