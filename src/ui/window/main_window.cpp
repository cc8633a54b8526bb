#include "ui/window/main_window.h"

#include <commctrl.h>
#include <shellapi.h>

#include <string>
#include <utility>

#include "config/file_types.h"
#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/console_pane.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/data/dump_file.h"
#include "ftp/login/stop.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "resources/resource.h"
#include "ui/bars/status_bar.h"
#include "ui/bars/titles.h"
#include "ui/browse/tree_notify.h"
#include "ui/browse/tree_selection.h"
#include "ui/commands/command_table.h"
#include "ui/commands/help.h"
#include "ui/commands/toolbar.h"
#include "ui/panes/list_columns.h"
#include "ui/panes/list_images.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/dpi.h"
#include "ui/screen/messages.h"
#include "ui/screen/modal_dialog.h"
#include "ui/screen/redraw_pause.h"
#include "ui/screen/refresh.h"
#include "ui/screen/ui_calls.h"
#include "ui/window/layout.h"
#include "ui/window/placement.h"

namespace {

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

// Names for screen readers, for controls that show no text of their own.
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

// The console is shown at the next start if it was shown at the end of this one.
void NoteConsole() {
    gZarn.VERBOSE = ConsoleWindow() != nullptr;
    ChangeSBText();
}

bool InitTreeAndList(HWND mainWindow) {
    InstallTreeHandlers();
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

bool RegisterMainWindowClass(WNDPROC procedure) {
    WNDCLASSEXW description{};
    description.cbSize = sizeof(description);
    description.lpfnWndProc = procedure;
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

void ChangeDpi(HWND window, UINT dpi, const RECT& suggested) {
    const UINT before = std::exchange(gApp.dpi, dpi);
    HFONT old = gApp.paneFont;
    gApp.paneFont = MakePaneFont();
    SetPaneFonts();
    SetConsoleFont(gApp.paneFont);
    DeleteObject(old);
    InitTreeViewImageLists(dpi);
    {
        const RedrawPause pause(ListWindow());
        ResizeListImages(ListWindow(), dpi);
        RescaleColumns(ListWindow(), before, dpi);
    }
    RecreateTheToolbar(window);
    SetWindowPos(window, nullptr, suggested.left, suggested.top, suggested.right - suggested.left,
                 suggested.bottom - suggested.top, SWP_NOZORDER | SWP_NOACTIVATE);
    // Needed where the size stays the same.
    Zarn_NewSize(window);
}

void Zarn_OnClose(HWND window) {
    DbgVsprintf("Zarn_OnClose", "Entered");
    if (window != gApp.mainWindow) {
        DestroyWindow(window);
        return;
    }
    // An open question must be answered first: it may come from the worker that closing waits for.
    if (HWND dialog = OpenModalDialog()) {
        MessageBeep(MB_ICONEXCLAMATION);
        SetForegroundWindow(dialog);
        return;
    }
    RememberPlacement(window);
    SetExiting();
    ChangeSBText();
    if (gZarn.SAVEONEXIT != 0) ProcessCommandsWndProc(window, IDM_SAVECFG);
    if (WorkerRunning()) {
        DoPrintIdArgs(MSG_KILLING_ACTIVE_THREAD);
        StopWorker(kWorkerEndMs);
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
