#include "transfer/progress_dialog.h"

#include <windows.h>

#include <commctrl.h>

#include <atomic>
#include <string>
#include <utility>

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

namespace {

constexpr char kFuncName[] = "TransferDlgProc";
constexpr std::uint32_t kWorkerEnd = 5000;  // milliseconds that a cancelled worker gets
constexpr UINT_PTR kAbortTimer = 1;
constexpr UINT_PTR kCancelTimer = 2;
constexpr UINT_PTR kDrawTimer = 3;
constexpr UINT kAbortRepeat = 100;  // milliseconds
constexpr UINT kDrawPeriod = 50;    // milliseconds: at most 20 times a second

// Posted by the worker, which does not wait; only the question is sent.
constexpr UINT kShowDialog = WM_APP + 1;
constexpr UINT kWorkerDone = WM_APP + 2;
constexpr UINT kAskReplace = WM_APP + 3;  // lParam: PendingQuestion*

struct PendingQuestion {
    const ReplaceQuestion& question;
    ReplaceAnswer answer = ReplaceAnswer::Cancel;
};

struct StartKind {
    TransferStart start;
    int (*transfer)(const std::atomic<bool>& abort);
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
    std::atomic<bool> showRequested{false};
    // The window's thread only.
    TransferProgress drawn;
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

void DrawPath(HWND dialog, int item, const std::string& path) {
    const HWND control = GetDlgItem(dialog, item);
    RECT area{};
    GetClientRect(control, &area);
    const MeasureText measure = [control](std::string_view text) { return ZarnGetStringWidth(control, text); };
    const std::string fitted = Zarn_TuncateAndAddEllipses(path, area.right, measure);
    // Without a separator there is nothing to leave out: the control cuts the text itself.
    SetText(control, fitted.empty() ? path : fitted);
}

void DrawMode(HWND dialog, char mode) {
    const int checked = mode == 'A' ? IDC_TRANSFER_ASCII : mode == 'L' ? IDC_TRANSFER_L8 : IDC_TRANSFER_BINARY;
    CheckRadioButton(dialog, IDC_TRANSFER_ASCII, IDC_TRANSFER_L8, checked);
}

// Draws what has changed in the published record since the last time.
void Draw(HWND dialog) {
    const TransferProgress before = gDialog.drawn;
    TransferProgress& now = gDialog.drawn;
    if (!ReadTransferProgress(now)) return;
    if (now.item != before.item) SetItemText(dialog, IDC_TRANSFER_NAME, now.item);
    if (now.source != before.source) DrawPath(dialog, IDC_TRANSFER_FROM, now.source);
    if (now.destination != before.destination) DrawPath(dialog, IDC_TRANSFER_TO, now.destination);
    if (now.bytes != before.bytes) SetItemText(dialog, IDC_TRANSFER_BYTES, now.bytes);
    if (now.counters != before.counters) SetItemText(dialog, IDC_TRANSFER_COUNTERS, now.counters);
    if (now.mode != before.mode) DrawMode(dialog, now.mode);
    if (now.bar != before.bar) {
        SendDlgItemMessageW(dialog, IDC_TRANSFER_BAR, PBM_SETPOS, static_cast<WPARAM>(now.bar), 0);
    }
}

void ShowTheDialog(HWND dialog) {
    if (IsWindowVisible(dialog)) return;
    Draw(dialog);
    SetTimer(dialog, kDrawTimer, kDrawPeriod, nullptr);
    if (gDialog.owner != nullptr && IsWindowEnabled(gDialog.owner)) {
        EnableWindow(gDialog.owner, FALSE);
        gDialog.ownerDisabled = true;
    }
    ShowWindow(dialog, SW_SHOW);
    SetFocus(GetDlgItem(dialog, IDC_TRANSFER_ABORT));
}

void AskReplace(HWND dialog, PendingQuestion& pending) {
    // An abort that came while the worker was on its way here is the answer.
    if (StopRequested()) return;
    ShowTheDialog(dialog);
    pending.answer = ShowReplaceDialog(dialog, pending.question);
}

// Ends the call that the worker is waiting in.
void EndWait() {
    gDialog.cancelledCall = BlockingCallNumber();
    CancelBlockingCall();
}

// Ends only the call that the worker is in: what it does next keeps the control connection in step.
void Abort(HWND dialog) {
    DbgVsprintf(kFuncName, "Aborting the Transfer");
    SetTransferAbort(true);
    EndWait();
    SetTimer(dialog, kAbortTimer, kAbortRepeat, nullptr);
}

// A call that had not yet begun to wait was missed and is cancelled again.
void RepeatEndWait(HWND dialog) {
    const std::uint32_t call = BlockingCallNumber();
    if (call == 0 || call != gDialog.cancelledCall) {
        KillTimer(dialog, kAbortTimer);
        return;
    }
    CancelBlockingCall();
}

// The owner is enabled before the dialog is destroyed, so that the system activates it next.
void CloseTheDialog(HWND dialog) {
    SetTransferRunning(false);
    Draw(dialog);
    if (gDialog.ownerDisabled) EnableWindow(gDialog.owner, TRUE);
    gDialog.ownerDisabled = false;
    gDialog.window = nullptr;
    DestroyWindow(dialog);
    if (gDialog.finished != nullptr) gDialog.finished();
}

// The worker has done its work; only its thread has to end yet.
void CloseAfterWorker(HWND dialog) {
    if (gDialog.hasWorker) {
        StopWorker(kWorkerEnd);
        SetTransferAbort(false);
    }
    CloseTheDialog(dialog);
}

// The window stays alive while the worker ends: its end comes as a message, or the timer does.
void Cancel(HWND dialog) {
    if (!gDialog.hasWorker || gDialog.workerDone) {
        CloseAfterWorker(dialog);
        return;
    }
    SetTransferRunning(false);
    Abort(dialog);
    if (gDialog.cancelling) return;
    gDialog.cancelling = true;
    SetTimer(dialog, kCancelTimer, kWorkerEnd, nullptr);
}

void OnTimer(HWND dialog, WPARAM timer) {
    switch (timer) {
        case kDrawTimer:
            Draw(dialog);
            return;
        case kAbortTimer:
            RepeatEndWait(dialog);
            return;
        default:
            DbgVsprintf(kFuncName, "ERROR. The Worker did not end within %d ms", int{kWorkerEnd});
            CloseTheDialog(dialog);
    }
}

void OnInitDialog(HWND dialog) {
    SendDlgItemMessageW(dialog, IDC_TRANSFER_BAR, PBM_SETRANGE32, 0, kBarEnd);
    Draw(dialog);
}

// For any command but Cancel, and for the window's close request: abort while the transfer runs, else close.
void AbortOrClose(HWND dialog) {
    if (TransferRunning()) {
        Abort(dialog);
    } else {
        PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
    }
}

// Comes twice: when the transfer is done, and when the worker is done with its job. The second finds the dialog closed
// or closing.
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
        case kAskReplace:
            AskReplace(dialog, *reinterpret_cast<PendingQuestion*>(lParam));
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

void PostToDialog(UINT message) {
    const HWND dialog = gDialog.window;
    if (dialog != nullptr) PostMessageW(dialog, message, 0, 0);
}

void RequestShow() {
    gDialog.showRequested = true;
    PostToDialog(kShowDialog);
}

void PostDone() {
    PostToDialog(kWorkerDone);
}

ReplaceAnswer ConfirmReplace(const ReplaceQuestion& question) {
    PendingQuestion pending{question};
    const HWND dialog = gDialog.window;
    if (dialog != nullptr) SendMessageW(dialog, kAskReplace, 0, reinterpret_cast<LPARAM>(&pending));
    return pending.answer;
}

bool StartTransfer(const StartKind& kind, TransferJob&& job) {
    if (kind.transfer == nullptr) return true;
    return StartWorker(kind.name, [transfer = kind.transfer, job = std::move(job)]() mutable {
        const RunningJobScope scope(job);
        transfer(gSession.transferAbort);
        PostDone();
    });
}

// Forgets everything of an earlier transfer before the dialog opens, which draws the record.
void Prepare(HWND owner, const StartKind& kind, void (*finished)()) {
    SetTransferAbort(false);
    ResetTransferProgress();
    gDialog.showRequested = false;
    gDialog.drawn = TransferProgress();
    gDialog.owner = owner;
    gDialog.ownerDisabled = false;
    gDialog.hasWorker = kind.transfer != nullptr;
    gDialog.workerDone = false;
    gDialog.cancelling = false;
    gDialog.cancelledCall = 0;
    gDialog.finished = finished;
}

}  // namespace

bool OpenTransferDialog(WindowHandle owner, TransferJob&& job, void (*finished)()) {
    DbgVsprintf(kFuncName, "Entered with start kind %d", static_cast<int>(job.start));
    if (gDialog.window != nullptr || OperationRunning() || WorkerRunning()) {
        DoPrintIdArgs(MSG_BUSY_WITH_REMOTE_OPERATION);
        return false;
    }
    const StartKind* kind = FindStartKind(job.start);
    const bool nothingNamed = job.start == TransferStart::StandardInput && job.localPaths.empty();
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
    SetTransferRunning(true);
    if (StartTransfer(*kind, std::move(job))) return true;
    SetTransferRunning(false);
    gDialog.window = nullptr;
    DestroyWindow(dialog);
    return false;
}

WindowHandle TransferDialogWindow() {
    return gDialog.window;
}

WindowHandle ShownTransferDialog() {
    const HWND dialog = gDialog.window;
    if (dialog == nullptr) return nullptr;
    if (gDialog.showRequested) ShowTheDialog(dialog);
    return IsWindowVisible(dialog) ? dialog : nullptr;
}

void FillTransferView(TransferView& view) {
    view.showDialog = RequestShow;
    view.closeDialog = PostDone;
    view.confirmReplace = ConfirmReplace;
}
