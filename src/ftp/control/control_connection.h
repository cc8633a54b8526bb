// Sending commands to the server: the only place where bytes are written to a control socket (RFC 959, section 5.3).
// One command at a time, then its reply, which reply_receive.h reads.
#pragma once

#include <string_view>

#include "config/site.h"
#include "foundation/printf_check.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/result_codes.h"

// Sends bytes in pieces of at most 1024. 0, or FTP_CLOSE with the socket error's text in `errorText`.
int sendstr(Site* site, std::string_view text, ReplyBuffer errorText);
// Sends one command line with CR LF. 0, FTP_ERROR for a bad parameter, or what sendstr returned.
int SendPacket(Site* site, const char* commandLine, ReplyBuffer errorText);
// Sends one command line and reads its whole reply.
int getreply(Site* site, const char* commandLine, ReplyBuffer reply);
// Formats a command (at most 2047 characters; a longer one is refused) and calls getreply.
int command(Site* site, ReplyBuffer reply, const char* format, ...) ZARN_PRINTF(3, 4);
// Formats into 511 characters and expands the result once more without arguments.
int commandf(Site* site, ReplyBuffer reply, const char* format, ...) ZARN_PRINTF(3, 4);
