// Where a received file is stored: under a temporary name beside the target, and under its final name only when the
// server has confirmed the transfer, so that a failed transfer never costs the file that was there. Decides what
// happens to such a file: asks, or chooses a free name. Not here: the reception itself.
#pragma once

#include <cstdint>
#include <string>

#include "foundation/file_time.h"
#include "transfer/transfer_job.h"

// A file that is about to be received.
struct IncomingFile {
    std::string folder;      // local, in full
    std::string name;        // a safe local name
    std::uint64_t size = 0;  // on the server, for the question before replacing
    FileTime time = 0;
};

struct ReceiveTarget {
    std::string finalPath;
    std::string temporaryPath;
    bool replaceExisting = false;
};

enum class TargetResult { Ready, Skipped, Cancelled, Failed };
struct OpenedTarget {
    TargetResult result = TargetResult::Failed;
    ReceiveTarget target;     // for Ready
    std::uint32_t error = 0;  // system error, for Failed
};

// Chooses the names and makes the temporary file. A name that the job has received already (two remote names that
// become the same local one) gets a free name instead of replacing the first file.
OpenedTarget OpenReceiveTarget(TransferJob& job, const IncomingFile& incoming);
// Gives the file its final name. 0, or the system error: then the file that was there is unharmed and the temporary one
// deleted.
std::uint32_t CommitReceiveTarget(TransferJob& job, const ReceiveTarget& target);
void DiscardReceiveTarget(const ReceiveTarget& target);
