// What the socket tests share: a started socket library, connected pairs on loopback, and a call on a thread of its
// own.
#pragma once

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <utility>

#include "platform/clock.h"
#include "platform/sockets.h"
#include "platform/threads.h"
#include "support/bounded_wait.h"

namespace platform_tests {

inline constexpr std::uint32_t kLoopback = 0x7F000001;

class SocketTest : public testing::Test {
  protected:
    void SetUp() override {
        std::string description;
        ASSERT_EQ(platform::StartSockets(description), 0);
    }
    void TearDown() override { platform::StopSockets(); }
};

// Closes itself.
class OwnedSocket {
  public:
    OwnedSocket() = default;
    explicit OwnedSocket(platform::Socket socket) : socket_(socket) {}
    OwnedSocket(OwnedSocket&& other) noexcept : socket_(std::exchange(other.socket_, platform::kNoSocket)) {}
    OwnedSocket& operator=(OwnedSocket&& other) noexcept {
        std::swap(socket_, other.socket_);
        return *this;
    }
    OwnedSocket(const OwnedSocket&) = delete;
    OwnedSocket& operator=(const OwnedSocket&) = delete;
    ~OwnedSocket() { Close(); }

    bool Close() {
        const platform::Socket socket = std::exchange(socket_, platform::kNoSocket);
        return socket == platform::kNoSocket || platform::CloseSocket(socket);
    }
    platform::Socket Get() const { return socket_; }

  private:
    platform::Socket socket_ = platform::kNoSocket;
};

struct Listener {
    OwnedSocket socket;
    platform::Endpoint endpoint;
};

inline Listener ListenOnLoopback(int backlog) {
    Listener listener;
    listener.socket = OwnedSocket(platform::CreateSocket(platform::SocketKind::Stream));
    EXPECT_TRUE(platform::BindLoopback(listener.socket.Get(), 0));
    EXPECT_TRUE(platform::ListenSocket(listener.socket.Get(), backlog));
    EXPECT_TRUE(platform::GetLocalEndpoint(listener.socket.Get(), listener.endpoint));
    return listener;
}

struct ConnectedPair {
    OwnedSocket client, server;
};

inline ConnectedPair ConnectPair() {
    const Listener listener = ListenOnLoopback(1);
    ConnectedPair pair;
    pair.client = OwnedSocket(platform::CreateSocket(platform::SocketKind::Stream));
    EXPECT_TRUE(platform::ConnectSocket(pair.client.Get(), listener.endpoint));
    pair.server = OwnedSocket(platform::AcceptSocket(listener.socket.Get(), nullptr));
    EXPECT_NE(pair.server.Get(), platform::kNoSocket);
    return pair;
}

// Runs a call on a thread of its own. The call must have ended before this is destroyed.
class BackgroundCall {
  public:
    explicit BackgroundCall(std::function<void()> call)
        : call_(std::move(call)), thread_(platform::StartThread(Run, this)) {}
    ~BackgroundCall() {
        EXPECT_TRUE(HasEnded(test_support::kLongWait)) << "a call of another thread is stuck";
        platform::CloseThread(thread_);
    }
    BackgroundCall(const BackgroundCall&) = delete;
    BackgroundCall& operator=(const BackgroundCall&) = delete;

    bool HasEnded(std::uint32_t milliseconds) { return platform::WaitThread(thread_, milliseconds); }

  private:
    static void Run(void* self) { static_cast<BackgroundCall*>(self)->call_(); }
    std::function<void()> call_;
    platform::ThreadHandle thread_;
};

}  // namespace platform_tests
