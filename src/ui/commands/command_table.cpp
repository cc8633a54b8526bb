#include "ui/commands/command_table.h"

#include <commctrl.h>

#include <array>

#include "config/connection_defaults.h"
#include "config/defaults_store.h"
#include "config/settings.h"
#include "config/site_store.h"
#include "foundation/catalogue.h"
#include "foundation/console_pane.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/dialogs/server_status_dialog.h"
#include "ftp/login/connect_command.h"
#include "ftp/login/stop.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "resources/resource.h"
#include "ui/bars/status_bar.h"
#include "ui/bars/titles.h"
#include "ui/browse/command_context.h"
#include "ui/browse/list_edit.h"
#include "ui/browse/list_update.h"
#include "ui/browse/tree_edit.h"
#include "ui/browse/tree_selection.h"
#include "ui/commands/about_dialog.h"
#include "ui/commands/file_commands.h"
#include "ui/commands/help.h"
#include "ui/drag/drops.h"
#include "ui/panes/list_columns.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/redraw_pause.h"
#include "ui/screen/refresh.h"

namespace {

constexpr char kFuncName[] = "ProcessCommandsWndProc";
constexpr int kConsoleLinesKept = 20;

void OnAbort(HWND, UINT) {
    Zarn_Abort();
}

void OnAbout(HWND window, UINT) {
    ShowAboutDialog(window);
}

void OnStatistics(HWND window, UINT) {
    Site* site = SelectedSite();
    if (site != nullptr && site->bConnected != 0) ShowServerStatus(window, site);
}

void OnConnect(HWND, UINT) {
    Site* site = SelectedSite();
    if (site == nullptr) return;
    SetActiveSite(site);
    ApplySiteConnectionSettings(site->pszSessionName.c_str());
    SetLastSession(site->pszSessionName.c_str());
    StartWorker("Zarn_IdmConnect", [site] { Zarn_IdmConnect(site); });
    Zarn_SetMainWindowText();
}

// Quirk: Copy only shows this box, kept.
void OnCopy(HWND, UINT) {
    ShowMessageBox("Got a IDM_COPY Message", nullptr, BoxButtons::Ok, BoxIcon::None);
}

void Disconnect(Site* site) {
    // The worker that noticed a lost connection may still be running; it must end before its sockets are closed.
    if (WorkerRunning()) StopWorker(kWorkerEndMs);
    {
        const RedrawPause treePause(TreeWindow());
        const RedrawPause listPause(ListWindow());
        Zarn_IdmDisconnect(site);
    }
    SetFocus(TreeWindow());
    ShowStatusText("");
    RefreshWindowState();
}

void OnDisconnect(HWND, UINT) {
    Site* site = gSession.activeSite != nullptr ? gSession.activeSite.load() : SelectedSite();
    if (site != nullptr) Disconnect(site);
}

void OnExit(HWND window, UINT) {
    PostMessageW(window, WM_CLOSE, 0, 0);
}

void OnHelp(HWND window, UINT) {
    ShowHelpContents(window);
}

void OnView(HWND, UINT id) {
    switch (id) {
        case IDM_VIEW_LARGE_ICONS:
            LV_ChangeView(UiStyle::LargeIcons, gZarn.COLUMNS);
            break;
        case IDM_VIEW_SMALL_ICONS:
            LV_ChangeView(UiStyle::SmallIcons, gZarn.COLUMNS);
            break;
        case IDM_VIEW_LIST:
            LV_ChangeView(UiStyle::List, gZarn.COLUMNS);
            break;
        case IDM_DETAILS_UNIX:
            LV_ChangeView(UiStyle::Details, kColumnsUnix);
            break;
        default:
            LV_ChangeView(UiStyle::Details, kColumnsWindows);
            break;
    }
    RefreshWindowState();
}

void OnTracedOnly(HWND, UINT) {}

void OnParentFolder(HWND, UINT) {
    TVobject* node = SelectedNode();
    if (node != nullptr && node->pTVparent != nullptr) SelectNode(node->pTVparent);
}

// Deletes the focused pane's selection: entries on the server or the disk, or a site that is not connected.
void OnDelete(HWND, UINT) {
    const CommandContext context = CurrentCommandContext();
    if (context.focus == CommandContext::Focus::List) {
        delete_fx();
    } else if (context.nodeKind == kKindSite && !context.siteConnected) {
        DeleteSiteNode(SelectedNode());
    }
}

void OnDeleteEntries(HWND, UINT) {
    delete_fx();
}

void OnNewFolder(HWND, UINT) {
    Zarn_IdmNewFolder(CatalogueText(MSG_NEW_FOLDER_NAME).c_str());
}

void OnRename(HWND, UINT) {
    Zarn_IdmRename();
}

void OnRenameEntry(HWND, UINT) {
    gApp.focus = Pane::List;
    Zarn_IdmRename();
}

void OnLineUpIcons(HWND, UINT) {
    ListView_Arrange(ListWindow(), LVA_SNAPTOGRID);
}

void OnRefresh(HWND, UINT) {
    RefreshSelectedFolder();
}

// Enters the selected directory, as a double click does.
void OnGoTo(HWND, UINT) {
    TV_HandleDblClick(SelectedNode());
}

void OnResolve(HWND, UINT) {
    LV_ResolveObject(FirstSelected());
}

void OnPaste(HWND, UINT) {
    PasteFiles();
}

void OnTransfer(HWND, UINT) {
    Zarn_IdmTransferSelFiles();
}

void OnSaveConfiguration(HWND, UINT) {
    Site* site = SelectedSite();
    if (site != nullptr) SaveSiteInfo(site);
    SaveShownColumns(ListWindow());
    SavePortInfo("", gZarn.defaultPort);
    SaveModeInfo("", gZarn.defaultMode);
    SaveDefaults();
}

void OnSelectAll(HWND, UINT) {
    if (EntryCount() == 0) return;
    SetFocus(ListWindow());
    SelectAllEntries();
}

void OnShowConsole(HWND window, UINT) {
    Zarn_ShowConsole(window, true);
}

struct SortCommand {
    UINT id;
    int column;
    int columnInWindowsLayout;
};
// Quirk: in the Windows layout "by Umask" sorts by size, "by Links" by time, owner and group not at all, kept.
constexpr std::array<SortCommand, 8> kSortCommands = {{
    {IDM_SORTBY_NAME, 0, 0},
    {IDM_SORTBY_TYPE, 1, 1},
    {IDM_SORTBY_UMASK, 2, 2},
    {IDM_SORTBY_LINKS, 3, 3},
    {IDM_SORTBY_OWNER, 4, 4},
    {IDM_SORTBY_GROUP, 5, 5},
    {IDM_SORTBY_SIZE, 6, 2},
    {IDM_SORTBY_DATE, 7, 3},
}};

void OnSort(HWND, UINT id) {
    for (const SortCommand& sort : kSortCommands) {
        if (sort.id != id) continue;
        SortEntriesByColumn(gZarn.COLUMNS == kColumnsWindows ? sort.columnInWindowsLayout : sort.column);
        return;
    }
}

void OnSetCursor(HWND, UINT) {
    SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(OperationRunning() ? IDC_WAIT : IDC_ARROW)));
}

void OnClearConsole(HWND, UINT) {
    EditClear(0, EditGetLineCount() - kConsoleLinesKept);
}

enum class WhileBusy { Refused, Allowed };

struct Command {
    UINT id;
    const char* traceName;  // null: not traced
    void (*handler)(HWND window, UINT id);
    WhileBusy whileBusy = WhileBusy::Refused;  // during a remote operation
};

constexpr Command kCommands[] = {
    {IDM_ABORT, nullptr, OnAbort, WhileBusy::Allowed},
    {IDM_ABOUT, "IDM_ABOUT", OnAbout, WhileBusy::Allowed},
    {IDM_CMD_STAT, "IDM_CMD_STAT", OnStatistics},
    {IDM_CONNECT, "IDM_CONNECT", OnConnect},
    {IDM_COPY, "IDM_COPY", OnCopy},
    {IDM_DELETE, "IDM_DELETE", OnDelete},
    {IDM_DISCONNECT, "IDM_DISCONNECT", OnDisconnect, WhileBusy::Allowed},
    {IDM_EXITAPP, "IDM_EXITAPP", OnExit, WhileBusy::Allowed},
    {IDM_HELP_CONTENTS, nullptr, OnHelp},
    {IDM_VIEW_LARGE_ICONS, nullptr, OnView},
    {IDM_VIEW_SMALL_ICONS, nullptr, OnView},
    {IDM_VIEW_LIST, nullptr, OnView},
    {IDM_DETAILS_WINDOWS, nullptr, OnView},
    {IDM_DETAILS_UNIX, nullptr, OnView},
    {IDM_LOGIN_SEND, "IDM_LOGIN_SEND", OnTracedOnly},
    {IDM_LV_CDPARENT, "IDM_LV_CDPARENT", OnParentFolder},
    {IDM_LV_DELETE, nullptr, OnDeleteEntries},
    {IDM_LV_PASTE, "IDM_LV_PASTE", OnPaste},
    {IDM_LV_NEWFOLDER, nullptr, OnNewFolder},
    {IDM_NEWFOLDER, nullptr, OnNewFolder},
    {IDM_TV_NEWFOLDER, nullptr, OnNewFolder},
    {IDM_RENAME, nullptr, OnRename},
    {IDM_LV_RENAME, nullptr, OnRenameEntry},
    {IDM_VIEW_LINEUP_ICONS, nullptr, OnLineUpIcons},
    {IDM_LV_REFRESH, nullptr, OnRefresh},
    {IDM_LV_RECEIVE, "IDM_LV_RECEIVE", OnTransfer, WhileBusy::Allowed},
    {IDM_RECEIVE, "IDM_RECEIVE", OnTransfer, WhileBusy::Allowed},
    {IDM_SAVECFG, "IDM_SAVECFG", OnSaveConfiguration, WhileBusy::Allowed},
    {IDM_SELECTALL, "IDM_SELECTALL", OnSelectAll},
    {IDM_SHOWCONSOLE, "IDM_SHOWCONSOLE", OnShowConsole, WhileBusy::Allowed},
    {IDM_SORTBY_AUTO, "IDM_SORTBY_AUTO", OnTracedOnly},
    {IDM_SORTBY_DATE, "IDM_SORTBY_DATE", OnSort},
    {IDM_SORTBY_GROUP, "IDM_SORTBY_GROUP", OnSort},
    {IDM_SORTBY_LINKS, "IDM_SORTBY_LINKS", OnSort},
    {IDM_SORTBY_NAME, "IDM_SORTBY_NAME", OnSort},
    {IDM_SORTBY_OWNER, "IDM_SORTBY_OWNER", OnSort},
    {IDM_SORTBY_SIZE, "IDM_SORTBY_SIZE", OnSort},
    {IDM_SORTBY_TYPE, "IDM_SORTBY_TYPE", OnSort},
    {IDM_SORTBY_UMASK, "IDM_SORTBY_UMASK", OnSort},
    {IDM_TV_REFRESH, nullptr, OnRefresh},
    {IDM_TV_GOTO, nullptr, OnGoTo},
    {IDM_LV_RESOLVE, nullptr, OnResolve},
    {IDM_TV_RECEIVE, "IDM_TV_RECEIVE", OnTransfer, WhileBusy::Allowed},
    {IDM_SETCURSOR, nullptr, OnSetCursor, WhileBusy::Allowed},
    {IDM_CLEAR_CONSOLE, nullptr, OnClearConsole, WhileBusy::Allowed},
};

const Command* FindCommand(UINT id) {
    for (const Command& command : kCommands) {
        if (command.id == id) return &command;
    }
    return nullptr;
}

}  // namespace

bool CommandIsAvailable(unsigned id) {
    // The tree's context menu handles these three itself, because they act on the clicked node.
    const bool ofTreeMenu = id == IDM_DELETE_SITE || id == IDM_RENAME_SITE || id == IDM_TV_RENAME;
    return ofTreeMenu || FindCommand(id) != nullptr;
}

bool ProcessCommandsWndProc(HWND window, UINT id) {
    const Command* command = FindCommand(id);
    if (command == nullptr) return false;
    if (command->traceName != nullptr) DbgVsprintf(kFuncName, "(WM_COMMAND) %s Received", command->traceName);
    if (OperationRunning() && command->whileBusy == WhileBusy::Refused) return true;
    command->handler(window, id);
    return true;
}

void DisconnectSite(Site* site) {
    DbgVsprintf(kFuncName, "(WM_COMMAND) IDM_DISCONNECT Received");
    if (NodeOfSite(site) != nullptr) Disconnect(site);
}
