// What this thread asks of sockets and of the speaker, for rules that show neither on the wire nor on the console; and
// a clock that this thread can stop. Exists in the native test build only; a test that needs it is inside #ifndef
// _WIN32. Making calls fail is fault_injection.h.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/sockets.h"
#include "platform/system.h"

namespace recorded_calls {

// Records from its making to its end; one at a time in each thread.
class Recording {
  public:
    Recording();
    ~Recording();
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    // "shutdown 1", "linger 25", "close", in the order of the calls.
    std::vector<std::string> CallsOn(platform::Socket socket) const;
    const std::vector<platform::Beep>& Beeps() const { return beeps_; }

    // For the platform's own bodies.
    static void AddSocketCall(platform::Socket socket, std::string call);
    static void AddBeep(platform::Beep beep);

  private:
    struct SocketCall {
        platform::Socket socket;
        std::string call;
    };
    std::vector<SocketCall> socketCalls_;
    std::vector<platform::Beep> beeps_;
};

// platform::TickCount() of this thread stays at `ticks` for the lifetime of the object.
class StoppedClock {
  public:
    explicit StoppedClock(std::uint32_t ticks);
    ~StoppedClock();
    StoppedClock(const StoppedClock&) = delete;
    StoppedClock& operator=(const StoppedClock&) = delete;
};

// For the platform's own body: true when this thread's clock is stopped, at `ticks`.
bool ClockIsStopped(std::uint32_t& ticks);

}  // namespace recorded_calls
