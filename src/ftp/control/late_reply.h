// After a wait was cancelled: the outstanding reply is still read, so that the next command gets its own, or the
// connection is closed. Ordinary replies are reply_receive.h.
#pragma once

#include <cstdint>

#include "config/site.h"
#include "ftp/control/reply_buffer.h"

// How long a cancelled transfer waits for the server's last word.
inline constexpr std::uint32_t kLateReplyMilliseconds = 2000;

// After a cancelled transfer: reads its final reply, or closes the connection and tells the user.
void SettleCancelledTransfer(const char* callerName, Site* site, ReplyBuffer reply);
// True when what was read is the rest of the previous line and not a reply. `unfinished`: LineIsUnfinished before the
// read.
bool IsRestOfLine(bool unfinished, int result, const char* reply);
