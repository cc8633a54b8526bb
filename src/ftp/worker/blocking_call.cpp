#include "ftp/worker/blocking_call.h"

#include <algorithm>
#include <mutex>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "ftp/worker/session_state.h"
#include "platform/clock.h"

namespace {

struct CallInProgress {
    std::mutex lock;
    platform::Socket socket = platform::kNoSocket;
    std::uint32_t startedAt = 0;
    std::uint32_t number = 0;
    bool active = false;
    bool timedOut = false;  // reported once; from then on only cancelled again
};
CallInProgress gCall;

constexpr std::uint32_t kRepeatCancelMilliseconds = 50;

std::uint32_t Period(std::uint32_t timeoutSeconds) {
    constexpr std::uint32_t kLongest = 24 * 60 * 60;  // the clock wraps after 49 days
    return std::clamp(timeoutSeconds, 1u, kLongest) * 1000u;
}

}  // namespace

BlockingCall::BlockingCall(platform::Socket socket) {
    const std::lock_guard guard(gCall.lock);
    if (gCall.active) return;
    registered_ = true;
    gCall.active = true;
    if (++gCall.number == 0) ++gCall.number;
    gCall.timedOut = false;
    gCall.socket = socket;
    gCall.startedAt = platform::TickCount();
}

BlockingCall::~BlockingCall() {
    if (!registered_) return;
    const std::lock_guard guard(gCall.lock);
    gCall.active = false;
    gCall.socket = platform::kNoSocket;
}

bool BlockingCallInProgress() {
    const std::lock_guard guard(gCall.lock);
    return gCall.active;
}

std::uint32_t BlockingCallNumber() {
    const std::lock_guard guard(gCall.lock);
    return gCall.active ? gCall.number : 0;
}

void CancelBlockingCall() {
    // Under the lock, so that the handle cannot be closed and given to another socket meanwhile.
    const std::lock_guard guard(gCall.lock);
    if (gCall.active && gCall.socket != platform::kNoSocket) platform::CancelSocket(gCall.socket);
}

std::uint32_t TimeOutRemaining(std::uint32_t timeoutSeconds) {
    const std::uint32_t period = Period(timeoutSeconds);
    const std::lock_guard guard(gCall.lock);
    if (!gCall.active || timeoutSeconds == 0) return period;
    const std::uint32_t waited = platform::TickCount() - gCall.startedAt;
    return waited >= period ? 0 : period - waited;
}

void TimeOutBlockingCall() {
    bool first = false;
    {
        const std::lock_guard guard(gCall.lock);
        first = gCall.active && !gCall.timedOut;
        gCall.timedOut = true;
    }
    if (first) {
        DoPrintIdArgs(MSG_TIMER_CANCELLED_CALL);
        SetTransferTimedOut();
    }
    CancelBlockingCall();
}

std::uint32_t HandleTimeOutTimer(std::uint32_t timeoutSeconds) {
    const std::uint32_t remaining = TimeOutRemaining(timeoutSeconds);
    if (remaining > 0) return remaining;
    TimeOutBlockingCall();
    return kRepeatCancelMilliseconds;
}
