#include "ui/panes/tree_pane.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "config/host_types.h"
#include "config/settings.h"
#include "config/site_store.h"
#include "config/store_key.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/text_compare.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/login/stop.h"
#include "ftp/worker/site_status.h"
#include "platform/registry.h"
#include "platform/system.h"
#include "resources/resource.h"
#include "ui/screen/app.h"
#include "ui/screen/redraw_pause.h"

namespace {

using NodePtr = std::unique_ptr<TVobject, void (*)(TVobject*)>;

HWND gTree = nullptr;
HIMAGELIST gImages = nullptr;
std::vector<NodePtr> gTopNodes;
int gSites = 0;
TreeHandlers gHandlers;

// Image list: closed folder, open folder, site, selected site.
constexpr std::array<const wchar_t*, 4> kIcons = {L"IDI_FOLDER", L"IDI_OPENFOLDER", L"IDI_SITE", L"IDI_SITE_SEL"};
constexpr int kIconSize = 16;  // pixels at 96 dpi

HTREEITEM InsertItem(TVobject* node, HTREEITEM parent, HTREEITEM after) {
    TVINSERTSTRUCTW insert{};
    insert.hParent = parent;
    insert.hInsertAfter = after;
    // The control asks for text, images and button when it shows the item.
    insert.item.mask = TVIF_TEXT | TVIF_PARAM | TVIF_IMAGE | TVIF_SELECTEDIMAGE | TVIF_CHILDREN;
    insert.item.pszText = LPSTR_TEXTCALLBACKW;
    insert.item.iImage = I_IMAGECALLBACK;
    insert.item.iSelectedImage = I_IMAGECALLBACK;
    insert.item.cChildren = I_CHILDRENCALLBACK;
    insert.item.lParam = reinterpret_cast<LPARAM>(node);
    const auto item =
        reinterpret_cast<HTREEITEM>(SendMessageW(gTree, TVM_INSERTITEMW, 0, reinterpret_cast<LPARAM>(&insert)));
    node->hItem = reinterpret_cast<std::uintptr_t>(item);
    return item;
}

// Inserts the children that have no item yet, in their order among those that have one.
void InsertChildItems(TVobject* parent) {
    HTREEITEM after = TVI_FIRST;
    for (const NodePtr& child : parent->children) {
        if (child->hItem == 0) InsertItem(child.get(), ItemOf(parent), after);
        after = ItemOf(child.get());
    }
}

void RemoveItem(TVobject* node) {
    if (node->hItem != 0 && gTree != nullptr) TreeView_DeleteItem(gTree, ItemOf(node));
    node->hItem = 0;
}

bool IsExpanded(const TVobject* node) {
    return node->hItem != 0 && (TreeView_GetItemState(gTree, ItemOf(node), TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
}

std::string SortName(const TVobject* node) {
    return platform::LocaleLower(node->pszName.view());
}

// The item after which a site's node is inserted to keep the sites sorted below the add-site node.
HTREEITEM SortedPosition(const TVobject* node) {
    const std::string name = SortName(node);
    HTREEITEM after = TVI_FIRST;
    for (HTREEITEM item = TreeView_GetRoot(gTree); item != nullptr; item = TreeView_GetNextSibling(gTree, item)) {
        const TVobject* other = GetTVobjectByItem(item);
        if (other == nullptr || other->wObjType == kKindLocalComputer) break;
        if (other->wObjType == kKindSite && SortName(other) > name) break;
        after = item;
    }
    return after;
}

// Keys that the control would also act on, or beep at, after its parent has handled them: on Backspace it selects the
// parent item whatever the answer to the notification.
bool IsParentsKey(WPARAM key) {
    return key == VK_BACK || key == VK_TAB || key == VK_RETURN;
}

// The control's original procedure. (SetWindowSubclass looks up window properties on every message, which takes longer
// than inserting an item.)
WNDPROC gControlProc = nullptr;

LRESULT CALLBACK TreeProc(HWND tree, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_KEYDOWN:
            if (!IsParentsKey(wParam)) break;
            gHandlers.keyPressed(static_cast<WORD>(wParam));
            return 0;
        case WM_CHAR:
            if (IsParentsKey(wParam)) return 0;
            break;
        default:
            break;
    }
    return CallWindowProcW(gControlProc, tree, message, wParam, lParam);
}

// SetLastSession takes no empty name, so the value is emptied directly.
void ForgetLastSession() {
    gZarn.SESSION.clear();
    auto key = platform::RegistryKey::Open(platform::RegistryRoot::CurrentUser, StoreKeyPath(kDefaultsKey));
    if (!key.IsOpen()) return;
    key = platform::RegistryKey::Create(platform::RegistryRoot::CurrentUser, StoreKeyPath(kDefaultsKey), nullptr);
    key.WriteText("SESSION", "");
}

void LeaveSite(TVobject* node) {
    Site* site = node->pSite;
    if (node->wObjType != kKindSite || site == nullptr) return;
    if (site->bConnected != 0) Zarn_IdmDisconnect(site);
    --gSites;
    DbgVsprintf("TV_DeleteNode", "%d sites are left", gSites);
    if (gZarn.SESSION == site->pszSessionName.view()) ForgetLastSession();
}

bool HoldsNode(const TVobject& top, const TVobject* node) {
    if (&top == node) return true;
    return std::any_of(top.children.begin(), top.children.end(),
                       [node](const auto& child) { return HoldsNode(*child, node); });
}

}  // namespace

void SetTreeHandlers(const TreeHandlers& handlers) {
    gHandlers = handlers;
}

bool CreateTreePane(HWND parent) {
    constexpr char kFuncName[] = "CreateTreePane";
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_TABSTOP | TVS_HASBUTTONS | TVS_HASLINES |
                        TVS_LINESATROOT | TVS_EDITLABELS | TVS_SHOWSELALWAYS;
    gTree = CreateWindowExW(WS_EX_CLIENTEDGE, WC_TREEVIEWW, L"", style, 0, 0, 0, 0, parent,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_TREE_PANE)), gApp.instance, nullptr);
    if (gTree == nullptr) {
        DbgVsprintf(kFuncName, "CreateWindow of TreeView failed!");
        return false;
    }
    TreeView_SetUnicodeFormat(gTree, TRUE);
    SendMessageW(gTree, TVM_SETEXTENDEDSTYLE, TVS_EX_DOUBLEBUFFER, TVS_EX_DOUBLEBUFFER);
    gControlProc =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrW(gTree, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(TreeProc)));
    if (!InitTreeViewImageLists(gApp.dpi)) {
        DbgVsprintf(kFuncName, "InitTreeViewImageLists failed!");
        DestroyWindow(gTree);
        gTree = nullptr;
        return false;
    }
    return true;
}

void DestroyTreePane() {
    if (gTree != nullptr) {
        SendMessageW(gTree, WM_SETREDRAW, FALSE, 0);
        HWND tree = gTree;
        gTree = nullptr;
        DestroyWindow(tree);
    }
    gHandlers.deletingNode(nullptr);
    gTopNodes.clear();
    if (gImages != nullptr) ImageList_Destroy(gImages);
    gImages = nullptr;
}

HWND TreeWindow() {
    return gTree;
}

bool InitTreeViewImageLists(UINT dpi) {
    const int size = MulDiv(kIconSize, static_cast<int>(dpi), 96);
    HIMAGELIST images = ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, static_cast<int>(kIcons.size()), 0);
    if (images == nullptr) return false;
    for (const wchar_t* name : kIcons) {
        HICON icon = static_cast<HICON>(LoadImageW(gApp.instance, name, IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
        if (icon == nullptr) continue;
        ImageList_AddIcon(images, icon);
        DestroyIcon(icon);
    }
    if (ImageList_GetImageCount(images) < static_cast<int>(kIcons.size())) {
        ImageList_Destroy(images);
        return false;
    }
    TreeView_SetImageList(gTree, images, TVSIL_NORMAL);
    if (gImages != nullptr) ImageList_Destroy(gImages);
    gImages = images;
    return true;
}

TVobject* FillTreePane(const char* lastSession) {
    TVobject* last = nullptr;
    TV_AddSite(SitePtr(Zarn_CreateDefaultSite(nullptr)), TVI_FIRST);
    for (SitePtr& site : LoadSites()) {
        // The local computer uses a Site record but is not a site.
        if (site->dwType == HOST_TYPE_LOCAL) continue;
        TVobject* node = TV_AddSite(std::move(site), TVI_SORT);
        if (node != nullptr && lastSession != nullptr && node->pszName.view() == lastSession) last = node;
    }
    return last;
}

TVobject* AddTopNode(SitePtr site, std::uint32_t kind, HTREEITEM position) {
    if (!site) return nullptr;
    NodePtr node(AllocateTVobject(site->pszSessionName.view(), kind), Zarn_FreeTVobject);
    if (!node) return nullptr;
    node->pSite = site.release();
    const HTREEITEM after = position == TVI_SORT ? SortedPosition(node.get()) : position;
    if (InsertItem(node.get(), TVI_ROOT, after) == nullptr) return nullptr;
    gTopNodes.push_back(std::move(node));
    return gTopNodes.back().get();
}

TVobject* TV_AddSite(SitePtr site, HTREEITEM position) {
    if (!site) return nullptr;
    const bool addsSites = site->pszSessionName.view() == CatalogueText(MSG_CREATE_NEW_SITE);
    TVobject* node = AddTopNode(std::move(site), addsSites ? kKindAddSite : kKindSite, position);
    if (node != nullptr && !addsSites) ++gSites;
    return node;
}

TVobject* TV_AddItem(TVobject* parent, std::string_view name, std::uint32_t kind, NameCheck check) {
    constexpr char kFuncName[] = "TV_AddItem";
    if (parent == nullptr) return nullptr;
    if (check == NameCheck::Unique && TV_FindChild(parent, name) != nullptr) {
        DbgVsprintf(kFuncName, "ERROR: Item Already exists in Tree. Returning FALSE");
        return nullptr;
    }
    TVobject* child = AddChildNode(parent, name, kind);
    if (child == nullptr) return nullptr;
    RefreshNode(parent);
    return child;
}

void TV_SetChildren(TVobject* node, int children) {
    if (node == nullptr || node->hItem == 0) return;
    TVITEMW item{};
    item.mask = TVIF_HANDLE | TVIF_CHILDREN;
    item.hItem = ItemOf(node);
    item.cChildren = children;
    if (!SendMessageW(gTree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item))) {
        DbgVsprintf("TV_SetChildren", "Failed to Update Kids Button (%s)", node->pszName.c_str());
    }
}

void TV_DeleteChildren(TVobject* node) {
    if (node == nullptr || node->children.empty()) return;
    gHandlers.deletingChildren(node);
    {
        const RedrawPause pause(gTree);
        if (node->hItem != 0) TreeView_Expand(gTree, ItemOf(node), TVE_COLLAPSE | TVE_COLLAPSERESET);
        for (auto child = node->children.rbegin(); child != node->children.rend(); ++child) RemoveItem(child->get());
    }
    node->children.clear();
    node->nChildren = 0;
    TV_SetChildren(node, I_CHILDRENCALLBACK);
    // Otherwise the control would open the item again without asking for its children.
    if (node->hItem != 0) TreeView_SetItemState(gTree, ItemOf(node), 0, TVIS_EXPANDEDONCE);
}

void TV_DeleteNode(TVobject* node) {
    if (node == nullptr) return;
    TVobject* parent = node->pTVparent;
    LeaveSite(node);
    TV_DeleteChildren(node);
    gHandlers.deletingNode(node);
    RemoveItem(node);
    if (parent != nullptr) {
        RemoveChildNode(parent, node);
        if (parent->nChildren == 0) TV_SetChildren(parent, 0);
        return;
    }
    const auto found =
        std::find_if(gTopNodes.begin(), gTopNodes.end(), [node](const NodePtr& top) { return top.get() == node; });
    if (found != gTopNodes.end()) gTopNodes.erase(found);
}

TVobject* GetTVobjectByItem(HTREEITEM item) {
    if (gTree == nullptr) return nullptr;
    if (item == nullptr) item = TreeView_GetSelection(gTree);
    if (item == nullptr) return nullptr;
    TVITEMW query{};
    query.mask = TVIF_HANDLE | TVIF_PARAM;
    query.hItem = item;
    if (!SendMessageW(gTree, TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(&query))) return nullptr;
    return reinterpret_cast<TVobject*>(query.lParam);
}

HTREEITEM TV_GetTreeRootItemByName(const char* name) {
    if (name == nullptr) return nullptr;
    for (const NodePtr& node : gTopNodes) {
        if (node->pszName.view() == name) return ItemOf(node.get());
    }
    return nullptr;
}

bool InTreeView(const char* name) {
    return TV_GetTreeRootItemByName(name) != nullptr;
}

bool TV_GetItemText(HTREEITEM item, char (&text)[260]) {
    const TVobject* node = GetTVobjectByItem(item);
    std::snprintf(text, sizeof(text), "%s", node != nullptr ? node->pszName.c_str() : "");
    return node != nullptr;
}

HTREEITEM ItemOf(const TVobject* node) {
    return reinterpret_cast<HTREEITEM>(node->hItem);
}

TreeHit TreeHitTest(POINT screen, UINT parts) {
    TVHITTESTINFO hit{};
    hit.pt = screen;
    ScreenToClient(gTree, &hit.pt);
    const HTREEITEM item = TreeView_HitTest(gTree, &hit);
    if (item == nullptr || (hit.flags & parts) == 0) return {};
    return {item, GetTVobjectByItem(item)};
}

TVobject* SelectedNode() {
    return GetTVobjectByItem(nullptr);
}

TVobject* NodeOfSite(const Site* site) {
    for (const NodePtr& node : gTopNodes) {
        if (site != nullptr && node->pSite == site) return node.get();
    }
    return nullptr;
}

bool NodeHasButton(const TVobject& node) {
    return node.nChildren != 0 || (IsLocalFolderKind(node.wObjType) && !node.listed);
}

// A root node's name is not part of its children's paths: a directory such as /home/u becomes two levels below the
// root "/".
TVobject* Tv_AddInitDir(TVobject* siteNode, std::string_view directory) {
    if (siteNode == nullptr || directory.empty()) return nullptr;
    const char separator = NodeSeparator(siteNode);
    const bool absolute = directory.front() == separator;
    const std::string_view rootName = absolute ? directory.substr(0, 1) : directory;
    TVobject* node = TV_FindChild(siteNode, rootName);
    if (node == nullptr) node = TV_AddItem(siteNode, rootName, kKindSiteRoot, NameCheck::None);
    for (std::size_t start = 1; absolute && node != nullptr && start < directory.size();) {
        const std::size_t end = std::min(directory.find(separator, start), directory.size());
        const std::string_view level = directory.substr(start, end - start);
        start = end + 1;
        if (level.empty()) continue;
        TVobject* child = TV_FindChild(node, level);
        node = child != nullptr ? child : TV_AddItem(node, level, kKindFolder, NameCheck::None);
    }
    return node;
}

void SortChildren(TVobject* folder) {
    using Child = std::unique_ptr<TVobject, void (*)(TVobject*)>;
    std::vector<std::pair<std::string, Child>> named;
    named.reserve(folder->children.size());
    for (Child& child : folder->children) {
        const std::string_view name = child->pszName.view();
        const bool ascii = std::none_of(name.begin(), name.end(), [](char c) { return (c & 0x80) != 0; });
        named.emplace_back(ascii ? AsciiLower(name) : platform::LocaleLower(name), std::move(child));
    }
    std::stable_sort(named.begin(), named.end(), [](const auto& a, const auto& b) { return a.first < b.first; });
    folder->children.clear();
    for (auto& [key, child] : named) folder->children.push_back(std::move(child));
}

bool IsNodeInTree(const TVobject* node) {
    return std::any_of(gTopNodes.begin(), gTopNodes.end(), [node](const auto& top) { return HoldsNode(*top, node); });
}

bool IsNodeBelow(const TVobject* node, const TVobject* ancestor) {
    while (node != nullptr && node != ancestor) node = node->pTVparent;
    return node != nullptr;
}

void CollapseNode(TVobject* node) {
    if (node != nullptr && node->hItem != 0) TreeView_Expand(gTree, ItemOf(node), TVE_COLLAPSE);
}

void CollapseAndReset(TVobject* node) {
    CollapseNode(node);
    TV_DeleteChildren(node);
}

void TV_InsertChildren(TVobject* node) {
    if (node == nullptr || node->hItem == 0) return;
    const RedrawPause pause(gTree);
    InsertChildItems(node);
}

void ExpandNode(TVobject* node) {
    if (node == nullptr || node->hItem == 0 || node->children.empty()) return;
    TV_InsertChildren(node);
    TreeView_Expand(gTree, ItemOf(node), TVE_EXPAND);
}

void RefreshNode(TVobject* node) {
    if (node == nullptr || node->hItem == 0) return;
    TVITEMW item{};
    item.mask = TVIF_HANDLE | TVIF_TEXT | TVIF_CHILDREN;
    item.hItem = ItemOf(node);
    item.pszText = LPSTR_TEXTCALLBACKW;
    item.cChildren = I_CHILDRENCALLBACK;
    if (!SendMessageW(gTree, TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&item))) {
        DbgVsprintf("RefreshNode", "Failed to Update Kids Button (%s)", node->pszName.c_str());
    }
    if (IsExpanded(node)) TV_InsertChildren(node);
}

void SetTvTitleText(const Site* site) {
    if (gApp.treeTitle == nullptr) return;
    std::string title;
    if (site != nullptr) {
        title = site->pszSessionName.c_str();
        const SiteStatus status = StatusOf(*site);
        if (status.connected && site->pSock != nullptr) title += " :: " + status.peer;
    }
    if (GetText(gApp.treeTitle) != title) SetText(gApp.treeTitle, title);
}

void ForEachSite(void (*visit)(Site* site, void* context), void* context) {
    for (const NodePtr& node : gTopNodes) {
        if (node->wObjType == kKindSite && node->pSite != nullptr) visit(node->pSite, context);
    }
}
