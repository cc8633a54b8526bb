#include "platform/sockets.h"

#include <netdb.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <sys/uio.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <iterator>

#include "fault_injection.h"
#include "host_errors.h"
#include "recorded_calls.h"
#include "socket_table.h"

namespace platform {
namespace {

using fault_injection::Call;
using fault_injection::Strikes;
using host::WaitResult;
using recorded_calls::Recording;

constexpr std::size_t kMostBuffers = 64;
constexpr int kHostNotFound = 11001;
constexpr int kTryAgain = 11002;
constexpr int kNoRecovery = 11003;
constexpr int kNoData = 11004;

int AsDescriptor(Socket socket) {
    return static_cast<int>(socket);
}

sockaddr_in ToSystem(Endpoint endpoint) {
    sockaddr_in address = {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(endpoint.address);
    address.sin_port = htons(endpoint.port);
    return address;
}

Endpoint FromSystem(const sockaddr_in& address) {
    return {ntohl(address.sin_addr.s_addr), ntohs(address.sin_port)};
}

template <class Value>
bool SetOption(Socket socket, int option, const Value& value) {
    return ::setsockopt(AsDescriptor(socket), SOL_SOCKET, option, &value, sizeof value) == 0 || host::FailSocket();
}

bool BindTo(Socket socket, Endpoint endpoint) {
    if (Strikes(Call::Bind)) return false;
    const sockaddr_in address = ToSystem(endpoint);
    return ::bind(AsDescriptor(socket), reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0 ||
           host::FailSocket();
}

using EndpointFunction = int (*)(int, sockaddr*, socklen_t*);

bool AskEndpoint(EndpointFunction ask, Socket socket, Endpoint& endpoint) {
    sockaddr_in address = {};
    socklen_t length = sizeof address;
    if (ask(AsDescriptor(socket), reinterpret_cast<sockaddr*>(&address), &length) != 0) return host::FailSocket();
    endpoint = FromSystem(address);
    return true;
}

// Repeats a call that would block until the socket is ready. The call's result, or -1 with the last error set.
template <class SystemCall>
ssize_t CallBlocking(Socket socket, short events, SystemCall call) {
    for (;;) {
        const ssize_t result = call();
        if (result >= 0) return result;
        if (errno == EINTR) continue;
        if (errno != EAGAIN) {
            host::FailSocket();
            return -1;
        }
        if (host::WaitSocket(AsDescriptor(socket), events, host::kForever) == WaitResult::Failed) return -1;
    }
}

int ReceiveMessage(Socket socket, std::span<const IoBuffer> buffers, int flags) {
    if (Strikes(Call::Receive)) return -1;
    iovec list[kMostBuffers];
    msghdr message = {};
    message.msg_iov = list;
    message.msg_iovlen = std::min(buffers.size(), kMostBuffers);
    for (std::size_t index = 0; index < message.msg_iovlen; ++index) {
        list[index] = {buffers[index].data, buffers[index].size};
    }
    const auto call = [&] { return ::recvmsg(AsDescriptor(socket), &message, flags); };
    return static_cast<int>(CallBlocking(socket, POLLIN, call));
}

int SendMessage(Socket socket, std::span<const IoBuffer> buffers) {
    if (Strikes(Call::Send)) return -1;
    iovec list[kMostBuffers];
    msghdr message = {};
    message.msg_iov = list;
    message.msg_iovlen = std::min(buffers.size(), kMostBuffers);
    for (std::size_t index = 0; index < message.msg_iovlen; ++index) {
        list[index] = {buffers[index].data, buffers[index].size};
    }
    const auto call = [&] { return ::sendmsg(AsDescriptor(socket), &message, MSG_NOSIGNAL); };
    return static_cast<int>(CallBlocking(socket, POLLOUT, call));
}

int LookUpError(int error) {
    switch (error) {
        case EAI_AGAIN:
            return kTryAgain;
        case EAI_FAIL:
            return kNoRecovery;
        case EAI_NODATA:
            return kNoData;
        default:
            return kHostNotFound;
    }
}

struct NamedNumber {
    const char* name;
    int number;
};

// For machines without the databases in /etc.
constexpr NamedNumber kServices[] = {{"ftp-data", 20}, {"ftp", 21}, {"telnet", 23}};
constexpr NamedNumber kProtocols[] = {{"ip", 0}, {"icmp", 1}, {"tcp", 6}, {"udp", 17}};

int FindNumber(std::span<const NamedNumber> table, const char* name, int absent) {
    for (const NamedNumber& entry : table) {
        if (std::strcmp(entry.name, name) == 0) return entry.number;
    }
    return absent;
}

}  // namespace

int StartSockets(std::string& description) {
    description = "POSIX sockets";
    return 0;
}

void StopSockets() {}

Socket CreateSocket(SocketKind kind) {
    if (Strikes(Call::CreateSocket)) return kNoSocket;
    const int type = kind == SocketKind::Stream ? SOCK_STREAM : SOCK_DGRAM;
    return host::AddSocket(::socket(AF_INET, type | SOCK_CLOEXEC, 0));
}

bool SetReuseAddress(Socket socket) {
    return SetOption(socket, SO_REUSEADDR, 1);
}

bool SetOutOfBandInline(Socket socket) {
    return SetOption(socket, SO_OOBINLINE, 1);
}

bool SetLinger(Socket socket, int seconds) {
    Recording::AddSocketCall(socket, "linger " + std::to_string(seconds));
    return SetOption(socket, SO_LINGER, linger{1, seconds});
}

bool SetReceiveBuffer(Socket socket, int bytes) {
    return SetOption(socket, SO_RCVBUF, bytes);
}

bool ConnectSocket(Socket socket, Endpoint peer) {
    if (Strikes(Call::Connect)) return false;
    const sockaddr_in address = ToSystem(peer);
    const int descriptor = AsDescriptor(socket);
    if (::connect(descriptor, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return true;
    if (errno != EINPROGRESS) return host::FailSocket();
    if (host::WaitSocket(descriptor, POLLOUT, host::kForever) == WaitResult::Failed) return false;
    int error = 0;
    socklen_t length = sizeof error;
    if (::getsockopt(descriptor, SOL_SOCKET, SO_ERROR, &error, &length) != 0) return host::FailSocket();
    errno = error;
    return error == 0 || host::FailSocket();
}

bool BindAnyAddress(Socket socket, std::uint16_t port) {
    return BindTo(socket, {INADDR_ANY, port});
}

bool BindLoopback(Socket socket, std::uint16_t port) {
    return BindTo(socket, {INADDR_LOOPBACK, port});
}

bool ListenSocket(Socket socket, int backlog) {
    if (Strikes(Call::Listen)) return false;
    return ::listen(AsDescriptor(socket), backlog) == 0 || host::FailSocket();
}

Socket AcceptSocket(Socket listener, Endpoint* peer) {
    if (Strikes(Call::Accept)) return kNoSocket;
    sockaddr_in address = {};
    socklen_t length = sizeof address;
    const auto call = [&]() -> ssize_t {
        return ::accept4(AsDescriptor(listener), reinterpret_cast<sockaddr*>(&address), &length, SOCK_CLOEXEC);
    };
    const auto accepted = static_cast<int>(CallBlocking(listener, POLLIN, call));
    if (accepted < 0) return kNoSocket;
    if (peer != nullptr) *peer = FromSystem(address);
    return host::AddSocket(accepted);
}

bool GetLocalEndpoint(Socket socket, Endpoint& local) {
    if (!AskEndpoint(::getsockname, socket, local)) return false;
    // Windows has no local end to name before the socket is bound or connected.
    if (local == Endpoint()) return host::Fail(10022);
    return true;
}

bool GetPeerEndpoint(Socket socket, Endpoint& peer) {
    return AskEndpoint(::getpeername, socket, peer);
}

int Receive(Socket socket, std::span<char> buffer) {
    const IoBuffer whole = {buffer.data(), buffer.size()};
    return ReceiveMessage(socket, {&whole, 1}, 0);
}

int Peek(Socket socket, std::span<char> buffer) {
    const IoBuffer whole = {buffer.data(), buffer.size()};
    return ReceiveMessage(socket, {&whole, 1}, MSG_PEEK);
}

int ReceiveInto(Socket socket, std::span<const IoBuffer> buffers) {
    return buffers.empty() ? 0 : ReceiveMessage(socket, buffers, 0);
}

int Send(Socket socket, std::span<const char> bytes) {
    // The system's list has no place for "only read"; sending does not write to the bytes.
    const IoBuffer whole = {const_cast<char*>(bytes.data()), bytes.size()};
    return SendMessage(socket, {&whole, 1});
}

int SendFrom(Socket socket, std::span<const IoBuffer> buffers) {
    return buffers.empty() ? 0 : SendMessage(socket, buffers);
}

int WaitReadable(Socket socket, std::uint32_t milliseconds) {
    if (Strikes(Call::WaitReadable)) return -1;
    switch (host::WaitSocket(AsDescriptor(socket), POLLIN, milliseconds)) {
        case WaitResult::Ready:
            return 1;
        case WaitResult::TimeUp:
            return 0;
        case WaitResult::Failed:
            break;
    }
    return -1;
}

bool ShutdownSocket(Socket socket, ShutdownHow how) {
    static_assert(SHUT_RD == 0 && SHUT_WR == 1 && SHUT_RDWR == 2);
    Recording::AddSocketCall(socket, "shutdown " + std::to_string(static_cast<int>(how)));
    return ::shutdown(AsDescriptor(socket), static_cast<int>(how)) == 0 || host::FailSocket();
}

bool CloseSocket(Socket socket) {
    Recording::AddSocketCall(socket, "close");
    if (Strikes(Call::CloseSocket)) return false;
    return host::RemoveSocket(AsDescriptor(socket));
}

void CancelSocket(Socket socket) {
    host::CancelWaits(AsDescriptor(socket));
}

int ResolveHost(const char* name, std::vector<std::uint32_t>& addresses) {
    addresses.clear();
    addrinfo wanted = {};
    wanted.ai_family = AF_INET;
    wanted.ai_socktype = SOCK_STREAM;
    addrinfo* found = nullptr;
    const int error = ::getaddrinfo(name, nullptr, &wanted, &found);
    if (error != 0) return LookUpError(error);
    for (const addrinfo* entry = found; entry != nullptr; entry = entry->ai_next) {
        sockaddr_in address = {};
        std::memcpy(&address, entry->ai_addr, sizeof address);
        addresses.push_back(ntohl(address.sin_addr.s_addr));
    }
    ::freeaddrinfo(found);
    return addresses.empty() ? kNoData : 0;
}

std::uint16_t ServicePort(const char* service, const char* protocol) {
    const servent* const entry = ::getservbyname(service, protocol);
    if (entry != nullptr) return ntohs(static_cast<std::uint16_t>(entry->s_port));
    return static_cast<std::uint16_t>(FindNumber(kServices, service, 0));
}

int ProtocolNumber(const char* protocol) {
    const protoent* const entry = ::getprotobyname(protocol);
    return entry != nullptr ? entry->p_proto : FindNumber(kProtocols, protocol, -1);
}

std::string ComputerName() {
    char name[256] = {};
    return ::gethostname(name, sizeof name - 1) == 0 ? std::string(name) : std::string();
}

}  // namespace platform
