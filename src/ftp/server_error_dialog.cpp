#include "ftp/server_error_dialog.h"

#include <windows.h>

#include <string>

#include "foundation/error_report.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/error_texts.h"
#include "platform/system.h"
#include "resources/resource.h"

namespace {

void FillFields(HWND dialog, const ServerErrorFields& fields) {
    SetItemText(dialog, IDC_ERROR_CODE, std::to_string(fields.code));
    SetItemText(dialog, IDC_ERROR_REPLY, WithCrLf(fields.returned));
    SetItemText(dialog, IDC_ERROR_DEFINITION, WithCrLf(fields.definition));
    SetItemText(dialog, IDC_ERROR_TASK, WithCrLf(fields.task));
}

INT_PTR CALLBACK ServerErrorDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        FillFields(dialog, *reinterpret_cast<const ServerErrorFields*>(lParam));
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    const WORD command = LOWORD(wParam);
    if (command != IDOK && command != IDCANCEL) return FALSE;
    EndDialog(dialog, command);
    return TRUE;
}

}  // namespace

void ShowServerErrorDialog(WindowHandle owner, int operation, const char* reply) {
    constexpr char kFuncName[] = "ShowServerErrorDialog";
    DbgVsprintf(kFuncName, "Entered");
    const ServerErrorFields fields = SetSrvErrorDlgItems(operation, reply != nullptr ? reply : "");
    const INT_PTR result = DialogBoxParamW(GetModuleHandleW(nullptr), L"ServerErrorDlg", owner, ServerErrorDlgProc,
                                           reinterpret_cast<LPARAM>(&fields));
    if (result <= 0) DbgPrintApiError(kFuncName, "DialogBoxParam()", platform::LastSystemError());
}
