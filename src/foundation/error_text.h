// The system's words for an error number. Printing and showing them belongs to error_report.h.
#pragma once

#include <cstdint>

#include "foundation/owned_text.h"

// The text for `error` (0: the calling thread's last error) in US English; null when there is none. The last system
// error is kept.
OwnedText GetErrorText(std::uint32_t error);
