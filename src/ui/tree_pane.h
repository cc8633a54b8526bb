// The tree: the add-site node, the saved sites with their remote directories, the local computer. Text, images and
// buttons are answered on demand from the nodes; children enter the control when their parent opens. Decisions about
// what a selection does: tree_selection.h. Renaming: tree_edit.h.
#pragma once

#include <windows.h>
#include <commctrl.h>

#include <string_view>

#include "listing/tree_node.h"

inline constexpr int kTreeChildId = 606;

bool CreateTreePane(HWND parent);
void DestroyTreePane();
HWND TreeWindow();
// Images follow the resolution of the window.
bool InitTreeViewImageLists(UINT dpi);

// Top level: the add-site node, every site of the store (sorted), the local computer. Returns the node of the site named
// by `lastSession`, or null.
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
// The site's node, its root directory node (made on demand from `directory`).
TVobject* NodeOfSite(const Site* site);
void CollapseAndReset(TVobject* node);
void RefreshNode(TVobject* node);
void SetTvTitleText(const Site* site);

// WM_NOTIFY of the tree; true when handled, with the answer in `result`.
bool TV_NotifyHandler(NMHDR* header, LRESULT& result);
void ForEachSite(void (*visit)(Site* site, void* context), void* context);
