#include "ui/window/main_wndproc.h"

#include <commctrl.h>
#include <shellapi.h>
#include <windowsx.h>

#include <optional>
#include <string>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/wide_text_window.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/session_state.h"
#include "resources/resource.h"
#include "ui/bars/status_bar.h"
#include "ui/browse/command_context.h"
#include "ui/browse/list_notify.h"
#include "ui/browse/tree_notify.h"
#include "ui/browse/tree_selection.h"
#include "ui/commands/command_table.h"
#include "ui/commands/help.h"
#include "ui/commands/menus.h"
#include "ui/commands/toolbar.h"
#include "ui/drag/drag_drop.h"
#include "ui/drag/drops.h"
#include "ui/panes/list_columns.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/pane_focus.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/messages.h"
#include "ui/screen/pane_colors.h"
#include "ui/screen/refresh.h"
#include "ui/screen/ui_calls.h"
#include "ui/window/layout.h"
#include "ui/window/main_window.h"
#include "ui/window/placement.h"
#include "ui/window/splitter.h"

namespace {

constexpr int kSmallestWidth = 480;  // pixels at 96 dpi
constexpr int kSmallestHeight = 320;

// The answer to a message; empty: the system's default handling follows.
using Answer = std::optional<LRESULT>;
constexpr Answer kDone = LRESULT{0};

Answer OnUiCall(HWND, WPARAM wParam, LPARAM lParam) {
    return HandleUiCall(wParam, lParam);
}

Answer OnRefresh(HWND, WPARAM, LPARAM) {
    HandleRefreshMessage();
    return kDone;
}

Answer OnBeginDrag(HWND window, WPARAM wParam, LPARAM) {
    RunDrag(window, static_cast<int>(wParam));
    return kDone;
}

Answer OnColumnResized(HWND, WPARAM wParam, LPARAM) {
    if (ListWindow() != nullptr) KeepColumnWidth(ListWindow(), static_cast<int>(wParam));
    return kDone;
}

Answer OnDisconnectMessage(HWND, WPARAM, LPARAM lParam) {
    DisconnectSite(reinterpret_cast<Site*>(lParam));
    return kDone;
}

Answer OnCreate(HWND window, WPARAM, LPARAM) {
    return CreateAppWindows(window) ? 0 : -1;
}

Answer OnDestroy(HWND, WPARAM, LPARAM) {
    SetExiting();
    PostQuitMessage(0);
    return kDone;
}

Answer OnMove(HWND window, WPARAM, LPARAM) {
    RememberPlacement(window);
    return kDone;
}

Answer OnSize(HWND window, WPARAM wParam, LPARAM lParam) {
    if (wParam == SIZE_MINIMIZED) return kDone;
    Zarn_OnSize(window, LOWORD(lParam), HIWORD(lParam));
    if (gZarn.AUTOSIZE != 0) ReapplyColumns(ListWindow());
    return kDone;
}

Answer OnGetMinMaxInfo(HWND, WPARAM, LPARAM lParam) {
    reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {Scaled(kSmallestWidth), Scaled(kSmallestHeight)};
    return kDone;
}

Answer OnClose(HWND window, WPARAM, LPARAM) {
    Zarn_OnClose(window);
    return kDone;
}

Answer OnSetFocus(HWND, WPARAM, LPARAM) {
    SetFocus(gApp.focus == Pane::List ? ListWindow() : TreeWindow());
    return kDone;
}

Answer OnSetCursor(HWND window, WPARAM, LPARAM lParam) {
    const int hit = LOWORD(lParam);
    if (hit > HTCLIENT && hit != HTMENU) return {};
    if (CommandsRefused()) {
        SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_WAIT)));
        return TRUE;
    }
    POINT point{};
    GetCursorPos(&point);
    ScreenToClient(window, &point);
    if (!OverSplitter(point)) return {};
    SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_SIZEWE)));
    return TRUE;
}

Answer OnKeyDown(HWND, WPARAM wParam, LPARAM) {
    if (wParam == VK_TAB) FocusOtherPane(gApp.focus == Pane::Tree ? TreeWindow() : ListWindow());
    return kDone;
}

void GiveTooltip(NMTTDISPINFOW& request) {
    static std::wstring text;  // the control reads it after the notification
    text = Wide(CatalogueText(static_cast<unsigned>(request.hdr.idFrom)));
    request.lpszText = text.data();
}

Answer OnStatusBarClick(const NMMOUSE& click) {
    if (!CommandsRefused()) Zarn_ToggleStatus(static_cast<int>(click.dwItemSpec));
    return kDone;
}

Answer OnNotify(HWND, WPARAM, LPARAM lParam) {
    auto* header = reinterpret_cast<NMHDR*>(lParam);
    if (header->code == TTN_GETDISPINFOW) {
        GiveTooltip(*reinterpret_cast<NMTTDISPINFOW*>(header));
        return kDone;
    }
    if (header->hwndFrom == gApp.statusBar && header->code == NM_CLICK) {
        return OnStatusBarClick(*reinterpret_cast<NMMOUSE*>(header));
    }
    // Ahead of the tree's handler, because drawing changes nothing that the status bar shows.
    if (header->hwndFrom == TreeWindow() && header->code == NM_CUSTOMDRAW) {
        return DrawTreeItem(*reinterpret_cast<NMTVCUSTOMDRAW*>(header));
    }
    if (header->hwndFrom == ListWindow() && header->code == LVN_BEGINDRAG) {
        LV_OnBeginDrag(reinterpret_cast<NMLISTVIEW*>(header)->iItem);
        return kDone;
    }
    LRESULT result = 0;
    if (TV_NotifyHandler(header, result)) {
        ChangeSBText();
        return result;
    }
    if (LV_NotifyHandler(header, result)) return result;
    return {};
}

Answer OnHelp(HWND window, WPARAM, LPARAM) {
    ShowHelpContents(window);
    return TRUE;
}

Answer OnSysCommand(HWND, WPARAM wParam, LPARAM) {
    if ((wParam & 0xFFF0) == SC_CLOSE) ShowClosing();
    return {};
}

Answer OnCommand(HWND window, WPARAM wParam, LPARAM lParam) {
    if (HIWORD(wParam) == EN_SETFOCUS && LOWORD(wParam) == IDC_CONSOLE) {
        // With the caret in the console neither pane has the focus, so commands that need a selection are greyed.
        gApp.focus = Pane::None;
        SetToolbarButtonState();
    }
    const bool fromControl = lParam != 0 && reinterpret_cast<HWND>(lParam) != gApp.toolbar;
    if (!fromControl && ProcessCommandsWndProc(window, LOWORD(wParam))) return kDone;
    return {};
}

void RunTimeOutTimer(HWND window) {
    KillTimer(window, kTimeOutTimer);
    const std::uint32_t next = HandleTimeOutTimer(gZarn.port.timeout);
    if (OperationRunning() && gZarn.port.timeout != 0) SetTimer(window, kTimeOutTimer, next, nullptr);
}

Answer OnTimer(HWND window, WPARAM wParam, LPARAM) {
    if (wParam == kTimeOutTimer) RunTimeOutTimer(window);
    if (wParam == kSelectionTimer) TV_HandleRealSelChange();
    return kDone;
}

Answer OnInitMenuPopup(HWND, WPARAM wParam, LPARAM lParam) {
    if (HIWORD(lParam) == 0) Zarn_HandleInitMenuPopup(reinterpret_cast<HMENU>(wParam), LOWORD(lParam));
    return kDone;
}

Answer OnMenuSelect(HWND, WPARAM wParam, LPARAM lParam) {
    const bool closed = HIWORD(wParam) == 0xFFFF && lParam == 0;
    const bool isCommand = (HIWORD(wParam) & (MF_POPUP | MF_SEPARATOR)) == 0;
    ShowMenuHelp(!closed && isCommand ? LOWORD(wParam) : 0);
    return kDone;
}

Answer OnContextMenu(HWND window, WPARAM, LPARAM lParam) {
    Zarn_OnContextMenu(window, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
    return kDone;
}

Answer OnLeftButtonDown(HWND window, WPARAM, LPARAM lParam) {
    const POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
    if (CommandsRefused() || !OverSplitter(point)) return kDone;
    if (const std::optional<int> split = TV_HandleSplitDrag(window, point)) Tree_MoveSplit(window, *split);
    return kDone;
}

Answer OnRightButtonDown(HWND, WPARAM, LPARAM) {
    return CommandsRefused() ? kDone : Answer();
}

Answer OnDropFiles(HWND, WPARAM wParam, LPARAM) {
    OnShellDrop(reinterpret_cast<HDROP>(wParam));
    return kDone;
}

Answer OnDpiChanged(HWND window, WPARAM wParam, LPARAM lParam) {
    ChangeDpi(window, HIWORD(wParam), *reinterpret_cast<RECT*>(lParam));
    return kDone;
}

struct MessageHandler {
    UINT message;
    Answer (*handler)(HWND window, WPARAM wParam, LPARAM lParam);
};

// The most frequent ones first.
constexpr MessageHandler kHandlers[] = {
    {WM_NOTIFY, OnNotify},
    {WM_SETCURSOR, OnSetCursor},
    {kUiCallMessage, OnUiCall},
    {kRefreshMessage, OnRefresh},
    {WM_TIMER, OnTimer},
    {WM_COMMAND, OnCommand},
    {WM_KEYDOWN, OnKeyDown},
    {WM_MOVE, OnMove},
    {WM_SIZE, OnSize},
    {WM_GETMINMAXINFO, OnGetMinMaxInfo},
    {WM_DPICHANGED, OnDpiChanged},
    {WM_SETFOCUS, OnSetFocus},
    {WM_LBUTTONDOWN, OnLeftButtonDown},
    {WM_RBUTTONDOWN, OnRightButtonDown},
    {WM_CONTEXTMENU, OnContextMenu},
    {WM_INITMENUPOPUP, OnInitMenuPopup},
    {WM_MENUSELECT, OnMenuSelect},
    {WM_HELP, OnHelp},
    {WM_SYSCOMMAND, OnSysCommand},
    {WM_DROPFILES, OnDropFiles},
    {kBeginDragMessage, OnBeginDrag},
    {kColumnResizedMessage, OnColumnResized},
    {kDisconnectMessage, OnDisconnectMessage},
    {WM_CREATE, OnCreate},
    {WM_CLOSE, OnClose},
    {WM_DESTROY, OnDestroy},
};

}  // namespace

LRESULT CALLBACK MainWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    for (const MessageHandler& entry : kHandlers) {
        if (entry.message != message) continue;
        if (const Answer answer = entry.handler(window, wParam, lParam)) return *answer;
        break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}
