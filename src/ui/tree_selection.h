// What happens after the selection of the tree moved: a short wait (750 ms by keyboard, 1 ms by mouse), then the change
// of folder on the worker, and the way back when it failed. Double click and Enter too.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include "listing/tree_node.h"

inline constexpr UINT_PTR kSelectionTimer = 11;
inline constexpr UINT kKeyboardDelay = 750;  // milliseconds
inline constexpr UINT kMouseDelay = 1;

// TVN_SELCHANGING / TVN_SELCHANGED. True refuses the change.
bool TV_OnSelChanging(TVobject* newNode);
void TV_OnSelChanged(TVobject* newNode, bool byMouse);
void CancelSelectionTimer();
// The timer fired.
bool TV_HandleRealSelChange();
void TV_HandleDblClick(TVobject* node);
// The node last handled; null after it was deleted.
TVobject* CurrentTreeNode();
void SetCurrentTreeNode(TVobject* node);
// Re-lists the selected folder on the worker.
void RefreshSelectedFolder();
// Starts listing a node's folder on the worker (remote or local).
bool StartChangeDir(TVobject* node);
