#include "ui/commands/file_commands.h"

#include <windows.h>

#include <commctrl.h>

#include <utility>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/worker/session_state.h"
#include "listing/local_listing.h"
#include "transfer/progress_dialog.h"
#include "transfer/selection_transfer.h"
#include "ui/bars/status_bar.h"
#include "ui/browse/command_context.h"
#include "ui/browse/list_edit.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/refresh.h"

namespace {

// Judges by what is known already; asking the server is the worker's job.
bool IsReady(const TVobject* node) {
    if (node == nullptr || CommandsRefused()) return false;
    if (IsLocalNode(node) || node->wObjType == kKindSite) return true;
    const Site* site = node->wObjType == kKindAddSite ? nullptr : TV_GetFtpSite(node);
    return site != nullptr && site->bConnected != 0;
}

void OnTransfersDone() {
    ShowStatusText("");
    RefreshWindowState();
}

void EditEntryLabel() {
    const int first = FirstSelected();
    if (first < 0) return;
    SetFocus(ListWindow());
    ListView_EditLabel(ListWindow(), first);
}

void EditNodeLabel() {
    SetFocus(TreeWindow());
    TreeView_EditLabel(TreeWindow(), TreeView_GetSelection(TreeWindow()));
}

}  // namespace

void Zarn_IdmTransferSelFiles() {
    constexpr char kFuncName[] = "Zarn_IdmTransferSelFiles";
    const CommandContext context = CurrentCommandContext();
    if (context.focus == CommandContext::Focus::None) {
        DbgVsprintf(kFuncName, "ERROR. Neither the Tree or List was Selected. Returning");
        return;
    }
    if (CommandsRefused()) {
        DoPrintIdArgs(MSG_BUSY_WITH_REMOTE_OPERATION);
        return;
    }
    const bool fromList = context.focus == CommandContext::Focus::List;
    if (fromList && context.selected == 0) return;
    if (!context.siteConnected) return;
    if (!fromList && !IsRemoteFolderKind(context.nodeKind)) return;
    DbgVsprintf(kFuncName, "Calling CreateThread(get_selected_files_fx)");
    SetPartOneSBText(MSG_TRANSFERING_FILES, nullptr);
    TransferJob job;
    job.site = gSession.activeSite;
    job.start = fromList ? TransferStart::ListSelection : TransferStart::TreeSelection;
    job.remoteItems = fromList ? ItemsOf(SelectedEntries()) : ItemsOf(SelectedNode());
    if (!OpenTransferDialog(gApp.mainWindow, std::move(job), OnTransfersDone)) ShowStatusText("");
}

void Zarn_IdmNewFolder(const char* name) {
    constexpr char kFuncName[] = "Zarn_IdmNewFolder";
    if (name == nullptr || *name == '\0') {
        DbgVsprintf(kFuncName, "ERROR. NULL Parameter passed in. Returning");
        return;
    }
    TVobject* node = SelectedNode();
    if (!IsReady(node)) {
        DbgVsprintf(kFuncName, "ERROR. Server NOT Ready. Returning.");
        return;
    }
    if (IsFolderKind(node->wObjType)) newfolder_fx(node);
}

void Zarn_IdmRename() {
    if (!IsReady(SelectedNode())) {
        DbgVsprintf("Zarn_IdmRename", "ERROR. Server NOT Ready. Returning.");
        return;
    }
    gApp.focus == Pane::List ? EditEntryLabel() : EditNodeLabel();
}
