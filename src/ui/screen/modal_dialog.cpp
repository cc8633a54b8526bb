#include "ui/screen/modal_dialog.h"

#include <cwchar>

#include "transfer/progress_dialog.h"

namespace {

BOOL CALLBACK FindModalDialog(HWND window, LPARAM found) {
    wchar_t name[16] = L"";
    GetClassNameW(window, name, 16);
    const bool isDialog = wcscmp(name, L"#32770") == 0 && window != reinterpret_cast<HWND>(TransferDialogWindow());
    if (!isDialog || !IsWindowVisible(window) || !IsWindowEnabled(window)) return TRUE;
    *reinterpret_cast<HWND*>(found) = window;
    return FALSE;
}

}  // namespace

HWND OpenModalDialog() {
    HWND found = nullptr;
    EnumThreadWindows(GetCurrentThreadId(), FindModalDialog, reinterpret_cast<LPARAM>(&found));
    return found;
}
