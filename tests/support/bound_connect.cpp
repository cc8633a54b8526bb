#include "support/bound_connect.h"
#include "platform/address_text.h"

#ifdef _WIN32
#include <winsock2.h>
#else
#include <netinet/in.h>
#include <sys/socket.h>
#endif

platform::Socket ConnectFrom(const std::string& address, platform::Endpoint peer) {
    std::uint32_t local = 0;
    if (!platform::ParseAddress(address.c_str(), local)) return platform::kNoSocket;
    const platform::Socket socket = platform::CreateSocket(platform::SocketKind::Stream);
    sockaddr_in name = {};
    name.sin_family = AF_INET;
    name.sin_addr.s_addr = htonl(local);
#ifdef _WIN32
    const auto handle = static_cast<SOCKET>(socket);
#else
    const auto handle = static_cast<int>(socket);
#endif
    if (::bind(handle, reinterpret_cast<const sockaddr*>(&name), sizeof name) == 0 &&
        platform::ConnectSocket(socket, peer))
        return socket;
    platform::CloseSocket(socket);
    return platform::kNoSocket;
}
