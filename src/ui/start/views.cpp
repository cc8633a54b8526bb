#include "ui/start/views.h"

#include <windows.h>

#include "foundation/catalogue.h"
#include "foundation/console_pane.h"
#include "foundation/foundation_view.h"
#include "foundation/wide_text_window.h"
#include "ftp/dialogs/ask_text_dialog.h"
#include "ftp/dialogs/server_error_dialog.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/session_view.h"
#include "listing/listing_view.h"
#include "resources/resource.h"
#include "transfer/progress_dialog.h"
#include "transfer/transfer_progress.h"
#include "transfer/transfer_view.h"
#include "ui/bars/status_bar.h"
#include "ui/commands/command_table.h"
#include "ui/drag/drops.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/messages.h"
#include "ui/screen/refresh.h"
#include "ui/screen/ui_calls.h"
#include "ui/start/views_listing.h"

namespace {

UINT BoxStyle(BoxButtons buttons, BoxIcon icon) {
    UINT style = MB_TASKMODAL;
    switch (buttons) {
        case BoxButtons::Ok:
            style |= MB_OK;
            break;
        case BoxButtons::OkCancel:
            style |= MB_OKCANCEL;
            break;
        case BoxButtons::YesNo:
            style |= MB_YESNO;
            break;
        case BoxButtons::AbortRetryIgnore:
            style |= MB_ABORTRETRYIGNORE;
            break;
    }
    switch (icon) {
        case BoxIcon::None:
            break;
        case BoxIcon::Information:
            style |= MB_ICONINFORMATION;
            break;
        case BoxIcon::Question:
            style |= MB_ICONQUESTION;
            break;
        case BoxIcon::Exclamation:
            style |= MB_ICONEXCLAMATION;
            break;
        case BoxIcon::Stop:
            style |= MB_ICONSTOP;
            break;
    }
    return style;
}

BoxAnswer Answer(int button) {
    switch (button) {
        case IDOK:
            return BoxAnswer::Ok;
        case IDCANCEL:
            return BoxAnswer::Cancel;
        case IDYES:
            return BoxAnswer::Yes;
        case IDNO:
            return BoxAnswer::No;
        case IDABORT:
            return BoxAnswer::Abort;
        case IDRETRY:
            return BoxAnswer::Retry;
        case IDIGNORE:
            return BoxAnswer::Ignore;
        default:
            return BoxAnswer::None;
    }
}

// The owner of a box: the front-most open dialog, else the main window.
HWND BoxOwner() {
    HWND owner = reinterpret_cast<HWND>(ShownTransferDialog());
    if (owner == nullptr) owner = gApp.mainWindow;
    const HWND front = GetLastActivePopup(owner);
    return front != nullptr && IsWindowVisible(front) && IsWindowEnabled(front) ? front : owner;
}

BoxAnswer ShowBox(const char* text, const char* caption, BoxButtons buttons, BoxIcon icon) {
    const auto show = [&] {
        return Answer(MessageBoxW(BoxOwner(), Wide(text).c_str(), Wide(caption).c_str(), BoxStyle(buttons, icon)));
    };
    // On exit the window waits for the worker, so the worker must not wait for an answer.
    if (gSession.exiting) return BoxAnswer::None;
    // Before there is a main window the caller shows its boxes itself.
    return gApp.mainWindow == nullptr ? show() : RunOnUi(show);
}

void PrintLine(const char* text) {
    ConsolePrint(text);
}

void SetStatusText(const char* text) {
    RunOnUi([&] { ShowStatusText(text); });
}

bool AskText(const TextQuestion& question, std::string& answer) {
    if (gSession.exiting) return false;
    return RunOnUi([&] { return ShowAskTextDialog(reinterpret_cast<WindowHandle>(BoxOwner()), question, answer); });
}

void ShowServerErrorBox(int operation, const char* reply) {
    if (gSession.exiting) return;
    RunOnUi([&] { ShowServerErrorDialog(reinterpret_cast<WindowHandle>(BoxOwner()), operation, reply); });
}

bool SiteHasNode(const Site* site) {
    return RunOnUi([&] { return NodeOfSite(site) != nullptr; });
}

// Posted, because the worker that noticed the lost connection must end before its site is disconnected.
void PostDisconnect(Site* site) {
    PostMessageW(gApp.mainWindow, kDisconnectMessage, 0, reinterpret_cast<LPARAM>(site));
}

void CloseProgram() {
    PostMessageW(gApp.mainWindow, WM_CLOSE, 0, 0);
}

void SaveConfigurationNow() {
    RunOnUi([] { ProcessCommandsWndProc(gApp.mainWindow, IDM_SAVECFG); });
}

// Waits for the worker while serving the messages that it sends, so that neither blocks the other.
bool WaitForThread(platform::ThreadHandle thread, std::uint32_t milliseconds) {
    HANDLE handle = reinterpret_cast<HANDLE>(thread);
    const DWORD start = GetTickCount();
    while (true) {
        const DWORD passed = GetTickCount() - start;
        if (passed >= milliseconds) return WaitForSingleObject(handle, 0) == WAIT_OBJECT_0;
        const DWORD result = MsgWaitForMultipleObjects(1, &handle, FALSE, milliseconds - passed, QS_SENDMESSAGE);
        if (result == WAIT_OBJECT_0) return true;
        MSG message{};
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | (QS_SENDMESSAGE << 16));
    }
}

}  // namespace

void InstallViews() {
    gFoundationView = {PrintLine, ShowBox};
    gSessionView.setStatusText = SetStatusText;
    gSessionView.askText = AskText;
    gSessionView.showServerError = ShowServerErrorBox;
    gSessionView.refreshWindow = PostRefreshWindowState;
    gSessionView.siteHasNode = SiteHasNode;
    gSessionView.postDisconnect = PostDisconnect;
    gSessionView.closeProgram = CloseProgram;
    gSessionView.saveConfiguration = SaveConfigurationNow;
    gSessionView.setTransferProgress = ShowTransferProgress;
    gSessionView.waitForThread = WaitForThread;
    FillTransferView(gTransferView);
    FillDropView(gTransferView);
    InstallListingView();
}
