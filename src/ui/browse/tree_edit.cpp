#include "ui/browse/tree_edit.h"

#include <commctrl.h>

#include <string>

#include "config/settings.h"
#include "config/site_store.h"
#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/control/keep_alive.h"
#include "ftp/control/remote_commands.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/site_status.h"
#include "ftp/worker/worker.h"
#include "listing/local_listing.h"
#include "platform/files.h"
#include "platform/system.h"
#include "ui/browse/item_path.h"
#include "ui/browse/tree_selection.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/refresh.h"
#include "ui/screen/ui_calls.h"

namespace {

constexpr char kFuncName[] = "TV_HandleEndLabelEdit";
constexpr int kLongestLabel = 260;

TVobject* gNewFolder = nullptr;  // being named; not on the server yet

// The full path of a name beside or below a folder's node.
std::string PathIn(const TVobject* folder, std::string_view name) {
    const std::string path = ItemPath(folder, name);
    // Too long a path is reported and cut.
    return IsLocalNode(folder) ? path : FormatBounded(kFuncName, kTextBuffer, "%s", path.c_str());
}

void TakeNewName(TVobject* node, const std::string& name) {
    node->pszName = OwnedText::Copy(name);
    RefreshNode(node);
    RefreshWindowState();
}

void RenameSite(TVobject* node, const std::string& newName) {
    // The edit may have been opened before the operation, which reads the site's name.
    if (OperationRunning()) return;
    const std::string oldName = node->pszName.c_str();
    if (!RenameSiteInfo(oldName.c_str(), newName.c_str(), gZarn.SESSION == oldName, InTreeView)) return;
    if (node->pSite != nullptr) node->pSite->pszSessionName = OwnedText::Copy(newName);
    TakeNewName(node, newName);
    SetTvTitleText(node->pSite);
}

void RenameRemoteFolder(TVobject* node, const std::string& newName) {
    Site* site = TV_GetFtpSite(node);
    if (site == nullptr || site->bConnected == 0) return;
    const std::string oldPath = PathIn(node->pTVparent, node->pszName.view());
    const std::string newPath = PathIn(node->pTVparent, newName);
    StartWorker(kFuncName, [=] {
        if (!ServerReadyForCmd(site, true) || !RenameRemoteItem(site, oldPath.c_str(), newPath.c_str())) return;
        // The session's current directory may be the renamed folder or one below it.
        const std::string current = StatusOf(*site).currentDirectory;
        if (current == oldPath || current.rfind(oldPath + NodeSeparator(node), 0) == 0) {
            SetSessionDirectory(*site, newPath + current.substr(oldPath.size()));
        }
        RunOnUi([&] { TakeNewName(node, newName); });
    });
}

void RenameLocalFolder(TVobject* node, const std::string& newName) {
    const std::string oldPath = LocalNodePath(node);
    const std::string newPath = PathIn(node->pTVparent, newName);
    StartWorker(kFuncName, [=] {
        // The current folder of a process cannot be moved, so leave it first.
        platform::SetCurrentFolder(LocalNodePath(node->pTVparent).c_str());
        const bool moved = platform::MoveFilePath(oldPath.c_str(), newPath.c_str(), false);
        const std::uint32_t error = platform::LastSystemError();
        platform::SetCurrentFolder((moved ? newPath : oldPath).c_str());
        if (!moved) {
            DbgVsprintf(kFuncName, "ERROR. Call to MoveFile(%s, %s) Failed!", oldPath.c_str(), newPath.c_str());
            ShowApiError(error);
            return;
        }
        RunOnUi([&] { TakeNewName(node, newName); });
    });
}

void MakeNamedFolder(TVobject* node, const std::string& name) {
    TVobject* parent = node->pTVparent;
    Site* site = TV_GetFtpSite(node);
    const std::string path = PathIn(parent, name);
    const bool local = IsLocalNode(node);
    const bool started = StartWorker("newfolder_fx", [=] {
        bool made = false;
        if (local) {
            made = platform::CreateFolder(path.c_str());
            if (!made) ShowApiError(platform::LastSystemError());
        } else {
            made = ServerReadyForCmd(site, true) && MakeRemoteDirectory(site, path.c_str());
        }
        RunOnUi([&] { made ? TakeNewName(node, name) : TV_DeleteNode(node); });
    });
    if (!started) TV_DeleteNode(node);
}

}  // namespace

bool TV_BeginLabelEdit(TVobject* node) {
    if (node == nullptr || gSession.exiting) return false;
    if (node->wObjType == kKindAddSite || node->wObjType == kKindLocalComputer) {
        DbgVsprintf("TV_BeginLabelEdit", "%s: We don't edit the wizard/Local Comp.!. Returning 1L",
                    node->pszName.c_str());
        return false;
    }
    if (OperationRunning()) return false;
    // The control may have selected the item to edit it; a folder without a name yet cannot be listed.
    if (node == gNewFolder) CancelSelectionTimer();
    HWND edit = TreeView_GetEditControl(TreeWindow());
    if (edit != nullptr) SendMessageW(edit, EM_LIMITTEXT, kLongestLabel, 0);
    return true;
}

void TV_HandleEndLabelEdit(TVobject* node, const wchar_t* newText) {
    if (node == nullptr) return;
    const bool named = node == gNewFolder;
    gNewFolder = nullptr;
    if (newText == nullptr) {
        DbgVsprintf(kFuncName, "CANCELED!!!! pszText was NULL. returning 1L");
        if (named) TV_DeleteNode(node);
        return;
    }
    const std::string newName = Narrow(newText);
    if (named) {
        newName.empty() ? TV_DeleteNode(node) : MakeNamedFolder(node, newName);
        return;
    }
    if (newName == ShownName(node->pszName.view())) {
        DbgVsprintf(kFuncName, "(%s): Nothing changed!. Returning 0L", newName.c_str());
        return;
    }
    if (newName.empty()) return;
    switch (node->wObjType) {
        case kKindSite:
            RenameSite(node, newName);
            break;
        case kKindFolder:
            RenameRemoteFolder(node, newName);
            break;
        case kKindLocalFolder:
            RenameLocalFolder(node, newName);
            break;
        default:
            DbgVsprintf(kFuncName, "ERROR. We don't rename Root directories! Breaking switch(wObjType)");
            break;
    }
}

void NameNewFolderInTree(TVobject* parent) {
    if (parent == nullptr) return;
    const std::uint32_t kind = IsLocalNode(parent) ? kKindLocalFolder : kKindFolder;
    TVobject* node = TV_AddItem(parent, CatalogueText(MSG_NEW_FOLDER_NAME), kind, NameCheck::Unique);
    if (node == nullptr) return;
    ExpandNode(parent);
    if (node->hItem == 0) return;
    gNewFolder = node;
    SetFocus(TreeWindow());
    TreeView_EnsureVisible(TreeWindow(), ItemOf(node));
    TreeView_EditLabel(TreeWindow(), ItemOf(node));
}

bool DeleteSiteNode(TVobject* node) {
    if (node == nullptr || node->wObjType != kKindSite || OperationRunning()) return false;
    const std::string name = node->pszName.c_str();
    const OwnedText question = Zarn_ResVsprintf(MSG_BOX_DELETE_SITE, name);
    if (ShowMessageBox(question.c_str(), nullptr, BoxButtons::YesNo, BoxIcon::Question) != BoxAnswer::Yes) return false;
    // The selection's timer may have started an operation while the box was open.
    if (OperationRunning()) return false;
    TV_DeleteNode(node);
    RegDeleteSiteInfo(name.c_str());
    SetFocus(TreeWindow());
    RefreshWindowState();
    return true;
}
