// What the tree control tells its parent: texts and images to show, selections, openings, keys, clicks, label edits.
// What a selection does is tree_selection.h, changing nodes tree_edit.h.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "listing/tree_node.h"

// Before the pane is created: the keys and deletions that it leaves to others are dealt with from here on.
void InstallTreeHandlers();
// WM_NOTIFY of the tree; true when handled, with the answer in `result`.
bool TV_NotifyHandler(NMHDR* header, LRESULT& result);
// Opens the node where that needs neither the selection nor the server: what is known, or a local folder's folders.
void OpenNodeInPlace(TVobject* node);
