// The error box of a transfer with its choice of Abort, Retry and Ignore.
#pragma once

#include <cstdint>

#include "foundation/foundation_view.h"

// Options 1..10 choose the message; `error` 0 means the last system error. None when there is nothing to show.
BoxAnswer TransferDlgError(const char* name, int option, std::uint32_t error, const char* reply);
