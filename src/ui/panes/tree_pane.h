// The tree control and its nodes: adding, deleting, opening and finding them. Children enter the control when their
// parent opens. The pane decides nothing: what notifications and selections do is in browse/.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string_view>

#include "listing/tree_node.h"

// What the pane leaves to others to decide.
struct TreeHandlers {
    // Backspace, Tab or Enter: keys that the control itself must not see.
    void (*keyPressed)(WORD key) = [](WORD) {};
    // Called before nodes are freed: all nodes below `node`; `node` itself, whose children are gone already, or every
    // node there is when it is null.
    void (*deletingChildren)(const TVobject* node) = [](const TVobject*) {};
    void (*deletingNode)(const TVobject* node) = [](const TVobject*) {};
};
void SetTreeHandlers(const TreeHandlers& handlers);

bool CreateTreePane(HWND parent);
void DestroyTreePane();
HWND TreeWindow();
// Images follow the resolution of the window.
bool InitTreeViewImageLists(UINT dpi);

// Adds the add-site node and every site of the store (sorted). Returns the node of the site named by `lastSession`, or
// null.
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
// The control's item of a node; null while the node stands in no control.
HTREEITEM ItemOf(const TVobject* node);
// What a point of the screen hits; both null where there is no node.
struct TreeHit {
    HTREEITEM item = nullptr;
    TVobject* node = nullptr;
};
inline constexpr UINT kHitLabel = TVHT_ONITEM;
inline constexpr UINT kHitRow = TVHT_ONITEM | TVHT_ONITEMBUTTON | TVHT_ONITEMINDENT | TVHT_ONITEMRIGHT;
// `parts`: the parts of a row that count, kHitLabel or kHitRow.
TreeHit TreeHitTest(POINT screen, UINT parts);
TVobject* SelectedNode();
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
// A local folder that was never listed may have children: it has a button, which finds out.
bool NodeHasButton(const TVobject& node);
// Children by name, whatever order they came in.
void SortChildren(TVobject* folder);
void SetTvTitleText(const Site* site);

void ForEachSite(void (*visit)(Site* site, void* context), void* context);
