// What selecting a node does: after a short delay the worker changes to its folder and lists it; on failure the
// previous node is selected again. Also double click, Enter, and selections made by the program.
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
// kSelectionTimer fired: acts on the selected node.
void TV_HandleRealSelChange();
// Double click or Enter on a node: connects a site, opens or refreshes a folder.
void TV_HandleDblClick(TVobject* node);
// Re-lists the selected folder on the worker.
void RefreshSelectedFolder();
// Starts listing a node's folder on the worker (remote or local). False when it could not start.
bool StartChangeDir(TVobject* node);
// After a successful log-in: adds the first directory below the site's node and selects it, which lists it.
void ShowFirstDirectory(Site* site, const char* directory);
// Adds the directories that earlier sessions began in below the site's node, however deep they are.
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
