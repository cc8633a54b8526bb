// Which socket the worker may be waiting on, and since when. The window's timer asks here whether a call has waited too
// long; an abort asks here what to cancel. A call that moves bytes counts as progress.
#pragma once

#include <cstdint>

#include "platform/sockets.h"

// For the lifetime of the object this thread may wait on `socket`. One worker makes one call at a time, so calls do not
// nest; a second thread's call (a QUIT sent while a worker is being stopped) is not registered.
class BlockingCall {
  public:
    explicit BlockingCall(platform::Socket socket);
    ~BlockingCall();
    BlockingCall(const BlockingCall&) = delete;
    BlockingCall& operator=(const BlockingCall&) = delete;

  private:
    bool registered_ = false;
};

bool BlockingCallInProgress();
// Number of the call in progress, 0 when there is none: tells a call that still waits from the next one.
std::uint32_t BlockingCallNumber();
// Ends the call in progress; it fails in its own thread. A call that was announced but not yet begun is missed:
// whoever sees its thread still waiting calls again.
void CancelBlockingCall();
// Milliseconds until the call in progress has waited `timeoutSeconds`; 0 when that time is over. With no call in
// progress, or a time-out of 0, the whole period (at least one second).
std::uint32_t TimeOutRemaining(std::uint32_t timeoutSeconds);
// The call in progress has waited long enough: prints 6016, once for each call, sets the transfer-abort flag and
// cancels it. Nothing without a call in progress.
void TimeOutBlockingCall();
// The window's timer fired: returns the milliseconds after which it wants to be called again. When the time is over the
// call is timed out.
std::uint32_t HandleTimeOutTimer(std::uint32_t timeoutSeconds);
