// The tree control's notifications: texts and images to show, selections, expanding, keys, clicks, label edits.
// What a selection does is tree_selection.h, changing nodes tree_edit.h.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "listing/tree_node.h"

// Takes over what the tree pane leaves to others: some keys, and what to forget when nodes are deleted. Call it before
// the pane is created.
void InstallTreeHandlers();
// WM_NOTIFY of the tree; true when handled, with the answer in `result`.
bool TV_NotifyHandler(NMHDR* header, LRESULT& result);
// Opens the node where that needs neither the selection nor the server: what is known, or a local folder's folders.
void OpenNodeInPlace(TVobject* node);
