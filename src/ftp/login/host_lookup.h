// Host names to addresses without being held up: the look-up runs in a thread of its own, which is left alone with its
// result when the time is over or the operation is stopped.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

enum class LookupEnd { Found, Failed, TimedOut, Stopped };

struct LookupResult {
    LookupEnd end = LookupEnd::Failed;
    int error = 0;                         // socket error when the look-up failed
    std::vector<std::uint32_t> addresses;  // host order; at least one when found
};

// `milliseconds` 0: no limit. `stoppable`: ends when the running operation is to end.
LookupResult LookUpHost(const std::string& name, std::uint32_t milliseconds, bool stoppable);
