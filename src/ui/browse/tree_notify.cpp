#include "ui/browse/tree_notify.h"

#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/worker/session_state.h"
#include "listing/local_listing.h"
#include "ui/browse/local_computer.h"
#include "ui/browse/tree_edit.h"
#include "ui/browse/tree_selection.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/pane_focus.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/display_text.h"
#include "ui/screen/refresh.h"

namespace {

enum Image { kClosedFolder, kOpenFolder, kSite, kSelectedSite };

TVobject* NodeOf(const TVITEMW& item) {
    return reinterpret_cast<TVobject*>(item.lParam);
}

bool IsSiteLike(const TVobject& node) {
    return node.wObjType == kKindAddSite || node.wObjType == kKindSite || node.wObjType == kKindLocalComputer;
}

// Answers from the node and lets the control keep the answer.
void TV_GetDispInfo(TVITEMW& item) {
    const TVobject* node = NodeOf(item);
    if (node == nullptr) {
        DbgVsprintf("TV_GetDispInfo", "ERROR. lpnm->item.lParam was null or Invalid. Returning");
        return;
    }
    if ((item.mask & TVIF_TEXT) != 0) GiveText(Wide(ShownName(node->pszName.view())), item.pszText, item.cchTextMax);
    if ((item.mask & TVIF_IMAGE) != 0) item.iImage = IsSiteLike(*node) ? kSite : kClosedFolder;
    if ((item.mask & TVIF_SELECTEDIMAGE) != 0) item.iSelectedImage = IsSiteLike(*node) ? kSelectedSite : kOpenFolder;
    if ((item.mask & TVIF_CHILDREN) != 0) item.cChildren = NodeHasButton(*node) ? 1 : 0;
    item.mask |= TVIF_DI_SETITEM;
}

void SetBold(HTREEITEM item, bool bold) {
    if (item == nullptr || TreeWindow() == nullptr) return;
    TVITEMW change{};
    change.mask = TVIF_HANDLE | TVIF_STATE;
    change.hItem = item;
    change.stateMask = TVIS_BOLD;
    change.state = bold ? TVIS_BOLD : 0u;
    SendMessageW(TreeWindow(), TVM_SETITEMW, 0, reinterpret_cast<LPARAM>(&change));
}

// True keeps the node closed.
bool OnExpanding(const NMTREEVIEWW& notice) {
    TVobject* node = NodeOf(notice.itemNew);
    if (node == nullptr || (notice.action & TVE_EXPAND) == 0) return false;
    if (gSession.parsing && node == ListedFolder()) {
        OpenWhenListed(node);
        return true;
    }
    if (!node->children.empty()) {
        TV_InsertChildren(node);
        return false;
    }
    if (!IsLocalNode(node) || node->listed) return false;
    OpenWhenListed(node);
    SelectNode(node);
    return true;
}

POINT MousePosition() {
    const DWORD position = GetMessagePos();
    return {static_cast<SHORT>(LOWORD(position)), static_cast<SHORT>(HIWORD(position))};
}

bool OnDoubleClick() {
    TVobject* node = TreeHitTest(MousePosition(), kHitLabel).node;
    if (node == nullptr) return false;
    // The control expands drives and folders on double-click by itself; for the computer node that is all we want.
    if (node->wObjType == kKindLocalComputer) return false;
    OpenWhenListed(node);
    TV_HandleDblClick(node);
    return true;
}

void OnSelectionChanged(const NMTREEVIEWW& notice) {
    SetBold(notice.itemOld.hItem, false);
    SetBold(notice.itemNew.hItem, true);
    TV_OnSelChanged(NodeOf(notice.itemNew), notice.action == TVC_BYMOUSE);
}

// True when the key is dealt with.
bool TV_HandleKey(WORD key) {
    switch (key) {
        case VK_BACK:
        case VK_TAB:
            FocusOtherPane(TreeWindow());
            return true;
        case VK_RETURN:
            if (TVobject* node = SelectedNode()) TV_HandleDblClick(node);
            return true;
        case VK_RIGHT:
        case VK_ADD: {
            // A folder that was never listed has no button; these keys list it instead.
            TVobject* node = SelectedNode();
            const bool remote = node != nullptr && IsRemoteFolderKind(node->wObjType);
            if (!remote || node->listed || !node->children.empty()) return false;
            OpenWhenListed(node);
            TV_HandleDblClick(node);
            return true;
        }
        case VK_DELETE: {
            TVobject* node = SelectedNode();
            return node != nullptr && node->wObjType == kKindSite && DeleteSiteNode(node);
        }
        case VK_F2:
            if (const HTREEITEM item = TreeView_GetSelection(TreeWindow())) TreeView_EditLabel(TreeWindow(), item);
            return true;
        default:
            return false;
    }
}

}  // namespace

void InstallTreeHandlers() {
    TreeHandlers handlers;
    handlers.keyPressed = [](WORD key) { TV_HandleKey(key); };
    handlers.deletingChildren = ForgetChildren;
    handlers.deletingNode = ForgetNode;
    SetTreeHandlers(handlers);
}

void OpenNodeInPlace(TVobject* node) {
    if (!node->children.empty()) {
        ExpandNode(node);
    } else if (IsLocalNode(node) && !node->listed) {
        OpenLocalNodeInPlace(node);
    }
}

bool TV_NotifyHandler(NMHDR* header, LRESULT& result) {
    if (TreeWindow() == nullptr || header->hwndFrom != TreeWindow()) return false;
    const auto& notice = *reinterpret_cast<const NMTREEVIEWW*>(header);
    result = 0;
    switch (header->code) {
        case TVN_GETDISPINFOW:
            // Not reported as handled, because showing a node changes nothing else.
            TV_GetDispInfo(reinterpret_cast<NMTVDISPINFOW*>(header)->item);
            return false;
        case TVN_SELCHANGINGW:
            result = TV_OnSelChanging(NodeOf(notice.itemNew));
            return true;
        case TVN_SELCHANGEDW:
            OnSelectionChanged(notice);
            return true;
        case TVN_ITEMEXPANDINGW:
            result = OnExpanding(notice);
            return true;
        case TVN_DELETEITEMW:
            if (TVobject* node = NodeOf(notice.itemOld)) node->hItem = 0;
            return false;
        case TVN_KEYDOWN:
            result = TV_HandleKey(reinterpret_cast<NMTVKEYDOWN*>(header)->wVKey);
            return true;
        case TVN_BEGINLABELEDITW:
            result = !TV_BeginLabelEdit(NodeOf(reinterpret_cast<NMTVDISPINFOW*>(header)->item));
            return true;
        case TVN_ENDLABELEDITW: {
            const TVITEMW& item = reinterpret_cast<NMTVDISPINFOW*>(header)->item;
            TV_HandleEndLabelEdit(NodeOf(item), item.pszText);
            return true;
        }
        case NM_SETFOCUS:
            gApp.focus = Pane::Tree;
            PostRefreshWindowState();
            return true;
        case NM_DBLCLK:
            result = OnDoubleClick();
            return true;
        default:
            return false;
    }
}
