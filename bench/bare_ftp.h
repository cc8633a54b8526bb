// The yardstick of the receive benchmark: the least that a program can do to get a file, one recv and one WriteFile per
// buffer, with plain system calls and nothing of the engine. Says on stderr what went wrong.
#pragma once

#include <cstdint>
#include <string>

class BareFtp {
  public:
    BareFtp() = default;
    ~BareFtp();
    BareFtp(const BareFtp&) = delete;
    BareFtp& operator=(const BareFtp&) = delete;

    // Logs in on loopback and asks for binary transfers.
    bool Connect(std::uint16_t port);
    // Bytes received into `localFile`, or -1: from PORT to the final reply.
    std::int64_t Retrieve(const char* remoteName, const char* localFile, std::uint32_t bufferSize);

  private:
    using Handle = std::uintptr_t;  // a SOCKET; the system's header and the engine's do not go together

    bool Command(const std::string& line, char expected);
    bool Reply(char expected);
    Handle Listen();

    Handle control_ = ~Handle{0};
    std::string received_;  // bytes of the control connection not looked at yet
};
