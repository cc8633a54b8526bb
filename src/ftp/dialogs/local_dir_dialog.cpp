#include "ftp/dialogs/local_dir_dialog.h"

#include <windows.h>

#include <string>

#include "foundation/catalogue.h"
#include "foundation/error_text.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "platform/files.h"
#include "platform/system.h"
#include "resources/resource.h"

namespace {

constexpr char kFuncName[] = "ChangeCWDProc";
constexpr int kChanged = 1;
constexpr int kUnchanged = 0;

bool IsLetter(char character) {
    return (character >= 'A' && character <= 'Z') || (character >= 'a' && character <= 'z');
}

// "C:" alone would mean the drive's own current folder, which the user does not see.
std::string FolderToEnter(std::string text) {
    if (text.size() == 2 && IsLetter(text[0]) && text[1] == ':') text += '\\';
    return text;
}

std::string RefusalText(const std::string& folder, std::uint32_t error) {
    if (folder.empty()) return CatalogueText(MSG_DIRECTORY_NAME_INVALID);
    return Zarn_ResVsprintf(MSG_SET_LOCAL_DIRECTORY_FAILED, folder, GetErrorText(error).c_str()).c_str();
}

void SelectField(HWND dialog) {
    const HWND field = GetDlgItem(dialog, IDC_LOCAL_DIR);
    SetFocus(field);
    SendMessageW(field, EM_SETSEL, 0, -1);
}

void OnInitDialog(HWND dialog) {
    SendDlgItemMessageW(dialog, IDC_LOCAL_DIR, EM_SETLIMITTEXT, kTextBuffer - 1, 0);
    SetItemText(dialog, IDC_LOCAL_DIR, platform::CurrentFolder());
    SelectField(dialog);
}

void OnOk(HWND dialog) {
    std::string folder = ItemText(dialog, IDC_LOCAL_DIR);
    if (folder.size() > kTextBuffer - 1) folder.resize(kTextBuffer - 1);
    folder = FolderToEnter(std::move(folder));
    if (!folder.empty() && platform::SetCurrentFolder(folder.c_str())) {
        EndDialog(dialog, kChanged);
        return;
    }
    const std::uint32_t error = platform::LastSystemError();
    DbgVsprintf(kFuncName, "ERROR. Call to SetCurrentDirectory(%s) Failed!", folder.c_str());
    const std::string text = RefusalText(folder, error);
    if (ShowMessageBox(text.c_str(), nullptr, BoxButtons::OkCancel, BoxIcon::Exclamation) == BoxAnswer::Cancel) {
        EndDialog(dialog, kUnchanged);
        return;
    }
    SelectField(dialog);
}

INT_PTR CALLBACK ChangeCWDProc(HWND dialog, UINT message, WPARAM wParam, LPARAM) {
    switch (message) {
        case WM_INITDIALOG:
            OnInitDialog(dialog);
            return FALSE;  // the focus is set
        case WM_COMMAND:
            if (LOWORD(wParam) == IDOK) OnOk(dialog);
            if (LOWORD(wParam) == IDCANCEL) EndDialog(dialog, kUnchanged);
            return LOWORD(wParam) == IDOK || LOWORD(wParam) == IDCANCEL;
        default:
            return FALSE;
    }
}

}  // namespace

bool ShowLocalDirDialog(WindowHandle owner) {
    DbgVsprintf(kFuncName, "Entered");
    return DialogBoxParamW(GetModuleHandleW(nullptr), L"LocalDirDlg", owner, ChangeCWDProc, 0) == kChanged;
}
