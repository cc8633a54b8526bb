// The statistics line of a transfer: which message, with which numbers. The copies measure (data_copy.h, data_send.h).
#pragma once

#include <cstdint>

// From this many bytes on a success is printed in kilobytes a second, and a reception counts among the totals.
inline constexpr std::uint64_t kLongTransfer = 1025;

struct TransferStatistics {
    unsigned messageId;
    std::uint32_t seconds;  // whole ones, at least 1
    std::uint64_t bitsPerSecond;
};
// Pure.
TransferStatistics ReceiveStatistics(std::uint64_t bytes, std::uint32_t elapsedMilliseconds, bool succeeded);
TransferStatistics SendStatistics(std::uint64_t bytes, std::uint32_t elapsedMilliseconds, bool succeeded);
void PrintStatistics(const TransferStatistics& statistics, std::uint64_t bytes);
