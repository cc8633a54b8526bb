#include "ftp/dialogs/server_status_dialog.h"

#include <windows.h>

#include <algorithm>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/text_width_window.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/control/control_connection.h"
#include "ftp/control/reply_receive.h"
#include "ftp/worker/worker.h"
#include "resources/resource.h"

namespace {

constexpr char kFuncName[] = "ServerStatProc";
constexpr UINT kLinesArrived = WM_APP + 1;
constexpr int kReplySize = 1040;
constexpr int kTabWidth = 8;  // characters
constexpr std::size_t kMostLines = 5000;

// Lines on their way from the worker to the dialog. The worker may outlive the dialog, and a line may arrive before
// there is a window.
struct StatusLines {
    std::mutex lock;
    HWND dialog = nullptr;
    std::vector<std::string> waiting;
    std::size_t count = 0;
    int widest = 0;  // pixels; the window's thread only
};
using StatusLinesPtr = std::shared_ptr<StatusLines>;

void AddLine(StatusLines& lines, std::string line) {
    while (!line.empty() && (line.back() == '\r' || line.back() == '\n')) line.pop_back();
    const std::lock_guard guard(lines.lock);
    if (lines.count >= kMostLines) return;
    ++lines.count;
    lines.waiting.push_back(std::move(line));
    // One message for all that wait.
    if (lines.dialog != nullptr && lines.waiting.size() == 1) PostMessageW(lines.dialog, kLinesArrived, 0, 0);
}

std::vector<std::string> TakeLines(StatusLines& lines) {
    const std::lock_guard guard(lines.lock);
    return std::exchange(lines.waiting, {});
}

// Runs on the worker.
void AskServer(Site* site, StatusLines& lines) {
    char reply[kReplySize] = "";
    const int sent = sendstr(site, "STAT\r\n", reply);
    if (sent == 0) {
        ReadDisplayServerStat(
            site, [](void* context, const char* line) { AddLine(*static_cast<StatusLines*>(context), line); }, &lines);
    }
    if (lines.count == 0) AddLine(lines, CatalogueText(MSG_STATISTICS_FAILED));
}

void ShowLines(HWND dialog, StatusLines& lines) {
    const HWND list = GetDlgItem(dialog, IDC_STATUS_LIST);
    for (const std::string& line : TakeLines(lines)) {
        SendMessageW(list, LB_ADDSTRING, 0, reinterpret_cast<LPARAM>(Wide(line).c_str()));
        lines.widest = std::max(lines.widest, ZarnGetStringWidth(list, line + "  "));
    }
    SendMessageW(list, LB_SETHORIZONTALEXTENT, static_cast<WPARAM>(lines.widest), 0);
}

void OnInitDialog(HWND dialog, StatusLines& lines, const Site* site) {
    SetText(dialog, Zarn_ResVsprintf(MSG_STATISTICS_FOR, site->pszHost.c_str()).view());
    // Dialog units, of which a character has four.
    const int tabStop = kTabWidth * 4;
    SendDlgItemMessageW(dialog, IDC_STATUS_LIST, LB_SETTABSTOPS, 1, reinterpret_cast<LPARAM>(&tabStop));
    {
        const std::lock_guard guard(lines.lock);
        lines.dialog = dialog;
    }
    ShowLines(dialog, lines);
}

struct Opening {
    StatusLines& lines;
    const Site* site;
};

INT_PTR CALLBACK ServerStatProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    auto* lines = reinterpret_cast<StatusLines*>(GetWindowLongPtrW(dialog, DWLP_USER));
    switch (message) {
        case WM_INITDIALOG: {
            const auto& opening = *reinterpret_cast<const Opening*>(lParam);
            SetWindowLongPtrW(dialog, DWLP_USER, reinterpret_cast<LONG_PTR>(&opening.lines));
            OnInitDialog(dialog, opening.lines, opening.site);
            return TRUE;
        }
        case kLinesArrived:
            ShowLines(dialog, *lines);
            return TRUE;
        case WM_COMMAND:
            if (LOWORD(wParam) != IDOK && LOWORD(wParam) != IDCANCEL) return FALSE;
            EndDialog(dialog, LOWORD(wParam));
            return TRUE;
        default:
            return FALSE;
    }
}

}  // namespace

void ShowServerStatus(WindowHandle owner, Site* site) {
    DbgVsprintf(kFuncName, "Entered");
    const StatusLinesPtr lines = std::make_shared<StatusLines>();
    if (!StartWorker(kFuncName, [site, lines] { AskServer(site, *lines); })) return;
    const Opening opening{*lines, site};
    DialogBoxParamW(GetModuleHandleW(nullptr), L"ServerStatusDlg", owner, ServerStatProc,
                    reinterpret_cast<LPARAM>(&opening));
    const std::lock_guard guard(lines->lock);
    lines->dialog = nullptr;
}
