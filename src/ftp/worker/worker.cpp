#include "ftp/worker/worker.h"

#include <algorithm>
#include <atomic>
#include <string>
#include <utility>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/session_view.h"
#include "platform/clock.h"
#include "platform/threads.h"

namespace {

constexpr std::uint32_t kThreadExitGraceMs = 5000;
constexpr std::uint32_t kSliceMilliseconds = 20;

// The one slot. The handle is touched by the window's thread only; the job runs on the worker.
struct ActiveWorker {
    platform::ThreadHandle thread = platform::kNoThread;
    std::string name;
    std::function<void()> job;
    std::atomic<bool> running{false};
    std::atomic<bool> stopping{false};
    std::atomic<bool> lossUnreported{false};
};
ActiveWorker gWorker;

void RunJob(void*) {
    gWorker.job();
    gWorker.job = nullptr;
    gWorker.running = false;
    SetBusy(false);
}

// Frees the slot once its thread has ended.
bool ReleaseSlot(std::uint32_t milliseconds) {
    if (gWorker.thread == platform::kNoThread) return true;
    if (!gSessionView.waitForThread(gWorker.thread, milliseconds)) return false;
    platform::CloseThread(gWorker.thread);
    gWorker.thread = platform::kNoThread;
    return true;
}

}  // namespace

bool WorkerRunning() {
    return gWorker.running;
}
bool StoppingWorker() {
    return gWorker.stopping;
}

bool StartWorker(const char* name, std::function<void()> job) {
    constexpr char kFuncName[] = "StartWorker";
    if (OperationRunning() || gWorker.running || !ReleaseSlot(kThreadExitGraceMs)) {
        DoPrintIdArgs(MSG_BUSY_WITH_REMOTE_OPERATION);
        return false;
    }
    DbgVsprintf(kFuncName, "Entered from %s", name);
    gWorker.name = name;
    gWorker.job = std::move(job);
    gWorker.running = true;
    gWorker.lossUnreported = false;
    SetTransferAbort(false);
    SetBusy(true);
    gWorker.thread = platform::StartThread(RunJob, nullptr);
    if (gWorker.thread != platform::kNoThread) return true;
    DbgVsprintf(kFuncName, "ERROR. Call to StartThread() Failed. Returning FALSE");
    gWorker.job = nullptr;
    gWorker.running = false;
    SetBusy(false);
    return false;
}

void AnnounceStop() {
    gWorker.stopping = true;
}
void DeferLossReport() {
    gWorker.lossUnreported = true;
}
bool TakeDeferredLoss() {
    return gWorker.lossUnreported.exchange(false);
}

bool StopWorker(std::uint32_t milliseconds) {
    if (gWorker.thread == platform::kNoThread) {
        gWorker.stopping = false;
        return true;
    }
    const bool wasAborting = gSession.aborting;
    gWorker.stopping = true;
    SetTransferAbort(true);
    SetAborting(true);
    const std::uint32_t startedAt = platform::TickCount();
    bool ended = false;
    do {
        // Repeated: a call that was about to begin is missed by the first try.
        CancelBlockingCall();
        ended = ReleaseSlot(kSliceMilliseconds);
    } while (!ended && platform::TickCount() - startedAt < milliseconds);
    if (!wasAborting) SetAborting(false);
    gWorker.stopping = false;
    if (!ended) DbgVsprintf("StopWorker", "ERROR. %s has not ended. Returning FALSE", gWorker.name.c_str());
    return ended;
}
