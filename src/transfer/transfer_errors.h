// The error box of a transfer with its choice of Abort, Retry and Ignore. What an answer means is decided by the
// caller.
#pragma once

#include <cstdint>

#include "foundation/foundation_view.h"

// Which message the box shows, and where its second insert comes from.
enum TransferErrorOption {
    kLocalFolderOption = 1,
    kCreateFolderOption = 2,
    kLocalFileOption = 3,
    kDiskFullOption = 4,
    kRemoteFolderOption = 5,
    kMakeRemoteFolderOption = 6,
    kRefusedOption = 7,
    kNetworkOption = 8,
    kLocalErrorOption = 9,
    kReservedOption = 10,
};

// `error` 0 means the last system error; `reply` is the server's, and may be null. None when there is nothing to show.
BoxAnswer TransferDlgError(const char* name, int option, std::uint32_t error, const char* reply);
