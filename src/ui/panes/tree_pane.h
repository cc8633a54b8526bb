// The tree: the add-site node, the saved sites with their remote directories, the local computer. Text, images and
// buttons are answered on demand from the nodes; children enter the control when their parent opens. Decisions about
// what a selection does: tree_selection.h. Renaming: tree_edit.h.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string_view>

#include "listing/tree_node.h"

bool CreateTreePane(HWND parent);
void DestroyTreePane();
HWND TreeWindow();
// Images follow the resolution of the window.
bool InitTreeViewImageLists(UINT dpi);

// Top level: the add-site node, every site of the store (sorted), the local computer. Returns the node of the site
// named by `lastSession`, or null.
TVobject* FillTreePane(const char* lastSession);
TVobject* TV_AddSite(SitePtr site, HTREEITEM position);
// Adds a child below `parent` unless one of that name is there ("ERROR: Item Already exists in Tree. Returning FALSE").
TVobject* TV_AddItem(TVobject* parent, std::string_view name, std::uint32_t kind, bool checkDuplicate);
void TV_SetChildren(TVobject* node, int children);
void TV_DeleteChildren(TVobject* node);
void TV_DeleteNode(TVobject* node);

// Null item: the selected one.
TVobject* GetTVobjectByItem(HTREEITEM item);
HTREEITEM TV_GetTreeRootItemByName(const char* name);
bool InTreeView(const char* name);
bool TV_GetItemText(HTREEITEM item, char (&text)[260]);
TVobject* SelectedNode();
void SelectNode(TVobject* node);
TVobject* NodeOfSite(const Site* site);
// The node of the directory below its site's root, with the levels that are missing. A directory that does not begin
// with the separator is a root of its own.
TVobject* Tv_AddInitDir(TVobject* siteNode, std::string_view directory);
// Adds a top-level node that owns `site`; `position` is TVI_SORT (sites only), TVI_FIRST or TVI_LAST. Null on failure.
TVobject* AddTopNode(SitePtr site, std::uint32_t kind, HTREEITEM position);
// Closes the node; its children go.
void CollapseAndReset(TVobject* node);
void CollapseNode(TVobject* node);
void ExpandNode(TVobject* node);
// The children enter the control.
void TV_InsertChildren(TVobject* node);
// Puts children into the control that a listing added to an open node, and shows the node's name and button anew.
void RefreshNode(TVobject* node);
// The node stands below `ancestor`, or is it.
bool IsNodeBelow(const TVobject* node, const TVobject* ancestor);
bool NodeHasButton(const TVobject& node);
// Opens the node where that needs neither the selection nor the server: what is known, or a local folder's folders.
void OpenNodeInPlace(TVobject* node);
// Children by name, whatever order they came in.
void SortChildren(TVobject* folder);
// A folder that is being listed opens when the listing has ended.
void OpenWhenListed(TVobject* node);
TVobject* TakeNodeToOpen();
void SetTvTitleText(const Site* site);

// A key pressed in the tree; true when it is dealt with.
bool TV_HandleKey(WORD key);
// WM_NOTIFY of the tree; true when handled, with the answer in `result`.
bool TV_NotifyHandler(NMHDR* header, LRESULT& result);
void ForEachSite(void (*visit)(Site* site, void* context), void* context);
