// Host names to addresses without blocking the caller for long: the look-up runs in a thread of its own. When the time
// is over or the operation is stopped, that thread is left to finish alone and its result is dropped.
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

// Whether a look-up belongs to the running operation, and ends when that is to end.
enum class LookupFor { Operation, StartUp };
// `milliseconds` 0: no limit.
LookupResult LookUpHost(const std::string& name, std::uint32_t milliseconds, LookupFor purpose);
