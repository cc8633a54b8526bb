#include "ui/panes/pane_focus.h"

#include "foundation/console_pane.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/modal_dialog.h"

void FocusOtherPane(HWND from) {
    SetFocus(from == TreeWindow() ? ListWindow() : TreeWindow());
}

bool HandleFocusKey(const MSG& message) {
    if (message.message != WM_KEYDOWN || OpenModalDialog() != nullptr) return false;
    HWND console = reinterpret_cast<HWND>(ConsoleWindow());
    const bool leavesConsole = message.wParam == VK_TAB && console != nullptr && message.hwnd == console;
    if (message.wParam != VK_F6 && !leavesConsole) return false;
    if (message.hwnd == ListWindow() && console != nullptr) {
        SetFocus(console);
    } else {
        FocusOtherPane(message.hwnd);
    }
    return true;
}
