// Copies a data connection into a local file. Buffers of PACKETSIZE, several filled by one system call; each received
// piece is written as it came. Not here: opening the connection (data_connection.h) and sending (data_send.h).
#pragma once

#include <cstdint>

#include "config/site.h"
#include "ftp/control/reply_buffer.h"

// How a copy ended. A local failure is kept apart from a lost connection: the messages differ.
struct CopyOutcome {
    std::int64_t bytes = -1;       // received or sent; -1 when nothing could be done
    bool reachedEnd = false;       // the peer closed the data connection in order / the whole file was sent
    std::uint32_t localError = 0;  // system error of the local file, 0 when it was not the cause
    int socketError = 0;
};

// Copies the data socket into `localFile`, made or emptied by the call. With `showProgress` the session view gets the
// progress; `total` is the expected size (0 when unknown). Statistics go to the console.
CopyOutcome ReceiveFile(Site* site, const char* localFile, bool showProgress, std::uint64_t total);
// The same as a plain primitive: -1 or the number of bytes (saturated at 2^31 - 1).
int ReadMass(Site* site, ReplyBuffer reply, const char* localFile, bool binary);
// With progress.
CopyOutcome DlgReadMass(Site* site, ReplyBuffer reply, const char* localFile, bool binary, std::uint64_t total);
