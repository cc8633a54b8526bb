#include "recorded_calls.h"

#include <optional>
#include <utility>

namespace recorded_calls {
namespace {

thread_local Recording* recording = nullptr;
thread_local std::optional<std::uint32_t> stoppedAt;

}  // namespace

Recording::Recording() {
    recording = this;
}

Recording::~Recording() {
    recording = nullptr;
}

std::vector<std::string> Recording::CallsOn(platform::Socket socket) const {
    std::vector<std::string> calls;
    for (const SocketCall& call : socketCalls_)
        if (call.socket == socket) calls.push_back(call.call);
    return calls;
}

void Recording::AddSocketCall(platform::Socket socket, std::string call) {
    if (recording != nullptr) recording->socketCalls_.push_back({socket, std::move(call)});
}

void Recording::AddBeep(platform::Beep beep) {
    if (recording != nullptr) recording->beeps_.push_back(beep);
}

StoppedClock::StoppedClock(std::uint32_t ticks) {
    stoppedAt = ticks;
}

StoppedClock::~StoppedClock() {
    stoppedAt.reset();
}

bool ClockIsStopped(std::uint32_t& ticks) {
    if (!stoppedAt) return false;
    ticks = *stoppedAt;
    return true;
}

}  // namespace recorded_calls
