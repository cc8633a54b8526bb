#include "ui/browse/tree_selection.h"

#include <memory>
#include <string>
#include <utility>

#include "config/initial_dirs.h"
#include "foundation/trace.h"
#include "foundation/trace_address.h"
#include "ftp/control/keep_alive.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/session_view.h"
#include "ftp/worker/worker.h"
#include "listing/listing_driver.h"
#include "listing/local_listing.h"
#include "resources/resource.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/messages.h"
#include "ui/screen/refresh.h"
#include "ui/screen/ui_calls.h"

namespace {

constexpr char kFuncName[] = "TV_HandleRealSelChange";
constexpr UINT kBusyDelay = 50;  // milliseconds; a selection made during an operation is checked again this often

TVobject* gCurrent = nullptr;     // the node last handled
TVobject* gPending = nullptr;     // the node that the selection is moving to
bool gSkipKeyboardDelay = false;  // the program selects: there are no key strokes to wait for
bool gSuppressListing = false;    // the selection moves without anything being listed
bool gWaitsForOperation = false;
TVobject* gOpenWhenListed = nullptr;

bool Busy() {
    return OperationRunning() || WorkerRunning() || gSession.parsing;
}

void StartSelectionTimer(UINT delay) {
    SetTimer(gApp.mainWindow, kSelectionTimer, delay, nullptr);
}

// A node whose items the list can show.
bool CanBeListed(const TVobject* node) {
    return IsRemoteFolderKind(node->wObjType) || IsLocalNodeKind(node->wObjType);
}

// Null: all nodes.
void ForgetNodesBelow(const TVobject* node) {
    for (TVobject** known : {&gCurrent, &gPending, &gOpenWhenListed}) {
        if (node == nullptr || IsNodeBelow(*known, node)) *known = nullptr;
    }
}

// Opens the nodes above it, so that the control has an item for the node.
void OpenAncestors(TVobject* node) {
    if (node->pTVparent == nullptr) return;
    OpenAncestors(node->pTVparent);
    if (node->hItem == 0) ExpandNode(node->pTVparent);
}

// Selecting a site node clears the list if it still shows another site's folder.
void ShowSite(TVobject* node) {
    Site* site = TV_GetFtpSite(node);
    if (ListedFolder() != nullptr && TV_GetFtpSite(ListedFolder()) != site) InitListView();
    SetTvTitleText(site);
    RefreshWindowState();
}

// Runs on the worker.
bool ChangeRemoteFolder(TVobject* node, Site* site) {
    if (!ServerReadyForCmd(site, true)) {
        DbgVsprintf(kFuncName, "ERROR. Server NOT Ready. Returning.");
        return false;
    }
    if (!TV_PreSelect(node)) {
        DbgVsprintf(kFuncName, "Call to TV_PreSelect(%x:%s) Failed", TraceAddress(node), node->pszName.c_str());
        return false;
    }
    const int result = LV_ChangeDir(node);
    if (result == FTP_COMPLETE) return true;
    DbgVsprintf(kFuncName, "Call to LV_ChangeDir(%x:%s) Failed", TraceAddress(node), node->pszName.c_str());
    // A broken data connection is a socket error as well, but the session survives it.
    const bool lost = result == FTP_CLOSE || (result == SOCKET_ERROR && !HasControlSocket(site));
    if (lost) gSessionView.postDisconnect(site);
    return false;
}

// Back on the window's thread.
void FinishChange(TVobject* node, bool changed) {
    if (gSession.exiting) return;
    if (changed) {
        gCurrent = node;
        const Site* site = TV_GetFtpSite(node);
        SetTvTitleText(site);
        RefreshWindowState();
        return;
    }
    OpenWhenListed(nullptr);
    const Site* site = TV_GetFtpSite(node);
    if (!IsLocalNode(node) && (site == nullptr || site->bConnected == 0)) {
        DbgVsprintf(kFuncName, "Connection was lost. NOT calling TreeView_SelectItem()");
        return;
    }
    // If the user has selected another node meanwhile, that selection has a timer of its own.
    if (gCurrent != nullptr && SelectedNode() == node) SelectWithoutListing(gCurrent);
    SetFocus(TreeWindow());
    RefreshWindowState();
}

// During an operation the selection has to wait.
void LookAgainLater() {
    if (!gWaitsForOperation) DbgVsprintf(kFuncName, "fChangingFolder is TRUE. Returning NULL");
    gWaitsForOperation = true;
    StartSelectionTimer(kBusyDelay);
}

// For a node without a folder of its own. False for a kind that no node should have.
bool ShowUnlistedNode(TVobject* node) {
    switch (node->wObjType) {
        case kKindAddSite:
            InitListView();
            SetTvTitleText(nullptr);
            return true;
        case kKindSite:
            ShowSite(node);
            return true;
        default:
            DbgVsprintf(kFuncName, "TVN_SELCHANGED: Bogus Object Type(%d)\n", static_cast<int>(node->wObjType));
            return false;
    }
}

}  // namespace

bool TV_OnSelChanging(TVobject* newNode) {
    if (newNode == nullptr) return false;
    Site* site = TV_GetFtpSite(newNode);
    if (site == nullptr) {
        DbgVsprintf("TV_OnSelChanging", "Call to TV_GetTvSite(%x:%s) Failed.Returning 1L", TraceAddress(newNode),
                    newNode->pszName.c_str());
        return true;
    }
    if (site->pSock == nullptr) site->pSock = std::make_unique<SocketRecord>();
    gPending = newNode;
    // Abort acts on the active site, so a running operation keeps its own.
    if (!Busy()) SetActiveSite(site);
    return false;
}

void TV_OnSelChanged(TVobject* newNode, bool byMouse) {
    CancelSelectionTimer();
    if (newNode == nullptr || gSuppressListing) return;
    StartSelectionTimer(byMouse || gSkipKeyboardDelay ? kMouseDelay : kKeyboardDelay);
}

void CancelSelectionTimer() {
    KillTimer(gApp.mainWindow, kSelectionTimer);
}

void TV_HandleRealSelChange() {
    CancelSelectionTimer();
    TVobject* node = SelectedNode();
    if (node == nullptr || gSession.exiting) return;
    if (Busy()) {
        LookAgainLater();
        return;
    }
    gWaitsForOperation = false;
    if (node == gCurrent) {
        DbgVsprintf(kFuncName, "Landed on last Selected folder, Returning %x", TraceAddress(node));
        SetActiveSite(TV_GetFtpSite(node));
        RefreshWindowState();
        return;
    }
    if (node != gPending) {
        DbgVsprintf(kFuncName, "ERROR. (pTVitemNew != pTVselect). Returning NULL");
        return;
    }
    SetActiveSite(TV_GetFtpSite(node));
    if (CanBeListed(node)) {
        if (!StartChangeDir(node)) FinishChange(node, false);
    } else if (ShowUnlistedNode(node)) {
        gCurrent = node;
        RefreshWindowState();
    }
}

void TV_HandleDblClick(TVobject* node) {
    constexpr char kDblClickFuncName[] = "TV_HandleDblClick";
    if (node == nullptr) return;
    if (Busy() || gSession.exiting) {
        DbgVsprintf(kDblClickFuncName, "WARNING.  Currently Busy. cd:%d, con:%d, Exit:%d. Returning",
                    gSession.busy ? 1 : 0, gSession.connecting ? 1 : 0, gSession.exiting ? 1 : 0);
        return;
    }
    if (node->wObjType == kKindAddSite) {
        DbgVsprintf(kDblClickFuncName, "Wizard! Posting Msg IDM_NEW_SITE");
        PostMessageW(gApp.mainWindow, WM_COMMAND, IDM_NEW_SITE, 0);
        return;
    }
    if (node->wObjType == kKindSite) {
        DbgVsprintf(kDblClickFuncName, "Posting Msg IDM_CONNECT to %s", node->pszName.c_str());
        PostMessageW(gApp.mainWindow, WM_COMMAND, IDM_CONNECT, 0);
        return;
    }
    if (!CanBeListed(node)) return;
    if (node == gCurrent) {
        DbgVsprintf(kDblClickFuncName, "REFRESHING : %s", node->pszName.c_str());
        RefreshSelectedFolder();
        return;
    }
    DbgVsprintf(kDblClickFuncName, "CHANGING Remote Dir : %s", node->pszName.c_str());
    CancelSelectionTimer();
    gPending = node;
    TV_HandleRealSelChange();
}

void RefreshSelectedFolder() {
    TVobject* node = SelectedNode();
    if (node != nullptr && CanBeListed(node)) StartChangeDir(node);
}

bool StartChangeDir(TVobject* node) {
    if (node == nullptr) return false;
    Site* site = TV_GetFtpSite(node);
    const bool local = IsLocalNode(node);
    if (site == nullptr || (!local && site->bConnected == 0)) return false;
    return StartWorker("LV_ChangeDir", [node, site, local] {
        const bool changed = local ? ListLocalNode(node) : ChangeRemoteFolder(node, site);
        RunOnUi([node, changed] { FinishChange(node, changed); });
    });
}

void SelectNode(TVobject* node) {
    if (node == nullptr) return;
    OpenAncestors(node);
    if (node->hItem == 0) return;
    gSkipKeyboardDelay = true;
    if (SelectedNode() != node) {
        TreeView_SelectItem(TreeWindow(), ItemOf(node));
    } else if (node != gCurrent && !TV_OnSelChanging(node)) {
        TV_OnSelChanged(node, false);
    }
    gSkipKeyboardDelay = false;
}

void SelectWithoutListing(TVobject* node) {
    gSuppressListing = true;
    if (node != nullptr && node->hItem != 0) TreeView_SelectItem(TreeWindow(), ItemOf(node));
    gSuppressListing = false;
    gCurrent = node;
    if (node != nullptr) SetActiveSite(TV_GetFtpSite(node));
}

void OpenWhenListed(TVobject* node) {
    gOpenWhenListed = node;
}

TVobject* TakeNodeToOpen() {
    return std::exchange(gOpenWhenListed, nullptr);
}

void ForgetChildren(const TVobject* node) {
    // The list's entries point to the children's nodes.
    if (ListedFolder() != nullptr && IsNodeBelow(ListedFolder(), node)) InitListView();
    for (const auto& child : node->children) ForgetNodesBelow(child.get());
}

void ForgetNode(const TVobject* node) {
    if (node != nullptr && ListedFolder() == node) InitListView();
    ForgetNodesBelow(node);
}

void AddRememberedDirectories(TVobject* siteNode) {
    if (siteNode == nullptr || siteNode->wObjType != kKindSite || siteNode->pSite == nullptr) return;
    GetInitDirectories("Tv_AddInitDir", siteNode->pSite->pszSessionName.c_str());
    for (const InitDir& remembered : gInitDirs) Tv_AddInitDir(siteNode, remembered.path);
}

void ShowFirstDirectory(Site* site, const char* directory) {
    TVobject* siteNode = NodeOfSite(site);
    if (siteNode == nullptr || directory == nullptr) return;
    SetTvTitleText(site);
    TVobject* node = Tv_AddInitDir(siteNode, directory);
    if (node == nullptr) return;
    AddRememberedDirectories(siteNode);
    // What was listed before this connection is out of date.
    if (gCurrent == node) gCurrent = nullptr;
    ExpandNode(siteNode);
    SelectNode(node);
}

void ShowDisconnected(Site* site) {
    TVobject* node = NodeOfSite(site);
    if (node == nullptr || node->wObjType != kKindSite) return;
    InitListView();
    SelectWithoutListing(node);
    CollapseAndReset(node);
    RefreshNode(node);
    SetTvTitleText(site);
    RefreshWindowState();
}
