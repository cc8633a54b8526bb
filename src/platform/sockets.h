// TCP sockets of the operating system, IPv4, blocking. Every wait can be ended from another thread with
// CancelSocket. Nothing here knows FTP, traces, or shows anything: callers ask LastSocketError() and report.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace platform {

using Socket = std::intptr_t;
inline constexpr Socket kNoSocket = -1;

// An IPv4 address and port, both in host byte order.
struct Endpoint {
    std::uint32_t address = 0;
    std::uint16_t port = 0;
    bool operator==(const Endpoint&) const = default;
};

// One of several buffers that a single call fills or sends, in order.
struct IoBuffer {
    char* data;
    std::size_t size;
};

enum class SocketKind { Stream, Datagram };
enum class ShutdownHow { Receive = 0, Send = 1, Both = 2 };

// Socket error numbers that the program's own rules name; the same numbers on every system.
inline constexpr int kSocketWouldBlock = 10035;
inline constexpr int kSocketTimedOut = 10060;

// Starts the socket library, version 1.1. Returns 0 or the error number; `description` receives the library's name.
int StartSockets(std::string& description);
void StopSockets();

// The calling thread's last socket error as a Windows Sockets number (10004, 10061, ...) on every system.
int LastSocketError();
void SetLastSocketError(int error);

Socket CreateSocket(SocketKind kind);  // kNoSocket on failure
bool SetReuseAddress(Socket socket);
bool SetOutOfBandInline(Socket socket);
bool SetLinger(Socket socket, int seconds);
// Room of the system's own receive buffer in bytes; only a hint.
bool SetReceiveBuffer(Socket socket, int bytes);

// Blocking; false on failure. A socket whose connect failed must be closed, not used again.
bool ConnectSocket(Socket socket, Endpoint peer);
// Binds to any local address; port 0 lets the system choose.
bool BindAnyAddress(Socket socket, std::uint16_t port);
bool BindLoopback(Socket socket, std::uint16_t port);
bool ListenSocket(Socket socket, int backlog);
// Blocking; kNoSocket on failure. `peer` may be null.
Socket AcceptSocket(Socket listener, Endpoint* peer);
bool GetLocalEndpoint(Socket socket, Endpoint& local);
bool GetPeerEndpoint(Socket socket, Endpoint& peer);

// Bytes received; 0 when the peer closed; -1 on failure.
int Receive(Socket socket, std::span<char> buffer);
// As Receive, but the bytes stay in the socket.
int Peek(Socket socket, std::span<char> buffer);
// Fills the buffers in order with one system call where the system can (one call costs more than the copy).
int ReceiveInto(Socket socket, std::span<const IoBuffer> buffers);
// Bytes sent (may be fewer than given); -1 on failure.
int Send(Socket socket, std::span<const char> bytes);
int SendFrom(Socket socket, std::span<const IoBuffer> buffers);

// Waits until the socket can be read (or a connection accepted): 1 yes, 0 time is up, -1 failure.
int WaitReadable(Socket socket, std::uint32_t milliseconds);

bool ShutdownSocket(Socket socket, ShutdownHow how);
bool CloseSocket(Socket socket);
// Ends calls of other threads that are blocked on this socket; they fail. Safe on a socket that no thread waits on.
// The socket stays open; a caller that sees its thread still blocked calls again.
void CancelSocket(Socket socket);

// Looks a host name up; blocks until the system answers and cannot be cancelled (callers give it a thread that may
// be left alone). 0 and at least one address, or the error number.
int ResolveHost(const char* name, std::vector<std::uint32_t>& addresses);

// Port of a service ("ftp") / number of a protocol ("tcp") from the system's database; 0 when unknown.
std::uint16_t ServicePort(const char* service, const char* protocol);
int ProtocolNumber(const char* protocol);  // -1 when unknown
// The machine's name as the system gives it, empty on failure.
std::string ComputerName();

}  // namespace platform
