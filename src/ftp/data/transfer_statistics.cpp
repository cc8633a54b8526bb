#include "ftp/data/transfer_statistics.h"

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"

namespace {

std::uint32_t WholeSeconds(std::uint32_t milliseconds) {
    return milliseconds <= 1000 ? 1 : milliseconds / 1000;
}

TransferStatistics Numbers(unsigned messageId, std::uint64_t bytes, std::uint32_t elapsedMilliseconds) {
    const std::uint32_t seconds = WholeSeconds(elapsedMilliseconds);
    return {messageId, seconds, bytes * 8 / seconds};
}

}  // namespace

TransferStatistics ReceiveStatistics(std::uint64_t bytes, std::uint32_t elapsedMilliseconds, bool succeeded) {
    unsigned message = MSG_RECEIVED_FAILED;
    if (succeeded) message = bytes < kLongTransfer ? MSG_RECEIVED_SUCCEEDED : MSG_RECEIVED_SUCCEEDED_PER_SECOND;
    return Numbers(message, bytes, elapsedMilliseconds);
}

TransferStatistics SendStatistics(std::uint64_t bytes, std::uint32_t elapsedMilliseconds, bool succeeded) {
    unsigned message = succeeded ? MSG_SENT_SUCCEEDED : MSG_SENT_FAILED;
    if (bytes >= kLongTransfer) message = succeeded ? MSG_SENT_SUCCEEDED_PER_SECOND : MSG_SENT_FAILED_PER_SECOND;
    return Numbers(message, bytes, elapsedMilliseconds);
}

void PrintStatistics(const TransferStatistics& statistics, std::uint64_t bytes) {
    const auto count = static_cast<long long>(bytes);
    switch (statistics.messageId) {
        case MSG_RECEIVED_SUCCEEDED_PER_SECOND:
        case MSG_SENT_SUCCEEDED_PER_SECOND:
        case MSG_SENT_FAILED_PER_SECOND: {
            const double seconds = statistics.seconds;
            DoPrintIdArgs(statistics.messageId, count, seconds, static_cast<double>(bytes) / 1024.0 / seconds);
            return;
        }
        default:
            DoPrintIdArgs(statistics.messageId, count, static_cast<int>(statistics.seconds),
                          static_cast<long long>(statistics.bitsPerSecond));
    }
}
