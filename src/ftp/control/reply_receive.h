// Reading replies: the only place where bytes are read from a control socket (RFC 959, section 4.2). Turning bytes into
// lines and codes is reply_reader.h.
#pragma once

#include <cstdint>
#include <span>

#include "config/site.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/result_codes.h"

// Reads one reply of one or more lines into `line`, shows each on the console, returns its class (550 whole).
int ReadDisplayLine(Site* site, ReplyBuffer line);
// Reads one whole reply within `milliseconds`; cannot be cancelled. As ReadDisplayLine, SOCKET_ERROR when it is over.
int ReadReplyWithin(Site* site, ReplyBuffer reply, std::uint32_t milliseconds);
// Reads what is left of a reply whose first line was taken by ReadOneLine and announced more.
int ReadReplyEnd(Site* site, ReplyBuffer reply);
// Reads one line. `maximumBytes`: capacity in, bytes taken out. 1, 0 without memory, SOCKET_ERROR.
int ReadOneLine(Site* site, std::span<char> buffer, int& maximumBytes, int& lineCode, bool& continuing);
// Reads the reply to STAT line by line into `addLine`; the first line's whole code, SOCKET_ERROR or 0.
int ReadDisplayServerStat(Site* site, void (*addLine)(void* context, const char* line), void* context);

// Before a command is sent: throws away the rest of a line that was read before its line feed came, so that it is not
// mistaken for the reply to this command.
void DropRestOfLine(Site* site);
// The last line came without its line feed: its rest may still be on its way.
bool LineIsUnfinished(const Site* site);
// While set, inner lines of multi-line replies are not forced onto the console.
void SuppressInnerReplyLines(bool suppress);
