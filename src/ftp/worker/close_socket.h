// Closing control and data sockets: shutdown, linger, retries (RFC 959, section 3.3, says who closes a data
// connection). Opening them is login/connect_site.h and data/data_connection.h.
#pragma once

#include <atomic>

#include "platform/sockets.h"

// The direction that is shut down before the close.
enum class CloseHow { Receive = 0, Send = 1, Both = 2, None = 3 };
// Closes a socket with a linger of 25 seconds (0 during an abort) and returns kNoSocket for the caller to store.
platform::Socket DoClose(platform::Socket socket, CloseHow how);
// The same for a stored socket: takes it out first, so that two threads cannot close it twice. True when it was open.
bool CloseStoredSocket(std::atomic<platform::Socket>& stored, CloseHow how);
// Resets the connection: nothing waits for bytes that are still to be sent.
void AbandonStoredSocket(std::atomic<platform::Socket>& stored);
