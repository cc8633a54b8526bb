// What becomes of the control connection after a wait was cancelled: either the outstanding reply is still read, so
// that the next command gets its own, or the connection is closed. Ordinary replies: control_connection.h.
#pragma once

#include <cstdint>

#include "config/site.h"
#include "ftp/control/control_connection.h"

// How long a cancelled transfer waits for the server's last word.
inline constexpr std::uint32_t kLateReplyMilliseconds = 2000;

// Reads one whole reply within `milliseconds`; cannot be cancelled. As ReadDisplayLine, SOCKET_ERROR when it is over.
int ReadReplyWithin(Site* site, ReplyBuffer reply, std::uint32_t milliseconds);
// Reads what is left of a reply whose first line was taken by ReadOneLine and announced more.
int ReadReplyEnd(Site* site, ReplyBuffer reply);
// A transfer was cancelled whose final reply is outstanding: reads it, or closes the connection and tells the user.
void SettleCancelledTransfer(const char* callerName, Site* site, ReplyBuffer reply);
// A wait for a reply failed. When it was cancelled the reply is lost: closes the connection and tells the user (not
// while connecting: the log-in has its own way).
void DropUnansweredConnection(const char* callerName, Site* site);
// Closes the control connection and tells the user, unless whoever stops the worker does that.
void LoseControlConnection(const char* callerName, Site* site);
// Before a command is sent: throws away the rest of a line that was read before its line feed came, lest it be taken
// for the reply to this command.
void DropRestOfLine(platform::Socket socket);
// The last line came without its line feed: its rest may still be on its way.
bool LineIsUnfinished(platform::Socket socket);
// True when what was read is no answer but the rest of the line before it, `unfinished` having been asked before.
bool IsRestOfLine(bool unfinished, int result, const char* reply);
