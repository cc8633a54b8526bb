// What happens after the selection of the tree moved: a short wait (750 ms by keyboard, 1 ms by mouse), then the change
// of folder on the worker, and the way back when it failed. Double click and Enter too.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "listing/tree_node.h"

inline constexpr UINT kKeyboardDelay = 750;  // milliseconds
inline constexpr UINT kMouseDelay = 1;

// TVN_SELCHANGING / TVN_SELCHANGED. True refuses the change.
bool TV_OnSelChanging(TVobject* newNode);
void TV_OnSelChanged(TVobject* newNode, bool byMouse);
void CancelSelectionTimer();
// The timer fired.
void TV_HandleRealSelChange();
void TV_HandleDblClick(TVobject* node);
// Re-lists the selected folder on the worker.
void RefreshSelectedFolder();
// Starts listing a node's folder on the worker (remote or local).
bool StartChangeDir(TVobject* node);
// A connect ended well: adds the first directory below the site's node and selects it, which lists it.
void ShowFirstDirectory(Site* site, const char* directory);
// Directories in which the user began sessions stand below their site's root, however deep.
void AddRememberedDirectories(TVobject* siteNode);
// A site was disconnected: empties the list, resets the site's node and selects it.
void ShowDisconnected(Site* site);
// All nodes below `node` are about to be freed.
void ForgetChildren(const TVobject* node);
// `node` is about to be freed, its children are gone; null: every node is.
void ForgetNode(const TVobject* node);
// Selects a node and opens the nodes above it; a folder is listed without the delay for the keyboard.
void SelectNode(TVobject* node);
// A folder that is being listed opens when the listing has ended.
void OpenWhenListed(TVobject* node);
// Hands that folder over and forgets it; null without one.
TVobject* TakeNodeToOpen();
// Selects a node without acting on it; it becomes the current one.
void SelectWithoutListing(TVobject* node);
