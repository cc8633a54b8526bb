#include "ui/window/main_window.h"

#include <commctrl.h>
#include <shellapi.h>
#include <windowsx.h>

#include <algorithm>
#include <utility>

#include "config/defaults_store.h"
#include "config/file_types.h"
#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/console_pane.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/data/dump_file.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "resources/resource.h"
#include "ui/bars/status_bar.h"
#include "ui/bars/titles.h"
#include "ui/browse/command_context.h"
#include "ui/browse/tree_selection.h"
#include "ui/commands/command_table.h"
#include "ui/commands/help.h"
#include "ui/commands/menus.h"
#include "ui/commands/toolbar.h"
#include "ui/drag/drag_drop.h"
#include "ui/drag/drops.h"
#include "ui/panes/list_columns.h"
#include "ui/panes/list_images.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/dpi.h"
#include "ui/screen/messages.h"
#include "ui/screen/modal_dialog.h"
#include "ui/screen/pane_colors.h"
#include "ui/screen/refresh.h"
#include "ui/screen/ui_calls.h"
#include "ui/screen/wide_text.h"
#include "ui/window/splitter.h"

namespace {

constexpr int kTitleBarHeight = 20;  // bars above the panes, pixels at 96 dpi
constexpr int kSmallestWidth = 480;  // pixels at 96 dpi
constexpr int kSmallestHeight = 320;
constexpr int kFirstWidth = 980;
constexpr int kFirstHeight = 640;
constexpr std::uint32_t kWorkerEnd = 5000;  // milliseconds that a worker gets to end when the window closes

HWND CreateTitleBar(HWND parent) {
    return CreateWindowExW(
        0, L"STATIC", L"",
        WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | SS_LEFT | SS_CENTERIMAGE | SS_NOPREFIX | SS_ENDELLIPSIS, 0, 0, 0, 0,
        parent, nullptr, gApp.instance, nullptr);
}

void SetPaneFonts() {
    // The list gives its font to the headings only while it shows them.
    HWND headings = ListWindow() != nullptr ? ListView_GetHeader(ListWindow()) : nullptr;
    for (HWND pane : {headings, TreeWindow(), ListWindow(), gApp.treeTitle, gApp.listTitle, gApp.statusBar}) {
        if (pane != nullptr) SendMessageW(pane, WM_SETFONT, reinterpret_cast<WPARAM>(gApp.paneFont), TRUE);
    }
}

// What a screen reader calls the controls that show no text of their own.
void NamePanes() {
    SetText(TreeWindow(), CatalogueText(MSG_NAME_OF_TREE));
    SetText(ListWindow(), CatalogueText(MSG_NAME_OF_LIST));
    SetText(gApp.toolbar, CatalogueText(MSG_NAME_OF_TOOLBAR));
}

// Height 13, width 6, weight 400 at 96 dpi, with the character set of the user's language.
HFONT MakePaneFont() {
    DWORD charset = ANSI_CHARSET;
    switch (PRIMARYLANGID(GetUserDefaultLangID())) {
        case LANG_JAPANESE:
            charset = SHIFTJIS_CHARSET;
            break;
        case LANG_KOREAN:
            charset = HANGEUL_CHARSET;
            break;
        default:
            break;
    }
    return CreateFontW(Scaled(13), Scaled(6), 0, 0, FW_NORMAL, FALSE, FALSE, FALSE, charset, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE, L"MS Shell Dlg");
}

// Not before the window is shown: while it is made it is neither maximised nor where it will stand.
void RememberPlacement(HWND window) {
    if (gSession.exiting || !IsWindowVisible(window)) return;
    gZarn.bMinimized = IsIconic(window) != 0;
    gZarn.bMaximized = IsZoomed(window) != 0;
    if (gZarn.bMinimized != 0 || gZarn.bMaximized != 0) return;
    RECT place{};
    GetWindowRect(window, &place);
    gZarn.xPos = place.left;
    gZarn.yPos = place.top;
    gZarn.nWidth = place.right - place.left;
    gZarn.nHeight = place.bottom - place.top;
}

// A stored place that no screen shows any more (a screen was taken away) is replaced by the system's choice.
bool IsOnAScreen(const RECT& place) {
    return MonitorFromRect(&place, MONITOR_DEFAULTTONULL) != nullptr;
}

RECT FirstPlacement() {
    const bool stored =
        gZarn.xPos != kDefaultPlacement && gZarn.nWidth != kDefaultPlacement && gZarn.nWidth > 0 && gZarn.nHeight > 0;
    if (stored) {
        const RECT place{gZarn.xPos, gZarn.yPos, gZarn.xPos + gZarn.nWidth, gZarn.yPos + gZarn.nHeight};
        if (IsOnAScreen(place)) return {gZarn.xPos, gZarn.yPos, gZarn.nWidth, gZarn.nHeight};
    }
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    const LONG width = std::min<LONG>(Scaled(kFirstWidth), work.right - work.left);
    const LONG height = std::min<LONG>(Scaled(kFirstHeight), work.bottom - work.top);
    return {CW_USEDEFAULT, CW_USEDEFAULT, width, height};
}

void OnTimeOutTimer(HWND window) {
    KillTimer(window, kTimeOutTimer);
    const std::uint32_t next = HandleTimeOutTimer(gZarn.port.timeout);
    if (OperationRunning() && gZarn.port.timeout != 0) SetTimer(window, kTimeOutTimer, next, nullptr);
}

// The time-out timer runs while an operation does.
void UpdateTimeOutTimer() {
    static bool running = false;
    const bool wanted = OperationRunning() && gZarn.port.timeout != 0;
    if (wanted == running) return;
    running = wanted;
    if (wanted) {
        SetTimer(gApp.mainWindow, kTimeOutTimer, gZarn.port.timeout * 1000, nullptr);
    } else {
        KillTimer(gApp.mainWindow, kTimeOutTimer);
    }
}

bool OnSetCursor(HWND window) {
    if (CommandsRefused()) {
        SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_WAIT)));
        return true;
    }
    POINT point{};
    GetCursorPos(&point);
    ScreenToClient(window, &point);
    if (!OverSplitter(point)) return false;
    SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_SIZEWE)));
    return true;
}

void OnMenuSelect(WPARAM wParam, LPARAM lParam) {
    const bool closed = HIWORD(wParam) == 0xFFFF && lParam == 0;
    const bool isCommand = (HIWORD(wParam) & (MF_POPUP | MF_SEPARATOR)) == 0;
    ShowMenuHelp(!closed && isCommand ? LOWORD(wParam) : 0);
}

bool OnTooltip(NMHDR* header) {
    static std::wstring text;  // the control reads it after the notification
    if (header->code == TTN_GETDISPINFOW) {
        text = Wide(CatalogueText(static_cast<unsigned>(header->idFrom)));
        reinterpret_cast<NMTTDISPINFOW*>(header)->lpszText = text.data();
        return true;
    }
    return false;
}

void NoteFocus(const NMHDR* header) {
    if (header->code != NM_SETFOCUS) return;
    gApp.focus = header->hwndFrom == ListWindow() ? Pane::List : Pane::Tree;
    SetToolbarButtonState();
}

bool OnNotify(NMHDR* header, LRESULT& result) {
    result = 0;
    if (OnTooltip(header)) return true;
    if (header->code == NM_CUSTOMDRAW && header->hwndFrom == TreeWindow()) {
        // Not through the tree's own handler: nothing else has to be refreshed for it.
        result = DrawTreeItem(*reinterpret_cast<NMTVCUSTOMDRAW*>(header));
        return true;
    }
    if (header->hwndFrom == gApp.statusBar && header->code == NM_CLICK) {
        if (!CommandsRefused()) Zarn_ToggleStatus(static_cast<int>(reinterpret_cast<NMMOUSE*>(header)->dwItemSpec));
        return true;
    }
    if (header->hwndFrom == TreeWindow()) NoteFocus(header);
    if (header->hwndFrom == ListWindow()) NoteFocus(header);
    if (TV_NotifyHandler(header, result)) {
        ChangeSBText();
        return true;
    }
    return LV_NotifyHandler(header, result);
}

// The console is shown at the next start if it was shown at the end of this one.
void NoteConsole() {
    gZarn.VERBOSE = ConsoleWindow() != nullptr;
    ChangeSBText();
}

// With the caret in the console neither pane has the focus: commands that act on a selection rest.
void NoteConsoleFocus() {
    gApp.focus = Pane::None;
    SetToolbarButtonState();
}

void SwapFocus() {
    SetFocus(gApp.focus == Pane::Tree ? ListWindow() : TreeWindow());
}

void OnDpiChanged(HWND window, UINT dpi, const RECT& suggested) {
    const UINT before = std::exchange(gApp.dpi, dpi);
    HFONT old = gApp.paneFont;
    gApp.paneFont = MakePaneFont();
    SetPaneFonts();
    SetConsoleFont(gApp.paneFont);
    DeleteObject(old);
    InitTreeViewImageLists(dpi);
    {
        const ListPause pause;
        ResizeListImages(ListWindow(), dpi);
        RescaleColumns(ListWindow(), before, dpi);
    }
    RecreateTheToolbar(window);
    SetWindowPos(window, nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
                 suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
    // Also where the size stayed.
    Zarn_NewSize(window);
}

// A pane that becomes smaller keeps its selected node in sight, unless the user had scrolled away from it.
bool SelectionIsInSight() {
    const HTREEITEM selected = TreeView_GetSelection(TreeWindow());
    RECT place{};
    RECT pane{};
    if (selected == nullptr || !TreeView_GetItemRect(TreeWindow(), selected, &place, TRUE)) return false;
    GetClientRect(TreeWindow(), &pane);
    return place.top >= pane.top && place.bottom <= pane.bottom;
}

bool InitTreeAndList(HWND mainWindow) {
    return CreateTreePane(mainWindow) && CreateListPane(mainWindow);
}

void Refresh() {
    if (gSession.exiting || gApp.mainWindow == nullptr) return;
    UpdateTimeOutTimer();
    Zarn_SetMainWindowText();
    SetToolbarButtonState();
    ChangeSBText();
    SendMessageW(gApp.mainWindow, WM_SETCURSOR, 0, 0);
}

}  // namespace

bool RegisterMainWindowClass() {
    WNDCLASSEXW description{};
    description.cbSize = sizeof(description);
    description.lpfnWndProc = MainWndProc;
    description.hInstance = gApp.instance;
    description.hIcon = LoadIconW(gApp.instance, L"IDI_ZARN");
    description.hIconSm = static_cast<HICON>(LoadImageW(
        gApp.instance, L"IDI_ZARN", IMAGE_ICON, GetSystemMetrics(SM_CXSMICON), GetSystemMetrics(SM_CYSMICON), 0));
    description.hCursor = nullptr;  // set by WM_SETCURSOR
    description.hbrBackground = reinterpret_cast<HBRUSH>(COLOR_BTNFACE + 1);
    description.lpszMenuName = L"ZarnMenu";
    const std::wstring name = Wide(gApp.shortName);
    description.lpszClassName = name.c_str();
    return RegisterClassExW(&description) != 0;
}

HWND CreateTheMainWindow() {
    DbgVsprintf("CreateTheMainWindow", "Entered");
    gApp.dpi = DpiOfWindow(nullptr);
    const RECT place = FirstPlacement();
    return CreateWindowExW(0, Wide(gApp.shortName).c_str(), Wide(gApp.longName).c_str(),
                           WS_OVERLAPPEDWINDOW | WS_CLIPCHILDREN, place.left, place.top, place.right, place.bottom,
                           nullptr, nullptr, gApp.instance, nullptr);
}

bool CreateAppWindows(HWND mainWindow) {
    DbgVsprintf("CreateAppWindows", "Entered");
    gApp.mainWindow = mainWindow;
    InstallRefresh(Refresh);
    // The window may have come up on another screen than the main one.
    gApp.dpi = DpiOfWindow(mainWindow);
    gApp.paneFont = MakePaneFont();
    SetConsoleFont(gApp.paneFont);
    SetConsoleChanged(NoteConsole);
    gApp.treeTitle = CreateTitleBar(mainWindow);
    gApp.listTitle = CreateTitleBar(mainWindow);
    if (!CreateTheToolbar(mainWindow) || !CreateTheStatusWindow(mainWindow)) return false;
    if (!InitTreeAndList(mainWindow)) return false;
    if (gZarn.VERBOSE != 0) Zarn_ShowConsole(mainWindow, false);
    SetPaneFonts();
    NamePanes();
    DragAcceptFiles(mainWindow, TRUE);
    return true;
}

void Zarn_OnSize(HWND window, int width, int height) {
    SendMessageW(gApp.toolbar, TB_AUTOSIZE, 0, 0);
    SendMessageW(gApp.statusBar, WM_SIZE, 0, 0);
    LayoutStatusParts(width);
    const int top = ToolbarHeight();
    const int bottom = height - StatusBarHeight();
    const int console = std::clamp(ConsoleHeight(), 0, std::max(0, (bottom - top) / 2));
    const int panesBottom = bottom - console;
    const int split = ClampSplit(Scaled(gZarn.nSplit), width);
    const int bar = Scaled(kTitleBarHeight);
    const int listLeft = split + Scaled(kSplitterWidth);
    const int panesTop = top + bar;
    const int indent = Scaled(4);

    const bool nodeInSight = SelectionIsInSight();
    HDWP move = BeginDeferWindowPos(5);
    const auto place = [&move](HWND pane, int left, int upper, int wide, int high, UINT flags = 0) {
        if (move != nullptr && pane != nullptr) {
            move = DeferWindowPos(move, pane, nullptr, left, upper, std::max(0, wide), std::max(0, high),
                                  flags | SWP_NOZORDER | SWP_NOACTIVATE);
        }
    };
    // The titles are drawn anew: where they end in an ellipsis depends on their width.
    place(gApp.treeTitle, indent, top, split - indent, bar, SWP_NOCOPYBITS);
    place(gApp.listTitle, listLeft + indent, top, width - listLeft - indent, bar, SWP_NOCOPYBITS);
    place(TreeWindow(), 0, panesTop, split, panesBottom - panesTop);
    place(ListWindow(), listLeft, panesTop, width - listLeft, panesBottom - panesTop);
    place(reinterpret_cast<HWND>(ConsoleWindow()), 0, panesBottom, width, console);
    if (move != nullptr) EndDeferWindowPos(move);
    if (nodeInSight) TreeView_EnsureVisible(TreeWindow(), TreeView_GetSelection(TreeWindow()));
    RememberPlacement(window);
}

void Zarn_NewSize(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    Zarn_OnSize(window, client.right, client.bottom);
}

void Zarn_OnClose(HWND window) {
    DbgVsprintf("Zarn_OnClose", "Entered");
    if (window != gApp.mainWindow) {
        DestroyWindow(window);
        return;
    }
    // A question is answered first: what asked it may be the worker that the close waits for.
    if (HWND dialog = OpenModalDialog()) {
        MessageBeep(MB_ICONEXCLAMATION);
        SetForegroundWindow(dialog);
        return;
    }
    RememberPlacement(window);
    gSession.exiting = true;
    ChangeSBText();
    if (gZarn.SAVEONEXIT != 0) ProcessCommandsWndProc(window, IDM_SAVECFG);
    if (WorkerRunning()) {
        DoPrintIdArgs(MSG_KILLING_ACTIVE_THREAD);
        StopWorker(kWorkerEnd);
    }
    StopUiCalls();
    CancelSelectionTimer();
    DragAcceptFiles(window, FALSE);
    DragAcceptFiles(ListWindow(), FALSE);
    for (HWND pane : {TreeWindow(), ListWindow()}) SendMessageW(pane, WM_SETREDRAW, FALSE, 0);
    ForEachSite([](Site* site, void*) { Zarn_IdmExit(site, 0); }, nullptr);
    gApp.commandLineFiles.clear();
    DeleteListingDumpFile();
    DestroyListPane();
    DestroyTreePane();
    FreeFileTypes();
    CloseHelp(window);
    DestroyWindow(window);
    DeleteObject(gApp.paneFont);
}

LRESULT CALLBACK MainWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case kUiCallMessage:
            return HandleUiCall(wParam, lParam);
        case kRefreshMessage:
            HandleRefreshMessage();
            return 0;
        case WM_CREATE:
            return CreateAppWindows(window) ? 0 : -1;
        case WM_DESTROY:
            gSession.exiting = true;
            PostQuitMessage(0);
            return 0;
        case WM_MOVE:
            RememberPlacement(window);
            return 0;
        case WM_SIZE:
            if (wParam == SIZE_MINIMIZED) return 0;
            Zarn_OnSize(window, LOWORD(lParam), HIWORD(lParam));
            if (gZarn.AUTOSIZE != 0) ReapplyColumns(ListWindow());
            return 0;
        case WM_GETMINMAXINFO:
            reinterpret_cast<MINMAXINFO*>(lParam)->ptMinTrackSize = {Scaled(kSmallestWidth), Scaled(kSmallestHeight)};
            return 0;
        case WM_CLOSE:
            Zarn_OnClose(window);
            return 0;
        case WM_SETFOCUS:
            SetFocus(gApp.focus == Pane::List ? ListWindow() : TreeWindow());
            return 0;
        case WM_SETCURSOR:
            if (LOWORD(lParam) > HTCLIENT && LOWORD(lParam) != HTMENU) break;
            if (OnSetCursor(window)) return TRUE;
            break;
        case WM_KEYDOWN:
            if (wParam == VK_TAB) SwapFocus();
            return 0;
        case WM_NOTIFY: {
            LRESULT result = 0;
            if (OnNotify(reinterpret_cast<NMHDR*>(lParam), result)) return result;
            break;
        }
        case WM_HELP:
            ShowHelpContents(window);
            return TRUE;
        case WM_SYSCOMMAND:
            if ((wParam & 0xFFF0) == SC_CLOSE) ShowClosing();
            break;
        case WM_COMMAND:
            if (HIWORD(wParam) == EN_SETFOCUS && LOWORD(wParam) == IDC_CONSOLE) NoteConsoleFocus();
            if (lParam == 0 || reinterpret_cast<HWND>(lParam) == gApp.toolbar) {
                if (ProcessCommandsWndProc(window, LOWORD(wParam))) return 0;
            }
            break;
        case WM_TIMER:
            if (wParam == kTimeOutTimer) OnTimeOutTimer(window);
            if (wParam == kSelectionTimer) TV_HandleRealSelChange();
            return 0;
        case WM_INITMENUPOPUP:
            if (HIWORD(lParam) == 0) Zarn_HandleInitMenuPopup(reinterpret_cast<HMENU>(wParam), LOWORD(lParam));
            return 0;
        case WM_MENUSELECT:
            OnMenuSelect(wParam, lParam);
            return 0;
        case WM_CONTEXTMENU:
            Zarn_OnContextMenu(window, {GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)});
            return 0;
        case WM_LBUTTONDOWN: {
            const POINT point{GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam)};
            if (!CommandsRefused() && OverSplitter(point)) TV_HandleSplitDrag(window, point);
            return 0;
        }
        case WM_RBUTTONDOWN:
            if (CommandsRefused()) return 0;
            break;
        case kBeginDragMessage:
            RunDrag(window, static_cast<int>(wParam));
            return 0;
        case WM_DROPFILES:
            OnShellDrop(reinterpret_cast<HDROP>(wParam));
            return 0;
        case WM_DPICHANGED:
            OnDpiChanged(window, HIWORD(wParam), *reinterpret_cast<RECT*>(lParam));
            return 0;
        default:
            break;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}
