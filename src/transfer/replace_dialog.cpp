#include "transfer/replace_dialog.h"

#include <windows.h>

#include <string>

#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/message_ids.h"
#include "foundation/number_text.h"
#include "foundation/text_fit_window.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "platform/system.h"
#include "resources/resource.h"

namespace {

constexpr char kFuncName[] = "ConfirmReplaceDlgProc";
constexpr int kMostQuestionLines = 8;

unsigned QuestionText(ExistingFile kind) {
    switch (kind) {
        case ExistingFile::ReadOnly:
            return MSG_REPLACE_READ_ONLY_FILE;
        case ExistingFile::System:
            return MSG_REPLACE_SYSTEM_FILE;
        case ExistingFile::Ordinary:
            break;
    }
    return MSG_REPLACE_FILE;
}

std::string SizeText(std::uint64_t size) {
    return Zarn_ResVsprintf(MSG_REPLACE_SIZE, GroupDigits(std::to_string(size))).c_str();
}

// Date and time in the user's own format; empty on failure.
std::string SystemDate(const CalendarTime& calendar) {
    SYSTEMTIME time{};
    time.wYear = static_cast<WORD>(calendar.year);
    time.wMonth = static_cast<WORD>(calendar.month);
    time.wDay = static_cast<WORD>(calendar.day);
    time.wHour = static_cast<WORD>(calendar.hour);
    time.wMinute = static_cast<WORD>(calendar.minute);
    time.wSecond = static_cast<WORD>(calendar.second);
    wchar_t date[128] = L"";
    wchar_t clock[64] = L"";
    if (GetDateFormatW(LOCALE_USER_DEFAULT, DATE_LONGDATE, &time, nullptr, date, static_cast<int>(std::size(date))) ==
            0 ||
        GetTimeFormatW(LOCALE_USER_DEFAULT, 0, &time, nullptr, clock, static_cast<int>(std::size(clock))) == 0) {
        return {};
    }
    return Narrow(date) + ", " + Narrow(clock);
}

std::string DateText(FileTime time) {
    CalendarTime calendar;
    std::string date;
    if (time != 0 && FileTimeToCalendar(time, calendar)) date = SystemDate(calendar);
    if (date.empty()) return CatalogueText(MSG_REPLACE_NO_DATE);
    return Zarn_ResVsprintf(MSG_REPLACE_DATE, date).c_str();
}

void OnInitDialog(HWND dialog, const ReplaceQuestion& question) {
    const MessageInsert inserts[] = {MessageInsert(question.name)};
    SetItemText(dialog, IDC_REPLACE_TEXT, FormatCatalogueText(QuestionText(question.kind), inserts));
    FitDialogToText(dialog, IDC_REPLACE_TEXT, kMostQuestionLines);
    const LPCWSTR icon = question.kind == ExistingFile::Ordinary ? reinterpret_cast<LPCWSTR>(IDI_QUESTION)
                                                                 : reinterpret_cast<LPCWSTR>(IDI_WARNING);
    SendDlgItemMessageW(dialog, IDC_REPLACE_ICON, STM_SETICON, reinterpret_cast<WPARAM>(LoadIconW(nullptr, icon)), 0);
    SetItemText(dialog, IDC_REPLACE_OLD_SIZE, SizeText(question.oldSize));
    SetItemText(dialog, IDC_REPLACE_OLD_DATE, DateText(question.oldTime));
    SetItemText(dialog, IDC_REPLACE_NEW_SIZE, SizeText(question.newSize));
    SetItemText(dialog, IDC_REPLACE_NEW_DATE, DateText(question.newTime));
}

INT_PTR CALLBACK ConfirmReplaceDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        OnInitDialog(dialog, *reinterpret_cast<const ReplaceQuestion*>(lParam));
        return TRUE;
    }
    if (message != WM_COMMAND) return FALSE;
    switch (LOWORD(wParam)) {
        case IDYES:
        case IDC_REPLACE_YES_TO_ALL:
        case IDNO:
        case IDCANCEL:
            EndDialog(dialog, LOWORD(wParam));
            return TRUE;
        default:
            return FALSE;
    }
}

}  // namespace

ReplaceAnswer ShowReplaceDialog(WindowHandle owner, const ReplaceQuestion& question) {
    DbgVsprintf(kFuncName, "Entered with %s", question.path.c_str());
    const INT_PTR result = DialogBoxParamW(GetModuleHandleW(nullptr), L"ConfirmReplaceDlg", owner,
                                           ConfirmReplaceDlgProc, reinterpret_cast<LPARAM>(&question));
    switch (result) {
        case IDYES:
            return ReplaceAnswer::Yes;
        case IDC_REPLACE_YES_TO_ALL:
            return ReplaceAnswer::YesToAll;
        case IDNO:
            return ReplaceAnswer::No;
        case IDCANCEL:
            return ReplaceAnswer::Cancel;
        default:
            DbgPrintApiError(kFuncName, "DialogBoxParam()", platform::LastSystemError());
            return ReplaceAnswer::Cancel;
    }
}
