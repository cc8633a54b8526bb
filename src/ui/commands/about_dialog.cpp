#include "ui/commands/about_dialog.h"

#include "ui/screen/app.h"

namespace {

INT_PTR CALLBACK AboutDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    if (message == WM_INITDIALOG) return TRUE;
    if (message == WM_COMMAND && (LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL)) {
        EndDialog(dialog, LOWORD(wParam));
        return TRUE;
    }
    return FALSE;
}

}  // namespace

void ShowAboutDialog(HWND owner) {
    DialogBoxParamW(gApp.instance, L"AboutDlg", owner, AboutDlgProc, 0);
}
