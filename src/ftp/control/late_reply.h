// After a wait was cancelled: the outstanding reply is still read, so that the next command gets its own, or the
// connection is closed. Ordinary replies are reply_receive.h.
#pragma once

#include <cstdint>

#include "config/site.h"
#include "ftp/control/reply_buffer.h"

// How long a cancelled transfer waits for the server's last word.
inline constexpr std::uint32_t kLateReplyMilliseconds = 2000;

// A transfer was cancelled whose final reply is outstanding: reads it, or closes the connection and tells the user.
void SettleCancelledTransfer(const char* callerName, Site* site, ReplyBuffer reply);
// True when what was read is no answer but the rest of the line before it, `unfinished` having been asked before.
bool IsRestOfLine(bool unfinished, int result, const char* reply);
