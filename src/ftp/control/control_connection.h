// Commands to the server and its replies: the only place where bytes are written to or read from a control socket
// (RFC 959, section 5.3). One command at a time, then its reply. Reply buffers hold at least 260 characters.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include "config/site.h"
#include "ftp/worker/result_codes.h"

using ReplyBuffer = std::span<char>;

// Sends bytes in pieces of at most 1024. 0, or FTP_CLOSE with the socket error's text in `errorText`.
int sendstr(Site* site, std::string_view text, ReplyBuffer errorText);
// Sends one command line with CR LF. 0, FTP_ERROR for a bad parameter, or what sendstr returned.
int SendPacket(Site* site, const char* commandLine, ReplyBuffer errorText);
// Sends one command line and reads its whole reply.
int getreply(Site* site, const char* commandLine, ReplyBuffer reply);
// Formats a command (at most 2047 characters; a longer one is refused) and calls getreply.
int command(Site* site, ReplyBuffer reply, const char* format, ...) __attribute__((format(printf, 3, 4)));
// Formats into 511 characters and expands the result once more without arguments, as wanted for the gateway's "site".
int commandf(Site* site, ReplyBuffer reply, const char* format, ...) __attribute__((format(printf, 3, 4)));

// Reads one reply of one or more lines into `line`, shows each on the console, returns its class (550 whole).
int ReadDisplayLine(Site* site, ReplyBuffer line);
// Reads one line. `maximumBytes`: capacity in, bytes taken out. 1, 0 without memory, SOCKET_ERROR.
int ReadOneLine(Site* site, std::span<char> buffer, int& maximumBytes, int& lineCode, bool& continuing);
// Reads the reply to STAT line by line into `addLine`; the first line's whole code, SOCKET_ERROR or 0.
int ReadDisplayServerStat(Site* site, void (*addLine)(void* context, const char* line), void* context);

// Milliseconds since the site's last command (null: the active site).
std::uint32_t LastCmdTicks(const Site* site);
// True when the server takes commands: at once within 1000 ms of the last command, else after a NOOP. A failed NOOP
// with `closeOnFailure` tells the user and disconnects.
bool ServerReadyForCmd(Site* site, bool closeOnFailure);
// While set, inner lines of multi-line replies are not forced onto the console.
void SuppressInnerReplyLines(bool suppress);

// True when the site has an open control socket.
bool HasControlSocket(const Site* site);
// Copies `text` into a reply buffer, cut to it.
void SetReply(ReplyBuffer reply, std::string_view text);
