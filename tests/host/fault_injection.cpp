#include "fault_injection.h"

#include <array>
#include <cstddef>
#include <mutex>

#include "host_errors.h"

namespace fault_injection {
namespace {

struct State {
    int calls = 0;
    int failsAt = 0;  // number of the call, 0: none
    bool failsOn = false;
    bool fired = false;
    std::uint32_t error = 0;
};

thread_local bool spared = false;

std::mutex guard;
std::array<State, static_cast<std::size_t>(Call::Count)> states;

State& StateOf(Call call) {
    return states[static_cast<std::size_t>(call)];
}

void SetFault(Call call, int nth, std::uint32_t error, bool failsOn) {
    const std::lock_guard lock(guard);
    State& state = StateOf(call);
    state.failsAt = state.calls + nth;
    state.failsOn = failsOn;
    state.fired = false;
    state.error = error;
}

}  // namespace

void FailCall(Call call, int nth, std::uint32_t error) {
    SetFault(call, nth, error, false);
}

void FailFrom(Call call, int nth, std::uint32_t error) {
    SetFault(call, nth, error, true);
}

bool HasFired(Call call) {
    const std::lock_guard lock(guard);
    return StateOf(call).fired;
}

int CallCount(Call call) {
    const std::lock_guard lock(guard);
    return StateOf(call).calls;
}

void Reset() {
    const std::lock_guard lock(guard);
    states.fill(State());
}

void SpareThisThread() {
    spared = true;
}

bool Strikes(Call call) {
    if (spared) return false;
    const std::lock_guard lock(guard);
    State& state = StateOf(call);
    ++state.calls;
    if (state.failsAt == 0 || state.calls < state.failsAt) return false;
    if (state.calls > state.failsAt && !state.failsOn) return false;
    state.fired = true;
    host::Fail(state.error);
    return true;
}

}  // namespace fault_injection
