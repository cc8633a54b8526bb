#include "ftp/login/connect_site.h"

#include <string>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/number_text.h"
#include "foundation/text_compare.h"
#include "foundation/trace.h"
#include "ftp/errors/error_texts.h"
#include "ftp/login/host_lookup.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/site_status.h"
#include "platform/address_text.h"

namespace {

constexpr char kFuncName[] = "Zarn_ConnectSite";
constexpr int kTcp = 6;

// 0, with message 6078, when neither the service, nor its name, nor the settings give a port.
std::uint16_t ControlPort(const char* service, const char* protocol) {
    const auto configured = static_cast<std::uint16_t>(gZarn.port.ftpPort);
    const bool overridden = gZarn.port.ftpPort != kFirstPort && configured != 0;
    const std::uint16_t known = platform::ServicePort(service, protocol);
    if (known == 0) {
        const std::uint32_t number = ParseUnsigned(service);
        if (number != 0 && number <= UINT16_MAX) return static_cast<std::uint16_t>(number);
    }
    if (overridden) {
        DoPrintIdArgs(MSG_OVERRIDING_PORT, static_cast<unsigned>(configured));
        return configured;
    }
    if (known != 0) return known;
    if (EqualsIgnoringCase(service, "FTP")) return static_cast<std::uint16_t>(kFirstPort);
    DoPrintIdArgs(MSG_NO_SERVICE_ENTRY, service);
    return 0;
}

bool HostAddress(Site* site, std::uint32_t& address) {
    const SocketRecord& record = *site->pSock;
    if (record.PeerName[0] != '\0') {
        if (platform::ParseAddress(record.PeerName, address)) return true;
        DbgVsprintf(kFuncName, "ERROR. Call to inet_addr(%s) Failed. Returning FALSE", record.PeerName);
        return false;
    }
    const std::string host = site->pszHost.c_str();
    const LookupResult found = LookUpHost(host, gZarn.port.timeout * 1000u, LookupFor::Operation);
    if (found.end == LookupEnd::Found) {
        address = found.addresses.front();
        return true;
    }
    if (found.end != LookupEnd::Stopped && platform::ParseAddress(host.c_str(), address)) {
        DbgVsprintf(kFuncName, "INFO. PeerName:%s, Must be an address", host.c_str());
        return true;
    }
    DbgPrintSocketError(kFuncName, "gethostbyname", platform::kNoSocket, found.error);
    DoPrintIdArgs(MSG_NO_HOST_ENTRY, host);
    return false;
}

bool KnownProtocol(const char* protocol) {
    if (platform::ProtocolNumber(protocol) >= 0) return true;
    if (EqualsIgnoringCase(protocol, "TCP")) {
        DbgVsprintf(kFuncName, "INFO. Protocol %s taken as number %d", protocol, kTcp);
        return true;
    }
    DoPrintIdArgs(MSG_NO_PROTOCOL_ENTRY, protocol);
    return false;
}

// The address that PORT announces: this connection's own end, because servers refuse another one.
void NoteLocalEnd(SocketRecord& record) {
    platform::Endpoint local;
    if (!platform::GetLocalEndpoint(record.ctrl_skt, local)) {
        DbgPrintSocketError(kFuncName, "getsockname", record.ctrl_skt, 0);
        return;
    }
    const std::string text = platform::AddressText(local.address);
    record.LocalName[text.copy(record.LocalName, sizeof record.LocalName - 1)] = '\0';
    record.localPort = local.port;
    if (gSession.localAddress.exchange(local.address) != local.address)
        DoPrintIdArgs(MSG_LOCAL_ADDRESS_OF_CONNECTION, text);
}

}  // namespace

bool Zarn_ConnectSite(Site* site, const char* service, const char* protocol) {
    if (site == nullptr || site->pSock == nullptr || service == nullptr || protocol == nullptr) return false;
    const std::uint16_t port = ControlPort(service, protocol);
    std::uint32_t address = 0;
    if (port == 0 || !HostAddress(site, address) || !KnownProtocol(protocol)) return false;

    SocketRecord& record = *site->pSock;
    const bool datagram = std::string_view(protocol) == "udp";
    const platform::Socket socket =
        platform::CreateSocket(datagram ? platform::SocketKind::Datagram : platform::SocketKind::Stream);
    if (socket == platform::kNoSocket) {
        DbgPrintSocketError(kFuncName, "create socket", socket, 0);
        return false;
    }
    if (!platform::SetReuseAddress(socket)) {
        DbgPrintSocketError(kFuncName, "setsockopt(SO_REUSEADDR)", socket, 0);
        DoClose(socket, CloseHow::None);
        return false;
    }
    record.ctrl_skt = socket;
    record.serverType = 'A';
    record.lineUnfinished = false;
    const char* host = site->pszHost.c_str();
    DoPrintIdArgs(MSG_CONNECTING_TO, host);
    const platform::Endpoint peer{address, port};
    bool connected = false;
    if (!StopRequested()) {
        const BlockingCall call(socket);
        connected = platform::ConnectSocket(socket, peer);
    }
    if (!connected) {
        DbgPrintSocketError(kFuncName, "connect", socket, 0);
        DoPrintIdArgs(MSG_CANNOT_CONNECT, host, service, static_cast<unsigned>(port));
        return false;
    }
    if (record.PeerName[0] == '\0') {
        record.peerAddress = peer;
        SetPeerName(*site, platform::AddressText(address));
    }
    record.peerPort = port;
    NoteLocalEnd(record);
    DoPrintIdArgs(MSG_CONNECTED_TO, record.PeerName, static_cast<unsigned>(port));
    return true;
}
