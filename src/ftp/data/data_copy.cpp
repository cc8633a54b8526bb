#include "ftp/data/data_copy.h"

#include <algorithm>
#include <string>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/text_helpers.h"
#include "foundation/trace.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/dump_file.h"
#include "ftp/data/transfer_buffer.h"
#include "ftp/errors/error_texts.h"
#include "ftp/worker/beeps.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/session_state.h"
#include "platform/clock.h"
#include "platform/system.h"

namespace {

// A transfer that a copy counts among the totals.
constexpr std::uint64_t kCountedBytes = 1025;

void AddToTotals(const TransferStatistics& statistics, std::uint64_t bytes) {
    if (bytes < kCountedBytes) return;
    gSession.totalSeconds += statistics.seconds;
    gSession.totalBytes += bytes;
    ++gSession.totalTransfers;
}

// The loop itself. A write failure ends it: what the server still sends has nowhere to go.
void ReceiveLoop(platform::Socket socket, platform::FileHandle file, TransferBuffer& buffer,
                 TransferProgressMeter& meter, CopyOutcome& outcome) {
    for (;;) {
        int received = 0;
        {
            const BlockingCall call(socket);
            received = StopRequested() ? -1 : platform::ReceiveInto(socket, buffer.pieces());
        }
        if (received == 0) {
            outcome.reachedEnd = true;
            return;
        }
        if (received < 0) {
            outcome.socketError = platform::LastSocketError();
            DbgPrintSocketError("ReadMass", "recv", socket, outcome.socketError);
            return;
        }
        const auto count = static_cast<std::size_t>(received);
        // The pieces lie side by side, so that one call writes all that came.
        if (!platform::WriteFile(file, {buffer.data(), count})) {
            outcome.localError = std::max(platform::LastSystemError(), 1u);
            return;
        }
        outcome.bytes += received;
        meter.Moved(static_cast<std::uint64_t>(outcome.bytes));
    }
}

}  // namespace

CopyOutcome ReceiveFile(Site* site, const char* localFile, bool showProgress, std::uint64_t total) {
    constexpr char kFuncName[] = "ReadMass";
    CopyOutcome outcome;
    if (site == nullptr || site->pSock == nullptr || localFile == nullptr || *localFile == '\0') return outcome;
    const platform::Socket socket = site->pSock->data_skt;
    if (socket == platform::kNoSocket) return outcome;
    const platform::FileHandle file = GetDumpFileHandle(kFuncName, localFile, platform::FileAccess::ReadWrite);
    if (file == platform::kNoFile) {
        outcome.localError = std::max(platform::LastSystemError(), 1u);
        return outcome;
    }
    TransferBuffer buffer(gZarn.port.packetSize);
    TransferProgressMeter meter(showProgress, total);
    outcome.bytes = 0;
    const std::uint32_t startedAt = platform::TickCount();
    ReceiveLoop(socket, file, buffer, meter, outcome);
    const std::uint32_t elapsed = platform::TickCount() - startedAt;
    if (!platform::CloseFile(file) && outcome.localError == 0)
        outcome.localError = std::max(platform::LastSystemError(), 1u);
    meter.Finished(static_cast<std::uint64_t>(outcome.bytes));
    if (!outcome.reachedEnd && outcome.bytes == 0 && outcome.localError == 0) {
        BeepOnFailure();
        outcome.bytes = -1;
        return outcome;
    }
    const auto bytes = static_cast<std::uint64_t>(outcome.bytes);
    // A lost connection after a good write is told as a success here, as wanted; the final reply decides.
    const bool succeeded = outcome.localError == 0;
    const TransferStatistics statistics = ReceiveStatistics(bytes, elapsed, succeeded);
    PrintStatistics(statistics, bytes);
    if (succeeded) AddToTotals(statistics, bytes);
    if (!outcome.reachedEnd && bytes < total)
        DoPrintIdArgs(MSG_DATA_CONNECTION_SHORT, GroupDigits(std::to_string(bytes)),
                      GroupDigits(std::to_string(total)));
    BeepAtEnd();
    return outcome;
}

int ReadMass(Site* site, ReplyBuffer reply, const char* localFile, bool binary) {
    SetReply(reply, "");
    DbgVsprintf("ReadMass", "Entered. Binary:%d", binary ? 1 : 0);
    const CopyOutcome outcome = ReceiveFile(site, localFile, false, 0);
    return static_cast<int>(std::min<std::int64_t>(outcome.bytes, INT32_MAX));
}

CopyOutcome DlgReadMass(Site* site, ReplyBuffer reply, const char* localFile, bool binary, std::uint64_t total) {
    SetReply(reply, "");
    DbgVsprintf("DlgReadMass", "Entered. Binary:%d", binary ? 1 : 0);
    return ReceiveFile(site, localFile, true, total);
}
