// Data connections, active only (RFC 959, sections 3.2 and 5.2): the type, listener and PORT, and the receiving
// commands around one copy. Not here: the server's end (data_accept.h), the copy (data_copy.h) and sending
// (data_send.h).
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "config/site.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/item_outcome.h"
#include "ftp/data/transfer_node.h"

// Sends TYPE when `type` ('A', 'I', 'L') differs from the one in force. The reply is not examined.
void SetRepresentationType(Site* site, ReplyBuffer reply, char type);
// Makes the listener and announces it. 2, the PORT reply's result, or FTP_CLOSE.
int GetFTPListenSocket(Site* site, ReplyBuffer reply);
// The text of a PORT command for a listener (address in host order).
std::string PortCommand(std::uint32_t address, std::uint16_t port);

// Runs one receiving command into a local file. `commandText` is expanded once more (double the percent signs of
// names). The final reply's result; 0 when the server refused (its text stays in `reply`); SOCKET_ERROR; FTP_ERROR on
// abort. A local file that could not be written: FTP_ERROR (SOCKET_ERROR when it could not even be made) and the
// system's text in `reply`.
int RetrieveFile(Site* site, ReplyBuffer reply, const char* commandText, const char* localFile, char type,
                 const std::atomic<bool>& abort);

// A file that a user's transfer asks for.
struct Retrieval {
    const char* commandText;  // expanded once more, as above
    const char* localFile;    // made or emptied by the call; the caller renames or deletes it afterwards
    char type;                // 'A', 'I' or 'L'
    std::uint64_t total = 0;  // bytes, as the listing said
};
// The same with progress through the session view. A local failure is in the outcome's localError, and its code is then
// FTP_ERROR, or kLocalAccessDenied for a refusal.
ItemOutcome ReceiveItem(Site* site, const Retrieval& what);
// The same for a transfer node, whose iRetCode gets the outcome's code. Returns the final reply's result.
int DlgRetrieveFile(Site* site, TransferNode& node, ReplyBuffer reply, const char* commandText, const char* localFile,
                    char type, const std::atomic<bool>& abort);
