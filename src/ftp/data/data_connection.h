// Data connections, active only (RFC 959, sections 3.2 and 5.2): listener and PORT, the receiving and sending commands
// around one copy. A connection is accepted only from the control connection's peer.
#pragma once

#include <atomic>

#include "config/site.h"
#include "foundation/foundation_view.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/transfer_node.h"

// Sends TYPE when `type` ('A', 'I', 'L') differs from the one in force. The reply is not examined.
void SetRepresentationType(Site* site, ReplyBuffer reply, char type);
// Makes the listener and announces it. 2, the PORT reply's result, or FTP_CLOSE.
int GetFTPListenSocket(Site* site, ReplyBuffer reply);
// The text of a PORT command for a listener (address in host order).
std::string PortCommand(std::uint32_t address, std::uint16_t port);

// Runs one receiving command into a local file. `commandText` is expanded once more (double the percent signs of
// names). The final reply's result; 0 when the server refused (its text stays in `reply`); SOCKET_ERROR; FTP_ERROR on
// abort. A local file that could not be written: FTP_ERROR (SOCKET_ERROR when it could not even be made), the system's
// text in `reply` and platform::LastSystemError() tells which error; that is 0 after every other end.
int RetrieveFile(Site* site, ReplyBuffer reply, const char* commandText, const char* localFile, char type,
                 const std::atomic<bool>& abort);
// The same for a user's transfer: progress through the session view, the outcome also in node.iRetCode. `localFile` is
// created (or emptied) by the call; it is the caller's to rename or delete afterwards. A local failure is FTP_ERROR
// here in every case, and node.iRetCode then kLocalAccessDenied when it was a refusal.
int DlgRetrieveFile(Site* site, TransferNode& node, ReplyBuffer reply, const char* commandText, const char* localFile,
                    char type, const std::atomic<bool>& abort);
// Why a send failed, as far as the reply does not tell.
struct SendFailure {
    bool told = false;                   // the user knows: the file cannot be opened, or is too big
    BoxAnswer answer = BoxAnswer::None;  // what he chose then
    std::uint32_t localError = 0;        // the local file could not be read to its end
};
// Stores one local file on the server: STOU with SENDUNIQUE, else STOR. A file of 4 GiB and more is refused first.
bool DlgSendFile(Site* site, TransferNode& node, ReplyBuffer reply, char type, const std::atomic<bool>& abort,
                 SendFailure* failure = nullptr);
