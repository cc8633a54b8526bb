// Sends a local file over a data connection: STOU or STOR, the bytes, the server's verdict (RFC 959, section 4.1.3).
// Not here: the listener (data_connection.h) and the server's end (data_accept.h).
#pragma once

#include <atomic>
#include <cstdint>

#include "config/site.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/item_outcome.h"
#include "ftp/data/transfer_node.h"

// Stores one local file on the server: STOU with SENDUNIQUE, else STOR. A file of 4 GiB and more is refused first. The
// outcome's `told` is set when the user has been shown why: the file cannot be opened, or is too big. The name that the
// server chose goes into node.pszStoredName.
ItemOutcome SendItem(Site* site, TransferNode& node, char type);
// The same; the code goes into node.iRetCode and the server's last words into `reply`.
bool DlgSendFile(Site* site, TransferNode& node, ReplyBuffer reply, char type, const std::atomic<bool>& abort);

// Reads the node's local file and sends it on the open data connection. A file that cannot be opened is FTP_ERROR in
// node.iRetCode.
bool DlgSendMass(Site* site, TransferNode& node);
// Sends one buffer, moving the progress. 2, FTP_ERROR, or SOCKET_ERROR.
int DlgSendBuffer(Site* site, const char* buffer, std::uint32_t length, std::uint64_t sentBefore, std::uint64_t total);
