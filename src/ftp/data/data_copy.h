// The copy loops between a data socket and a local file. Buffers of PACKETSIZE, several filled by one system call; each
// received piece is written as it came. Statistics go to the console.
#pragma once

#include <cstdint>

#include "config/site.h"
#include "foundation/foundation_view.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/transfer_node.h"
#include "platform/files.h"

// How a copy ended. A local write failure is told apart from a lost connection: the messages differ.
struct CopyOutcome {
    std::int64_t bytes = -1;       // received or sent; -1 when nothing could be done
    bool reachedEnd = false;       // the peer closed the data connection in order / the whole file was sent
    std::uint32_t localError = 0;  // system error of the local file, 0 when it was not the cause
    int socketError = 0;
};

// Copies the data socket into `localFile`; with `showProgress` the session view is told, `total` is the expected size
// (0 when unknown).
CopyOutcome ReceiveFile(Site* site, const char* localFile, bool showProgress, std::uint64_t total);
// The same as a plain primitive: -1 or the number of bytes (saturated at 2^31 - 1).
int ReadMass(Site* site, ReplyBuffer reply, const char* localFile, bool binary);
// With progress.
CopyOutcome DlgReadMass(Site* site, ReplyBuffer reply, const char* localFile, bool binary, std::uint64_t total);
// Reads the node's local file and sends it. The outcome of a failure is also in node.iRetCode.
bool DlgSendMass(Site* site, TransferNode& node);
// Sends one buffer, moving the progress. 2, FTP_ERROR, or SOCKET_ERROR.
int DlgSendBuffer(Site* site, const char* buffer, std::uint32_t length, std::uint64_t sentBefore, std::uint64_t total);

// Opens the node's local file for sending, asking whether to try again while that fails; kNoFile when given up, with
// the user's last answer in `answer`.
platform::FileHandle OpenFileToSend(TransferNode& node, BoxAnswer& answer);
// Sends an open file of `size` bytes.
CopyOutcome SendOpenFile(Site* site, platform::FileHandle file, std::uint64_t size);

// The statistics line of a transfer: which message, with which numbers. Pure; printed by the copy.
struct TransferStatistics {
    unsigned messageId;
    std::uint32_t seconds;
    std::uint64_t bitsPerSecond;
};
TransferStatistics ReceiveStatistics(std::uint64_t bytes, std::uint32_t elapsedMilliseconds, bool succeeded);
TransferStatistics SendStatistics(std::uint64_t bytes, std::uint32_t elapsedMilliseconds, bool succeeded);
void PrintStatistics(const TransferStatistics& statistics, std::uint64_t bytes);
