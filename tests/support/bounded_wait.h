// Waiting in tests: for a condition, with a bound, never for a fixed time.
#pragma once

#include <cstdint>
#include <functional>

namespace test_support {

inline constexpr std::uint32_t kLongWait = 10'000;  // milliseconds; only a broken program needs them

// Asks again and again until the condition holds; false when the time is up.
bool WaitUntil(const std::function<bool()>& condition, std::uint32_t milliseconds = kLongWait);

}  // namespace test_support
