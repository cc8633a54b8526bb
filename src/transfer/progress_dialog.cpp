#include "transfer/progress_dialog.h"

#include <windows.h>

#include <commctrl.h>

#include <atomic>
#include <string>

#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/message_ids.h"
#include "foundation/path_ellipsis.h"
#include "foundation/text_width_window.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "platform/system.h"
#include "resources/resource.h"
#include "transfer/drop_transfer.h"
#include "transfer/replace_dialog.h"
#include "transfer/selection_transfer.h"
#include "transfer/transfer_progress.h"
#include "transfer/transfer_view.h"

namespace {

constexpr char kFuncName[] = "TransferDlgProc";
constexpr std::uint32_t kWorkerEnd = 5000;  // milliseconds that a cancelled worker gets
constexpr int kBarRange = 1000;
constexpr UINT_PTR kAbortTimer = 1;
constexpr UINT_PTR kCancelTimer = 2;
constexpr UINT kAbortRepeat = 100;  // milliseconds

// Sent by the worker, but for the last, which is posted.
constexpr UINT kShowDialog = WM_APP + 1;
constexpr UINT kShowPath = WM_APP + 2;    // wParam: control, lParam: const char*
constexpr UINT kAskReplace = WM_APP + 3;  // lParam: Asking*
constexpr UINT kWorkerDone = WM_APP + 4;

struct Asking {
    const ReplaceQuestion& question;
    ReplaceAnswer answer = ReplaceAnswer::Cancel;
};

struct StartKind {
    TransferStart start;
    int (*transfer)(std::atomic<bool>& abort);
    const char* name;
};
constexpr StartKind kStartKinds[] = {
    {TransferStart::DropFiles, Zarn_TransferDropFiles, "Zarn_TransferDropFiles"},
    {TransferStart::None, nullptr, "None"},
    {TransferStart::ListSelection, Zarn_TransferLVitems, "Zarn_TransferLVitems"},
    {TransferStart::StandardInput, Zarn_TransferStdInFiles, "Zarn_TransferStdInFiles"},
    {TransferStart::TreeSelection, Zarn_TransferTVitem, "Zarn_TransferTVitem"},
};

struct ProgressDialog {
    std::atomic<HWND> window{nullptr};
    // The window's thread only.
    HWND owner = nullptr;
    bool ownerDisabled = false;
    bool hasWorker = false;
    bool workerDone = false;
    bool cancelling = false;
    std::uint32_t cancelledCall = 0;
    void (*finished)() = nullptr;
};
ProgressDialog gDialog;

const StartKind* FindStartKind(TransferStart start) {
    for (const StartKind& kind : kStartKinds)
        if (kind.start == start) return &kind;
    return nullptr;
}

bool TextsAreThere() {
    return Zarn_ResString(MSG_CREATING_DIRECTORY) && Zarn_ResString(MSG_TRANSFERING_FILE);
}

void ShowTheDialog(HWND dialog) {
    if (IsWindowVisible(dialog)) return;
    if (gDialog.owner != nullptr && IsWindowEnabled(gDialog.owner)) {
        EnableWindow(gDialog.owner, FALSE);
        gDialog.ownerDisabled = true;
    }
    ShowWindow(dialog, SW_SHOW);
    SetFocus(GetDlgItem(dialog, IDC_TRANSFER_ABORT));
}

void ShowPath(HWND dialog, int item, const char* path) {
    const HWND control = GetDlgItem(dialog, item);
    RECT area{};
    GetClientRect(control, &area);
    const MeasureText measure = [control](std::string_view text) { return ZarnGetStringWidth(control, text); };
    const std::string fitted = Zarn_TuncateAndAddEllipses(path, area.right, measure);
    // Without a separator there is nothing to leave out: the control cuts the text itself.
    SetText(control, fitted.empty() ? path : fitted);
}

void AskReplace(HWND dialog, Asking& asking) {
    // An abort that came while the worker was on its way here is the answer.
    if (StopRequested()) return;
    ShowTheDialog(dialog);
    asking.answer = ShowReplaceDialog(dialog, asking.question);
}

void EndWait() {
    gDialog.cancelledCall = BlockingCallNumber();
    CancelBlockingCall();
}

// The wait that the worker is in is ended; what it does afterwards to leave the server in step is not disturbed.
void Abort(HWND dialog) {
    DbgVsprintf(kFuncName, "Aborting the Transfer");
    SetTransferAbort(true);
    EndWait();
    SetTimer(dialog, kAbortTimer, kAbortRepeat, nullptr);
}

// A call that was just about to wait when it was cancelled waits on: then once more.
void RepeatEndWait(HWND dialog) {
    const std::uint32_t call = BlockingCallNumber();
    if (call == 0 || call != gDialog.cancelledCall) {
        KillTimer(dialog, kAbortTimer);
        return;
    }
    CancelBlockingCall();
}

// The owner takes input again before the dialog goes, so that it is what the system activates next.
void CloseTheDialog(HWND dialog) {
    gTransfer.running = false;
    if (gDialog.ownerDisabled) EnableWindow(gDialog.owner, TRUE);
    gDialog.ownerDisabled = false;
    gDialog.window = nullptr;
    DestroyWindow(dialog);
    if (gDialog.finished != nullptr) gDialog.finished();
}

// The worker has done its work, only its thread has still to end.
void CloseAfterWorker(HWND dialog) {
    if (gDialog.hasWorker) {
        StopWorker(kWorkerEnd);
        SetTransferAbort(false);
    }
    CloseTheDialog(dialog);
}

// Waiting for the worker does not stop the window: the end comes as a message, or the timer does.
void Cancel(HWND dialog) {
    if (!gDialog.hasWorker || gDialog.workerDone) {
        CloseAfterWorker(dialog);
        return;
    }
    gTransfer.running = false;
    Abort(dialog);
    if (gDialog.cancelling) return;
    gDialog.cancelling = true;
    SetTimer(dialog, kCancelTimer, kWorkerEnd, nullptr);
}

void OnTimer(HWND dialog, WPARAM timer) {
    if (timer == kAbortTimer) {
        RepeatEndWait(dialog);
        return;
    }
    DbgVsprintf(kFuncName, "ERROR. The Worker did not end within %d ms", int{kWorkerEnd});
    CloseTheDialog(dialog);
}

void OnInitDialog(HWND dialog) {
    SetItemText(dialog, IDC_TRANSFER_COUNTERS, CountersText(gTransfer.counters.files, gTransfer.counters.folders));
    SendDlgItemMessageW(dialog, IDC_TRANSFER_BAR, PBM_SETRANGE32, 0, kBarRange);
}

// Any command but Cancel and the window's close: abort while the transfer runs, else close.
void AbortOrClose(HWND dialog) {
    if (gTransfer.running) {
        Abort(dialog);
    } else {
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    }
}

// Comes twice, when the transfer is done and when its job is; the second finds the dialog gone or going.
void OnWorkerDone(HWND dialog) {
    gDialog.workerDone = true;
    PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
}

INT_PTR CALLBACK TransferDlgProc(HWND dialog, UINT message, WPARAM wParam, LPARAM lParam) {
    switch (message) {
        case WM_INITDIALOG:
            OnInitDialog(dialog);
            return FALSE;  // hidden: the focus stays where it is
        case WM_COMMAND:
            if (LOWORD(wParam) == IDCANCEL) {
                Cancel(dialog);
            } else {
                AbortOrClose(dialog);
            }
            return TRUE;
        case WM_CLOSE:
            AbortOrClose(dialog);
            return TRUE;
        case WM_TIMER:
            OnTimer(dialog, wParam);
            return TRUE;
        case kShowDialog:
            ShowTheDialog(dialog);
            return TRUE;
        case kShowPath:
            ShowPath(dialog, static_cast<int>(wParam), reinterpret_cast<const char*>(lParam));
            return TRUE;
        case kAskReplace:
            AskReplace(dialog, *reinterpret_cast<Asking*>(lParam));
            return TRUE;
        case kWorkerDone:
            OnWorkerDone(dialog);
            return TRUE;
        case WM_NCDESTROY:
            // Also when the owner took the dialog with it.
            if (gDialog.window == dialog) gDialog.window = nullptr;
            return FALSE;
        default:
            return FALSE;
    }
}

// Calls of the worker. Without a dialog they do nothing: it was closed before the worker ended.

void Send(UINT message, WPARAM wParam, const void* data) {
    const HWND dialog = gDialog.window;
    if (dialog != nullptr) SendMessageW(dialog, message, wParam, reinterpret_cast<LPARAM>(data));
}

void SendText(int item, const char* text) {
    const HWND dialog = gDialog.window;
    if (dialog != nullptr) SetItemText(dialog, item, text);
}

void PostDone() {
    const HWND dialog = gDialog.window;
    if (dialog != nullptr) PostMessageW(dialog, kWorkerDone, 0, 0);
}

void SetMode(char mode) {
    const int checked = mode == 'A' ? IDC_TRANSFER_ASCII : mode == 'L' ? IDC_TRANSFER_L8 : IDC_TRANSFER_BINARY;
    const HWND dialog = gDialog.window;
    if (dialog != nullptr) CheckRadioButton(dialog, IDC_TRANSFER_ASCII, IDC_TRANSFER_L8, checked);
}

void SetBar(int position) {
    const HWND dialog = gDialog.window;
    if (dialog != nullptr) SendDlgItemMessageW(dialog, IDC_TRANSFER_BAR, PBM_SETPOS, static_cast<WPARAM>(position), 0);
}

ReplaceAnswer ConfirmReplace(const ReplaceQuestion& question) {
    Asking asking{question};
    Send(kAskReplace, 0, &asking);
    return asking.answer;
}

bool StartTransfer(const StartKind& kind) {
    if (kind.transfer == nullptr) return true;
    return StartWorker(kind.name, [transfer = kind.transfer] {
        transfer(gSession.transferAbort);
        PostDone();
    });
}

// Everything of an earlier transfer is forgotten before the dialog opens, which shows the counters.
void Prepare(HWND owner, const StartKind& kind, void (*finished)()) {
    SetTransferAbort(false);
    ResetTransfer();
    gDialog.owner = owner;
    gDialog.ownerDisabled = false;
    gDialog.hasWorker = kind.transfer != nullptr;
    gDialog.workerDone = false;
    gDialog.cancelling = false;
    gDialog.cancelledCall = 0;
    gDialog.finished = finished;
}

}  // namespace

bool OpenTransferDialog(WindowHandle owner, TransferStart start, void (*finished)()) {
    DbgVsprintf(kFuncName, "Entered with start kind %d", static_cast<int>(start));
    if (gDialog.window != nullptr || OperationRunning() || WorkerRunning()) {
        DoPrintIdArgs(MSG_BUSY_WITH_REMOTE_OPERATION);
        return false;
    }
    const StartKind* kind = FindStartKind(start);
    const bool nothingNamed = start == TransferStart::StandardInput && StandardInputFiles().empty();
    if (kind == nullptr || nothingNamed || !TextsAreThere()) {
        DbgVsprintf(kFuncName, "ERROR. Nothing to start. Returning FALSE");
        return false;
    }
    Prepare(owner, *kind, finished);
    const HWND dialog = CreateDialogParamW(GetModuleHandleW(nullptr), L"TransferDlg", owner, TransferDlgProc, 0);
    if (dialog == nullptr) {
        DbgPrintApiError(kFuncName, "CreateDialogParam()", platform::LastSystemError());
        return false;
    }
    gDialog.window = dialog;
    gTransfer.running = true;
    if (StartTransfer(*kind)) return true;
    gTransfer.running = false;
    gDialog.window = nullptr;
    DestroyWindow(dialog);
    return false;
}

WindowHandle TransferDialogWindow() {
    return gDialog.window;
}

void FillTransferView(TransferView& view) {
    view.showDialog = [] { Send(kShowDialog, 0, nullptr); };
    view.closeDialog = PostDone;
    view.setItem = [](const char* text) { SendText(IDC_TRANSFER_NAME, text); };
    view.setSource = [](const char* text) { Send(kShowPath, IDC_TRANSFER_FROM, text); };
    view.setDestination = [](const char* text) { Send(kShowPath, IDC_TRANSFER_TO, text); };
    view.setBytes = [](const char* text) { SendText(IDC_TRANSFER_BYTES, text); };
    view.setCounters = [](const char* text) { SendText(IDC_TRANSFER_COUNTERS, text); };
    view.setMode = SetMode;
    view.setBar = SetBar;
    view.confirmReplace = ConfirmReplace;
}

void SetTransferDialogProgress(unsigned long long done, unsigned long long total) {
    if (gDialog.window != nullptr) ShowTransferProgress(done, total);
}
