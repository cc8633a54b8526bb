#include "ui/screen/ui_calls.h"

#include <atomic>

#include "ui/screen/messages.h"

namespace {

std::atomic<HWND> gTarget{nullptr};
DWORD gUiThread = 0;

struct Call {
    UiRoutine routine;
    void* context;
    bool ran;
};

}  // namespace

void StartUiCalls(HWND mainWindow) {
    gUiThread = GetCurrentThreadId();
    gTarget = mainWindow;
}

void StopUiCalls() {
    gTarget = nullptr;
}

bool OnUiThread() {
    return GetCurrentThreadId() == gUiThread;
}

LRESULT HandleUiCall(WPARAM, LPARAM lParam) {
    auto* call = reinterpret_cast<Call*>(lParam);
    call->routine(call->context);
    call->ran = true;
    return 1;
}

bool CallUi(UiRoutine routine, void* context) {
    if (OnUiThread()) {
        routine(context);
        return true;
    }
    HWND target = gTarget;
    if (target == nullptr) return false;
    Call call{routine, context, false};
    SendMessageW(target, kUiCallMessage, 0, reinterpret_cast<LPARAM>(&call));
    return call.ran;
}
