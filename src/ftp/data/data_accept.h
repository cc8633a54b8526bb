// Sends a transfer command and waits for the server's data connection, which only the control connection's peer may
// make (RFC 959, section 3.2). Copying and the final reply are the callers' work.
#pragma once

#include <atomic>

#include "config/site.h"
#include "ftp/control/reply_buffer.h"

// Whether the data connection is open, in pSock->data_skt.
struct DataOpening {
    bool open = false;
    // When it is not: 0 when the server refused the command, the class of an error reply that came instead of the data
    // connection, SOCKET_ERROR, or FTP_ERROR on abort.
    int code = 0;
};
// Sends the command and accepts the connection. The listener is closed in every case.
DataOpening OpenDataConnection(const char* callerName, Site* site, ReplyBuffer reply, const char* commandLine,
                               const std::atomic<bool>& abort);

// The final reply of a transfer.
int ReadFinalReply(const char* callerName, Site* site, ReplyBuffer reply);

// The class that a reply's own text carries when its first line was cut to the buffer (result 0), else `result`. Long
// names make such replies to transfer commands, and they are no failure.
int ClassOfCutReply(int result, const char* reply);
