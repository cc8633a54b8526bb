// Blocking calls of the native sockets that another thread can end. A socket is a descriptor that never blocks by
// itself; whoever must wait does so here, on the socket and on a wake-up descriptor at once.
#pragma once

#include <cstdint>

namespace host {

inline constexpr std::uint32_t kForever = 0xFFFFFFFF;

enum class WaitResult { Ready, TimeUp, Failed };

// Makes a fresh descriptor known. -1 stays -1, with the last error set.
int AddSocket(int descriptor);
// Waits for poll() events on the socket. Failed: cancelled or closed meanwhile; the last error is set.
WaitResult WaitSocket(int descriptor, short events, std::uint32_t milliseconds);
// Ends the waits of this moment; a wait that begins later is not touched, as with CancelIoEx.
void CancelWaits(int descriptor);
// Ends the waits and closes the descriptor, when the last of them has left it.
bool RemoveSocket(int descriptor);

}  // namespace host
