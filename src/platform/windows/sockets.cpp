#include "platform/sockets.h"

#include <winsock2.h>
#include <ws2tcpip.h>

#include <algorithm>
#include <climits>

#include "platform/windows/wide_text.h"

namespace platform {
namespace {

// Buffers that one call fills or sends; more are left for the next call.
constexpr std::size_t kMostBuffers = 64;

using ReceiveManyFunction = int(WSAAPI*)(SOCKET, WSABUF*, DWORD, DWORD*, DWORD*, WSAOVERLAPPED*, void*);
using SendManyFunction = int(WSAAPI*)(SOCKET, WSABUF*, DWORD, DWORD*, DWORD, WSAOVERLAPPED*, void*);
using CancelFunction = BOOL(WINAPI*)(HANDLE, OVERLAPPED*);

SOCKET AsSocket(Socket socket) {
    return static_cast<SOCKET>(socket);
}

int ClampSize(std::size_t size) {
    return static_cast<int>(std::min<std::size_t>(size, INT_MAX));
}

sockaddr_in ToSystem(Endpoint endpoint) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = ::htonl(endpoint.address);
    address.sin_port = ::htons(endpoint.port);
    return address;
}

Endpoint FromSystem(const sockaddr_in& address) {
    return {::ntohl(address.sin_addr.s_addr), ::ntohs(address.sin_port)};
}

bool SetIntegerOption(Socket socket, int option, int value) {
    return ::setsockopt(AsSocket(socket), SOL_SOCKET, option, reinterpret_cast<const char*>(&value), sizeof value) == 0;
}

bool BindTo(Socket socket, Endpoint endpoint) {
    const sockaddr_in address = ToSystem(endpoint);
    return ::bind(AsSocket(socket), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

using EndpointFunction = int(WSAAPI*)(SOCKET, sockaddr*, int*);

bool AskEndpoint(EndpointFunction ask, Socket socket, Endpoint& endpoint) {
    sockaddr_in address = {};
    int length = sizeof address;
    if (ask(AsSocket(socket), reinterpret_cast<sockaddr*>(&address), &length) != 0) return false;
    endpoint = FromSystem(address);
    return true;
}

// Copies the list into the system's form; the number of buffers taken.
DWORD ToSystem(std::span<const IoBuffer> buffers, WSABUF (&list)[kMostBuffers]) {
    const std::size_t count = std::min(buffers.size(), kMostBuffers);
    for (std::size_t index = 0; index < count; ++index) {
        list[index].buf = buffers[index].data;
        list[index].len = static_cast<ULONG>(ClampSize(buffers[index].size));
    }
    return static_cast<DWORD>(count);
}

}  // namespace

int StartSockets(std::string& description) {
    WSADATA data = {};
    const int error = ::WSAStartup(MAKEWORD(1, 1), &data);
    if (error != 0) return error;
    description = data.szDescription;
    return 0;
}

void StopSockets() {
    ::WSACleanup();
}

int LastSocketError() {
    return ::WSAGetLastError();
}

void SetLastSocketError(int error) {
    ::WSASetLastError(error);
}

Socket CreateSocket(SocketKind kind) {
    const int type = kind == SocketKind::Stream ? SOCK_STREAM : SOCK_DGRAM;
    return static_cast<Socket>(::socket(AF_INET, type, 0));
}

bool SetReuseAddress(Socket socket) {
    return SetIntegerOption(socket, SO_REUSEADDR, 1);
}

bool SetOutOfBandInline(Socket socket) {
    return SetIntegerOption(socket, SO_OOBINLINE, 1);
}

bool SetLinger(Socket socket, int seconds) {
    const linger value = {1, static_cast<u_short>(std::clamp(seconds, 0, 0xFFFF))};
    return ::setsockopt(AsSocket(socket), SOL_SOCKET, SO_LINGER, reinterpret_cast<const char*>(&value), sizeof value) ==
           0;
}

bool SetReceiveBuffer(Socket socket, int bytes) {
    return SetIntegerOption(socket, SO_RCVBUF, bytes);
}

bool ConnectSocket(Socket socket, Endpoint peer) {
    const sockaddr_in address = ToSystem(peer);
    return ::connect(AsSocket(socket), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0;
}

bool BindAnyAddress(Socket socket, std::uint16_t port) {
    return BindTo(socket, {INADDR_ANY, port});
}

bool BindLoopback(Socket socket, std::uint16_t port) {
    return BindTo(socket, {INADDR_LOOPBACK, port});
}

bool ListenSocket(Socket socket, int backlog) {
    return ::listen(AsSocket(socket), backlog) == 0;
}

Socket AcceptSocket(Socket listener, Endpoint* peer) {
    sockaddr_in address = {};
    int length = sizeof address;
    const SOCKET accepted = ::accept(AsSocket(listener), reinterpret_cast<sockaddr*>(&address), &length);
    if (accepted == INVALID_SOCKET) return kNoSocket;
    if (peer != nullptr) *peer = FromSystem(address);
    return static_cast<Socket>(accepted);
}

bool GetLocalEndpoint(Socket socket, Endpoint& local) {
    return AskEndpoint(::getsockname, socket, local);
}

bool GetPeerEndpoint(Socket socket, Endpoint& peer) {
    return AskEndpoint(::getpeername, socket, peer);
}

int Receive(Socket socket, std::span<char> buffer) {
    return ::recv(AsSocket(socket), buffer.data(), ClampSize(buffer.size()), 0);
}

int Peek(Socket socket, std::span<char> buffer) {
    return ::recv(AsSocket(socket), buffer.data(), ClampSize(buffer.size()), MSG_PEEK);
}

int ReceiveInto(Socket socket, std::span<const IoBuffer> buffers) {
    static const auto receiveMany = FindFunction<ReceiveManyFunction>(L"ws2_32.dll", "WSARecv");
    if (buffers.empty()) return 0;
    if (receiveMany == nullptr) return Receive(socket, {buffers[0].data, buffers[0].size});
    WSABUF list[kMostBuffers];
    const DWORD count = ToSystem(buffers, list);
    DWORD received = 0;
    DWORD flags = 0;
    if (receiveMany(AsSocket(socket), list, count, &received, &flags, nullptr, nullptr) != 0) return -1;
    return static_cast<int>(received);
}

int Send(Socket socket, std::span<const char> bytes) {
    return ::send(AsSocket(socket), bytes.data(), ClampSize(bytes.size()), 0);
}

int SendFrom(Socket socket, std::span<const IoBuffer> buffers) {
    static const auto sendMany = FindFunction<SendManyFunction>(L"ws2_32.dll", "WSASend");
    if (buffers.empty()) return 0;
    if (sendMany == nullptr) return Send(socket, {buffers[0].data, buffers[0].size});
    WSABUF list[kMostBuffers];
    const DWORD count = ToSystem(buffers, list);
    DWORD sent = 0;
    if (sendMany(AsSocket(socket), list, count, &sent, 0, nullptr, nullptr) != 0) return -1;
    return static_cast<int>(sent);
}

int WaitReadable(Socket socket, std::uint32_t milliseconds) {
    fd_set readable;
    readable.fd_count = 1;
    readable.fd_array[0] = AsSocket(socket);
    timeval limit = {static_cast<long>(milliseconds / 1000), static_cast<long>(milliseconds % 1000 * 1000)};
    const int result = ::select(0, &readable, nullptr, nullptr, milliseconds == INFINITE ? nullptr : &limit);
    return std::clamp(result, -1, 1);
}

bool ShutdownSocket(Socket socket, ShutdownHow how) {
    return ::shutdown(AsSocket(socket), static_cast<int>(how)) == 0;
}

bool CloseSocket(Socket socket) {
    return ::closesocket(AsSocket(socket)) == 0;
}

// Closing alone does not end a send to a peer that has stopped reading, and after closing nothing does.
void CancelSocket(Socket socket) {
    static const auto cancel = FindFunction<CancelFunction>(L"kernel32.dll", "CancelIoEx");
    const LastErrorKeeper keeper;
    if (cancel != nullptr && socket != kNoSocket) cancel(reinterpret_cast<HANDLE>(socket), nullptr);
}

// The old look-up and no newer one: it answers for IPv4 alone and exists since version 1.1.
int ResolveHost(const char* name, std::vector<std::uint32_t>& addresses) {
    addresses.clear();
    const hostent* host = ::gethostbyname(name);
    if (host == nullptr) return ::WSAGetLastError();
    if (host->h_addrtype == AF_INET) {
        for (char** entry = host->h_addr_list; *entry != nullptr; ++entry) {
            in_addr address = {};
            std::copy_n(*entry, sizeof address, reinterpret_cast<char*>(&address));
            addresses.push_back(::ntohl(address.s_addr));
        }
    }
    return addresses.empty() ? WSANO_DATA : 0;
}

std::uint16_t ServicePort(const char* service, const char* protocol) {
    const servent* entry = ::getservbyname(service, protocol);
    return entry == nullptr ? std::uint16_t{0} : ::ntohs(static_cast<u_short>(entry->s_port));
}

int ProtocolNumber(const char* protocol) {
    const protoent* entry = ::getprotobyname(protocol);
    return entry == nullptr ? -1 : entry->p_proto;
}

std::string ComputerName() {
    wchar_t name[MAX_COMPUTERNAME_LENGTH + 1];
    DWORD length = ARRAYSIZE(name);
    if (!::GetComputerNameW(name, &length)) return {};
    return FromWide(std::wstring_view(name, length));
}

}  // namespace platform
