// How the transfer of one item ended: everything that the caller decides by, in one place. Not here: what is said to
// the user about it (transfer/item_steps.h).
#pragma once

#include <cstdint>
#include <string>

#include "foundation/foundation_view.h"
#include "ftp/worker/result_codes.h"

struct ItemOutcome {
    int code = FTP_ERROR;                // of the code space in result_codes.h; FTP_COMPLETE is the only success
    std::uint32_t localError = 0;        // system error of the local file; 0 when it was not the cause
    std::string reply;                   // the server's last words (RFC 959, section 4.2)
    BoxAnswer answer = BoxAnswer::None;  // what the user chose about this item
    bool told = false;                   // the user has seen why it failed
};
