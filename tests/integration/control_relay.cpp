#include "integration/control_relay.h"

#ifdef _WIN32
#include <winsock2.h>
#else
#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>
#endif

#include <array>
#include <sstream>

#include "support/bounded_wait.h"

namespace {

constexpr std::uint32_t kLoopback = 0x7F000001;
constexpr std::uint32_t kSliceMilliseconds = 20;

// A piece of a dialogue must not wait for the acknowledgement of the one before it: the servers' own do not.
void SendAtOnce(platform::Socket socket) {
    const int on = 1;
#ifdef _WIN32
    const auto handle = static_cast<SOCKET>(socket);
#else
    const auto handle = static_cast<int>(socket);
#endif
    ::setsockopt(handle, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on), sizeof on);
}

bool SendAll(platform::Socket socket, std::string_view bytes) {
    while (!bytes.empty()) {
        const int sent = platform::Send(socket, bytes);
        if (sent <= 0) return false;
        bytes.remove_prefix(static_cast<std::size_t>(sent));
    }
    return true;
}

}  // namespace

ControlRelay::ControlRelay(std::uint16_t serverPort)
    : serverPort_(serverPort), listener_(platform::CreateSocket(platform::SocketKind::Stream)) {
    platform::Endpoint local;
    platform::BindLoopback(listener_, 0);
    platform::ListenSocket(listener_, 5);
    platform::GetLocalEndpoint(listener_, local);
    port_ = local.port;
    acceptor_ = std::make_unique<OtherThread>([this] { Accept(); });
}

ControlRelay::~ControlRelay() {
    stopping_ = true;
    acceptor_->Join();
    for (const auto& link : links_) {
        link->upwards->Join();
        link->downwards->Join();
        platform::CloseSocket(link->client);
        platform::CloseSocket(link->server);
    }
    platform::CloseSocket(listener_);
}

void ControlRelay::Accept() {
    while (!stopping_) {
        if (platform::WaitReadable(listener_, kSliceMilliseconds) != 1) continue;
        auto link = std::make_unique<Link>();
        link->client = platform::AcceptSocket(listener_, nullptr);
        link->server = platform::CreateSocket(platform::SocketKind::Stream);
        if (link->client == platform::kNoSocket || !platform::ConnectSocket(link->server, {kLoopback, serverPort_})) {
            platform::CloseSocket(link->client);
            platform::CloseSocket(link->server);
            continue;
        }
        SendAtOnce(link->client);
        SendAtOnce(link->server);
        ++connections_;
        Link* running = link.get();
        links_.push_back(std::move(link));
        running->upwards = std::make_unique<OtherThread>([this, running] { PassCommands(*running); });
        running->downwards = std::make_unique<OtherThread>([this, running] { PassReplies(*running); });
    }
}

// Waits for bytes; false at the end of the connection or of the relay.
bool ControlRelay::ReceiveMore(platform::Socket socket, std::string& bytes) const {
    while (!stopping_) {
        const int readable = platform::WaitReadable(socket, kSliceMilliseconds);
        if (readable == 0) continue;
        std::array<char, 4096> block;
        const int count = readable < 0 ? readable : platform::Receive(socket, block);
        if (count <= 0) return false;
        bytes.append(block.data(), static_cast<std::size_t>(count));
        return true;
    }
    return false;
}

void ControlRelay::PassCommands(const Link& link) {
    std::string bytes;
    while (ReceiveMore(link.client, bytes)) {
        {
            const std::lock_guard guard(lock_);
            commands_ += bytes;
        }
        SendAll(link.server, bytes);
        bytes.clear();
    }
    if (!stopping_) ++closedByClient_;
    platform::ShutdownSocket(link.server, platform::ShutdownHow::Send);
}

// Whole lines only, as the servers send them: a line that arrives in two pieces means something else to the program.
void ControlRelay::PassReplies(const Link& link) {
    std::string bytes;
    bool clientListens = true;
    while (ReceiveMore(link.server, bytes)) {
        const std::size_t end = bytes.rfind('\n') + 1;
        {
            const std::lock_guard guard(lock_);
            replies_.append(bytes, 0, end);
        }
        // A client that has gone does not keep the server's last words from being written down.
        if (clientListens) clientListens = SendAll(link.client, std::string_view(bytes).substr(0, end));
        bytes.erase(0, end);
    }
    platform::ShutdownSocket(link.client, platform::ShutdownHow::Send);
}

std::vector<std::string> ControlRelay::Commands() const {
    const std::lock_guard guard(lock_);
    std::vector<std::string> lines;
    std::istringstream text(commands_);
    for (std::string line; std::getline(text, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.push_back(line);
    }
    return lines;
}

int ControlRelay::CountCommands(std::string_view verb) const {
    int count = 0;
    for (const std::string& line : Commands())
        count += line.starts_with(verb) && (line.size() == verb.size() || line[verb.size()] == ' ') ? 1 : 0;
    return count;
}

void ControlRelay::ForgetCommands() {
    const std::lock_guard guard(lock_);
    commands_.clear();
}

std::string ControlRelay::Replies() const {
    const std::lock_guard guard(lock_);
    return replies_;
}

bool ControlRelay::WaitForCommand(std::string_view verb) const {
    return test_support::WaitUntil([&] { return CountCommands(verb) > 0; });
}

bool ControlRelay::WaitForReply(std::string_view part) const {
    return test_support::WaitUntil([&] { return Replies().find(part) != std::string::npos; });
}

bool ControlRelay::WaitUntilClientClosed() const {
    return test_support::WaitUntil([&] { return closedByClient_ == connections_; });
}
