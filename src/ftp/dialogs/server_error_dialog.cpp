#include "ftp/dialogs/server_error_dialog.h"

#include <windows.h>

#include <string>

#include "foundation/error_report.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/errors/server_error.h"
#include "platform/system.h"
#include "resources/resource.h"

namespace {

int LineHeight(HWND field) {
    const HDC context = GetDC(field);
    const HGDIOBJ font = reinterpret_cast<HGDIOBJ>(SendMessageW(field, WM_GETFONT, 0, 0));
    const HGDIOBJ before = SelectObject(context, font);
    TEXTMETRICW metrics{};
    GetTextMetricsW(context, &metrics);
    SelectObject(context, before);
    ReleaseDC(field, context);
    return metrics.tmHeight;
}

// A scroll bar is shown where there is something to scroll.
void SetLongText(HWND dialog, int item, const std::string& text) {
    const HWND field = GetDlgItem(dialog, item);
    SetText(field, WithCrLf(text));
    RECT area{};
    SendMessageW(field, EM_GETRECT, 0, reinterpret_cast<LPARAM>(&area));
    const auto lines = static_cast<int>(SendMessageW(field, EM_GETLINECOUNT, 0, 0));
    if (lines * LineHeight(field) <= area.bottom - area.top) ShowScrollBar(field, SB_VERT, FALSE);
}

void FillFields(HWND dialog, const ServerErrorFields& fields) {
    SetItemText(dialog, IDC_ERROR_CODE, std::to_string(fields.code));
    SetLongText(dialog, IDC_ERROR_REPLY, fields.returned);
    SetItemText(dialog, IDC_ERROR_DEFINITION, WithCrLf(fields.definition));
    SetLongText(dialog, IDC_ERROR_TASK, fields.task);
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
