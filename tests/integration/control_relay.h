// Stands between the program and a server's control port and writes down what both say. Data connections go past it:
// they are made by the server to the program's own listener.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "platform/sockets.h"
#include "support/session_harness.h"

class ControlRelay {
  public:
    explicit ControlRelay(std::uint16_t serverPort);
    ~ControlRelay();
    ControlRelay(const ControlRelay&) = delete;
    ControlRelay& operator=(const ControlRelay&) = delete;

    std::uint16_t Port() const { return port_; }
    int Connections() const { return connections_; }
    // Command lines of all connections in order, without line ends.
    std::vector<std::string> Commands() const;
    int CountCommands(std::string_view verb) const;
    void ForgetCommands();
    // Everything the server said, with line ends.
    std::string Replies() const;
    bool WaitForCommand(std::string_view verb) const;  // bounded
    bool WaitForReply(std::string_view part) const;    // bounded
    bool WaitUntilClientClosed() const;                // bounded; every connection

  private:
    struct Link {
        platform::Socket client = platform::kNoSocket;
        platform::Socket server = platform::kNoSocket;
        std::unique_ptr<OtherThread> upwards, downwards;
    };
    void Accept();
    void PassCommands(const Link& link);
    void PassReplies(const Link& link);
    bool ReceiveMore(platform::Socket socket, std::string& bytes) const;

    std::uint16_t serverPort_;
    std::uint16_t port_ = 0;
    platform::Socket listener_;
    std::atomic<bool> stopping_{false};
    std::atomic<int> connections_{0};
    std::atomic<int> closedByClient_{0};
    mutable std::mutex lock_;  // the two texts
    std::string commands_;
    std::string replies_;
    std::vector<std::unique_ptr<Link>> links_;  // the accepting thread's until it ends
    std::unique_ptr<OtherThread> acceptor_;
};
