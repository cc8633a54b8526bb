// The tree control and its nodes: adding, deleting, opening and finding them. Children enter the control when their
// parent opens. The pane decides nothing: what notifications and selections do is in browse/.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <string_view>

#include "listing/tree_node.h"

// What the pane does not decide itself.
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
// Loads the images for a resolution. False when they cannot be loaded.
bool InitTreeViewImageLists(UINT dpi);

// Adds the add-site node and every site of the store (sorted). Returns the node of the site named by `lastSession`, or
// null.
TVobject* FillTreePane(const char* lastSession);
TVobject* TV_AddSite(SitePtr site, HTREEITEM position);
// Whether a child of the same name is looked for; without the check the caller knows that there is none.
enum class NameCheck { Unique, None };
// Adds a child below `parent`; null when the check finds one of that name.
TVobject* TV_AddItem(TVobject* parent, std::string_view name, std::uint32_t kind, NameCheck check);
void TV_SetChildren(TVobject* node, int children);
void TV_DeleteChildren(TVobject* node);
void TV_DeleteNode(TVobject* node);

// The node of an item; null item: of the selected one.
TVobject* GetTVobjectByItem(HTREEITEM item);
HTREEITEM TV_GetTreeRootItemByName(const char* name);
bool InTreeView(const char* name);
bool TV_GetItemText(HTREEITEM item, char (&text)[260]);
// The control's item of a node; null when it has none.
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
// Closes the node and deletes its children.
void CollapseAndReset(TVobject* node);
void CollapseNode(TVobject* node);
void ExpandNode(TVobject* node);
// Gives the control items for the node's children.
void TV_InsertChildren(TVobject* node);
// Updates the node's name and button, and adds items for children that a listing added to an open node.
void RefreshNode(TVobject* node);
// True when the node is below `ancestor`, or is it.
bool IsNodeBelow(const TVobject* node, const TVobject* ancestor);
// The node is still in the tree. Compares pointers only: a freed node may be asked about.
bool IsNodeInTree(const TVobject* node);
// A local folder that was never listed has a button as well, because it may have children.
bool NodeHasButton(const TVobject& node);
// Sorts the children by name.
void SortChildren(TVobject* folder);
// Writes site and peer into the bar above the tree; null: clears it.
void SetTvTitleText(const Site* site);

void ForEachSite(void (*visit)(Site* site, void* context), void* context);
