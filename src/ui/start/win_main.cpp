// The program's entry point: start-up, message loop, shut-down.
#include <windows.h>

#include <commctrl.h>
#include <ole2.h>

#include "config/defaults_store.h"
#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/log_file.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "foundation/trace_sinks.h"
#include "foundation/wide_text_window.h"
#include "ftp/errors/error_texts.h"
#include "ftp/login/local_host.h"
#include "ftp/worker/session_state.h"
#include "platform/sockets.h"
#include "platform/system.h"
#include "resources/resource.h"
#include "transfer/progress_dialog.h"
#include "ui/browse/local_computer.h"
#include "ui/browse/tree_selection.h"
#include "ui/commands/help.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/pane_focus.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/refresh.h"
#include "ui/screen/ui_calls.h"
#include "ui/start/command_line.h"
#include "ui/start/known_folders.h"
#include "ui/start/views.h"
#include "ui/window/layout.h"
#include "ui/window/main_window.h"
#include "ui/window/main_wndproc.h"

namespace {

constexpr char kFuncName[] = "WinMain";
constexpr std::size_t kShortNameLength = 20;
constexpr std::size_t kLongNameLength = 40;

void ShowStartupError(unsigned messageId) {
    ShowMessageBox(CatalogueText(messageId).c_str(), gApp.longName.c_str(), BoxButtons::Ok, BoxIcon::Stop);
}

bool StartNetwork(std::string& library) {
    const int error = platform::StartSockets(library);
    if (error == 0) return true;
    const OwnedText text = GetWsaErrorText(error);
    DbgVsprintf(kFuncName, "(%s) call to WSAStartup() Failed.\n\tErr:%d:%s", kFuncName, error, text.c_str());
    std::string caption = CatalogueText(MSG_LONG_PRODUCT_NAME);
    if (caption.empty()) caption = "ZARN - WSAStartup";
    ShowMessageBox(text.c_str(), caption.c_str(), BoxButtons::Ok, BoxIcon::Stop);
    return false;
}

void LoadNames() {
    gApp.shortName = CatalogueText(MSG_SHORT_PRODUCT_NAME).substr(0, kShortNameLength);
    gApp.longName = CatalogueText(MSG_LONG_PRODUCT_NAME).substr(0, kLongNameLength);
}

bool CreateWindows() {
    if (!RegisterMainWindowClass(MainWndProc)) {
        ShowStartupError(MSG_REGISTER_CLASS_FAILED);
        return false;
    }
    LoadConfiguration();
    gTrace.verbose = gZarn.VERBOSE != 0;
    INITCOMMONCONTROLSEX controls{sizeof(controls), ICC_WIN95_CLASSES};
    InitCommonControlsEx(&controls);
    gApp.mainWindow = CreateTheMainWindow();
    if (gApp.mainWindow == nullptr) {
        ShowStartupError(MSG_CREATE_WINDOW_FAILED);
        return false;
    }
    StartUiCalls(gApp.mainWindow);
    TVobject* last = FillTreePane(gZarn.SESSION.c_str());
    AddLocalComputer();
    if (last != nullptr) SelectNode(last);
    return true;
}

// The window stays hidden when there are files on the command line.
void ShowTheWindow(int show) {
    if (gApp.commandLineFileCount > 0) {
        show = SW_HIDE;
    } else if (gZarn.bMaximized != 0) {
        show = SW_SHOWMAXIMIZED;
    }
    Zarn_NewSize(gApp.mainWindow);
    ShowWindow(gApp.mainWindow, show);
    UpdateWindow(gApp.mainWindow);
}

// Escape stops a running operation; menus and toolbar have no command for it.
bool IsAbortKey(const MSG& message) {
    return message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE && OperationRunning();
}

int RunMessageLoop(HACCEL accelerators) {
    MSG message{};
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        HWND transfer = reinterpret_cast<HWND>(TransferDialogWindow());
        if (transfer != nullptr && IsDialogMessageW(transfer, &message)) continue;
        if (IsAbortKey(message)) {
            PostMessageW(gApp.mainWindow, WM_COMMAND, IDM_ABORT, 0);
            continue;
        }
        // A label's edit field gets all keys.
        const bool editing =
            TreeView_GetEditControl(TreeWindow()) != nullptr || ListView_GetEditControl(ListWindow()) != nullptr;
        if (!editing && accelerators != nullptr && TranslateAcceleratorW(gApp.mainWindow, accelerators, &message))
            continue;
        if (!editing && HandleFocusKey(message)) continue;
        TranslateMessage(&message);
        DispatchMessageW(&message);
    }
    return static_cast<int>(message.wParam);
}

int RunProgram(const std::string& commandLine, int show) {
    const std::string program = platform::ProgramPath();
    gApp.helpFile = HelpFileFor(program);
    if (gApp.helpFile.empty()) return 0;
    EnterStartFolder(program);
    if (WantsDebugTrace(commandLine)) gTrace.debug = true;
    InstallViews();
    std::string library;
    if (!StartNetwork(library)) return 0;
    LoadNames();
    const CommandLineFiles files = FilesInArgv(WithoutDebugSwitch(commandLine));
    gApp.commandLineFiles = files.names;
    gApp.commandLineFileCount = files.count;
    // Without a resolvable name the program still starts: the first control connection supplies the address.
    // Quirk: the trace is misspelt, kept.
    if (!GetLocalInfo(library.c_str())) DbgVsprintf(kFuncName, "Call to GetLocalInfo() Ffailed. Returing FALSE");
    int exitCode = 0;
    if (CreateWindows()) {
        ShowTheWindow(show);
        HACCEL accelerators = LoadAcceleratorsW(gApp.instance, L"Zarn_Accelerator");
        if (accelerators == nullptr) ShowStartupError(MSG_NO_ACCELERATORS);
        if (gApp.commandLineFileCount > 0) {
            PostMessageW(gApp.mainWindow, WM_COMMAND, IDM_LOGIN_SEND, 0);
        } else if (gZarn.AUTOSTART != 0) {
            PostMessageW(gApp.mainWindow, WM_COMMAND, IDM_CONNECT, 0);
        }
        SetFocus(TreeWindow());
        RefreshWindowState();
        exitCode = RunMessageLoop(accelerators);
    }
    platform::StopSockets();
    UnregisterClassW(Wide(gApp.shortName).c_str(), gApp.instance);
    return exitCode;
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR commandLine, int show) {
    gApp.instance = instance;
    // The program reports a drive without a disk itself; the system would ask for one.
    SetErrorMode(SEM_FAILCRITICALERRORS);
    ConnectTraceSinks();
    OpenLogMutex();
    gApp.buttonMutex = CreateMutexW(nullptr, FALSE, L"BtnStateMutex");
    const int exitCode = RunProgram(Narrow(commandLine), show);
    DbgVsprintf(kFuncName, "After Message Loop. Doing Cleanup");
    CloseHandle(gApp.buttonMutex);
    CloseLogMutex();
    CloseLogfile();
    return exitCode;
}
