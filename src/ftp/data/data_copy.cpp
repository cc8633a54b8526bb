#include "ftp/data/data_copy.h"

#include <algorithm>
#include <string>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/number_text.h"
#include "foundation/trace.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/dump_file.h"
#include "ftp/data/transfer_buffer.h"
#include "ftp/data/transfer_statistics.h"
#include "ftp/errors/error_texts.h"
#include "ftp/worker/beeps.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/session_state.h"
#include "platform/clock.h"
#include "platform/system.h"

namespace {

void AddToTotals(const TransferStatistics& statistics, std::uint64_t bytes) {
    if (bytes < kLongTransfer) return;
    gSession.totalSeconds += statistics.seconds;
    gSession.totalBytes += bytes;
    ++gSession.totalTransfers;
}

// The system error of the call that just failed, never 0.
std::uint32_t FailedCallError() {
    return std::max(platform::LastSystemError(), 1u);
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
        // The pieces are adjacent, so one call writes all that came.
        if (!platform::WriteFile(file, {buffer.data(), count})) {
            outcome.localError = FailedCallError();
            return;
        }
        outcome.bytes += received;
        meter.Moved(static_cast<std::uint64_t>(outcome.bytes));
    }
}

// Copies into the open file and closes it; how long the copy took.
std::uint32_t CopyAndClose(platform::Socket socket, platform::FileHandle file, TransferProgressMeter& meter,
                           CopyOutcome& outcome) {
    TransferBuffer buffer(gZarn.port.packetSize);
    outcome.bytes = 0;
    const std::uint32_t startedAt = platform::TickCount();
    ReceiveLoop(socket, file, buffer, meter, outcome);
    const std::uint32_t elapsed = platform::TickCount() - startedAt;
    if (!platform::CloseFile(file) && outcome.localError == 0) outcome.localError = FailedCallError();
    meter.Finished(static_cast<std::uint64_t>(outcome.bytes));
    return elapsed;
}

// Statistics, totals and a warning when less came than was announced.
void ReportReception(const CopyOutcome& outcome, std::uint32_t elapsed, std::uint64_t total) {
    const auto bytes = static_cast<std::uint64_t>(outcome.bytes);
    // Quirk: a connection lost after a good write is printed as a success, kept. The final reply decides.
    const bool succeeded = outcome.localError == 0;
    const TransferStatistics statistics = ReceiveStatistics(bytes, elapsed, succeeded);
    PrintStatistics(statistics, bytes);
    if (succeeded) AddToTotals(statistics, bytes);
    if (outcome.reachedEnd || bytes >= total) return;
    DoPrintIdArgs(MSG_DATA_CONNECTION_SHORT, GroupDigits(std::to_string(bytes)), GroupDigits(std::to_string(total)));
}

}  // namespace

CopyOutcome ReceiveFile(Site* site, const char* localFile, bool showProgress, std::uint64_t total) {
    CopyOutcome outcome;
    if (site == nullptr || site->pSock == nullptr || localFile == nullptr || *localFile == '\0') return outcome;
    const platform::Socket socket = site->pSock->data_skt;
    if (socket == platform::kNoSocket) return outcome;
    // Every reception opens its file as a listing does; the trace shows it.
    const platform::FileHandle file = GetDumpFileHandle("ReadMass", localFile, platform::FileAccess::ReadWrite);
    if (file == platform::kNoFile) {
        outcome.localError = FailedCallError();
        return outcome;
    }
    TransferProgressMeter meter(showProgress, total);
    const std::uint32_t elapsed = CopyAndClose(socket, file, meter, outcome);
    if (!outcome.reachedEnd && outcome.bytes == 0 && outcome.localError == 0) {
        BeepOnFailure();
        outcome.bytes = -1;
        return outcome;
    }
    ReportReception(outcome, elapsed, total);
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
