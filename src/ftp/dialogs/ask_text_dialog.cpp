#include "ftp/dialogs/ask_text_dialog.h"

#include <windows.h>

#include "foundation/text_fit_window.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "resources/resource.h"

namespace {

constexpr char kFuncName[] = "AskTextDlgProc";
constexpr int kMostPromptLines = 8;

struct Asking {
    const TextQuestion& question;
    std::string& answer;
};

void OnInitDialog(HWND dialog, const Asking& asking) {
    SetText(dialog, asking.question.caption);
    SetItemText(dialog, IDC_ASK_PROMPT, asking.question.prompt);
    FitDialogToText(dialog, IDC_ASK_PROMPT, kMostPromptLines);
    SendDlgItemMessageW(dialog, IDC_ASK_TEXT, EM_SETLIMITTEXT, asking.question.longest, 0);
    SetItemText(dialog, IDC_ASK_TEXT, asking.answer);
}

// The field counts characters, the limit is one of bytes: a text of many bytes per character may still be too long.
bool AnswerFits(HWND dialog, const Asking& asking) {
    return ItemText(dialog, IDC_ASK_TEXT).size() <= asking.question.longest;
}

bool OnCommand(HWND dialog, WORD command, WORD notification, const Asking& asking) {
    switch (command) {
        case IDC_ASK_TEXT:
            if (notification == EN_CHANGE) EnableWindow(GetDlgItem(dialog, IDOK), AnswerFits(dialog, asking));
            return true;
        case IDOK:
            if (!AnswerFits(dialog, asking)) return true;
            asking.answer = ItemText(dialog, IDC_ASK_TEXT);
            EndDialog(dialog, IDOK);
            return true;
        case IDCANCEL:
            EndDialog(dialog, IDCANCEL);
            return true;
        default:
            return false;
    }
}

INT_PTR CALLBACK AskTextDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        SetWindowLongPtrW(dialog, DWLP_USER, lParam);
        OnInitDialog(dialog, *reinterpret_cast<const Asking*>(lParam));
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    // The field reports changes while the dialog is still being made.
    const auto* asking = reinterpret_cast<const Asking*>(GetWindowLongPtrW(dialog, DWLP_USER));
    return asking != nullptr && OnCommand(dialog, LOWORD(wParam), HIWORD(wParam), *asking);
}

}  // namespace

bool ShowAskTextDialog(WindowHandle owner, const TextQuestion& question, std::string& answer) {
    DbgVsprintf(kFuncName, "Entered");
    const Asking asking{question, answer};
    const wchar_t* dialog = question.isSecret ? L"AskPasswordDlg" : L"AskTextDlg";
    const INT_PTR result =
        DialogBoxParamW(GetModuleHandleW(nullptr), dialog, owner, AskTextDlgProc, reinterpret_cast<LPARAM>(&asking));
    DbgVsprintf(kFuncName, "Returning %s", result == IDOK ? "TRUE" : "FALSE");
    return result == IDOK;
}
