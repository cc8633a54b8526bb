#include "support/bounded_wait.h"

#include "platform/clock.h"
#include "platform/threads.h"

namespace test_support {

bool WaitUntil(const std::function<bool()>& condition, std::uint32_t milliseconds) {
    const std::uint64_t start = platform::Microseconds();
    while (!condition()) {
        if (platform::Microseconds() - start > milliseconds * 1000ull) return false;
        platform::SleepMilliseconds(1);
    }
    return true;
}

}  // namespace test_support
