// Calls that another thread ends: each must fail at once, however long the peer would keep it waiting.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>
#include <string>
#include <vector>

#include "platform/socket_fixtures.h"

namespace platform_tests {
namespace {

class CancelSocket : public SocketTest {};

constexpr std::uint32_t kProofOfBlocking = 50;     // milliseconds in which a call that can return would have done so
constexpr std::uint64_t kCancelBound = 1'000'000;  // microseconds

// Cancels, again while the call is still there, as callers do; microseconds until it ended.
std::uint64_t CancelUntilEnded(platform::Socket socket, BackgroundCall& call) {
    const std::uint64_t start = platform::Microseconds();
    do {
        platform::CancelSocket(socket);
    } while (!call.HasEnded(5) && platform::Microseconds() - start < 10 * kCancelBound);
    return platform::Microseconds() - start;
}

TEST_F(CancelSocket, EndsAReceive) {
    const ConnectedPair pair = ConnectPair();
    std::atomic<int> result = 0;
    BackgroundCall call([&] {
        char buffer[16];
        result = platform::Receive(pair.client.Get(), buffer);
    });
    ASSERT_FALSE(call.HasEnded(kProofOfBlocking));
    EXPECT_LT(CancelUntilEnded(pair.client.Get(), call), kCancelBound);
    EXPECT_EQ(result, -1);
}

TEST_F(CancelSocket, EndsAPeek) {
    const ConnectedPair pair = ConnectPair();
    std::atomic<int> result = 0;
    BackgroundCall call([&] {
        char buffer[16];
        result = platform::Peek(pair.client.Get(), buffer);
    });
    ASSERT_FALSE(call.HasEnded(kProofOfBlocking));
    EXPECT_LT(CancelUntilEnded(pair.client.Get(), call), kCancelBound);
    EXPECT_EQ(result, -1);
}

TEST_F(CancelSocket, EndsAReceiveIntoSeveralBuffers) {
    const ConnectedPair pair = ConnectPair();
    std::atomic<int> result = 0;
    BackgroundCall call([&] {
        char first[16], second[16];
        const platform::IoBuffer buffers[] = {{first, sizeof first}, {second, sizeof second}};
        result = platform::ReceiveInto(pair.client.Get(), buffers);
    });
    ASSERT_FALSE(call.HasEnded(kProofOfBlocking));
    EXPECT_LT(CancelUntilEnded(pair.client.Get(), call), kCancelBound);
    EXPECT_EQ(result, -1);
}

TEST_F(CancelSocket, EndsAnAccept) {
    const Listener listener = ListenOnLoopback(1);
    std::atomic<platform::Socket> result = 0;
    BackgroundCall call([&] { result = platform::AcceptSocket(listener.socket.Get(), nullptr); });
    ASSERT_FALSE(call.HasEnded(kProofOfBlocking));
    EXPECT_LT(CancelUntilEnded(listener.socket.Get(), call), kCancelBound);
    EXPECT_EQ(result, platform::kNoSocket);
}

TEST_F(CancelSocket, EndsAWait) {
    const ConnectedPair pair = ConnectPair();
    std::atomic<int> result = 0;
    BackgroundCall call([&] { result = platform::WaitReadable(pair.client.Get(), 60'000); });
    ASSERT_FALSE(call.HasEnded(kProofOfBlocking));
    EXPECT_LT(CancelUntilEnded(pair.client.Get(), call), kCancelBound);
    EXPECT_EQ(result, -1);
}

// A connect that stays pending: the listener's queue is full and nobody accepts.
TEST_F(CancelSocket, EndsAConnect) {
    const Listener listener = ListenOnLoopback(0);
    struct Attempt {
        OwnedSocket socket{platform::CreateSocket(platform::SocketKind::Stream)};
        std::atomic<bool> connected = false;
        std::unique_ptr<BackgroundCall> call;
    };
    std::vector<std::unique_ptr<Attempt>> attempts;
    bool pending = false;
    for (int number = 0; number < 16 && !pending; ++number) {
        attempts.push_back(std::make_unique<Attempt>());
        Attempt& attempt = *attempts.back();
        attempt.call = std::make_unique<BackgroundCall>(
            [&] { attempt.connected = platform::ConnectSocket(attempt.socket.Get(), listener.endpoint); });
        pending = !attempt.call->HasEnded(4 * kProofOfBlocking);
    }
    ASSERT_TRUE(pending) << "no connect stayed pending";
    Attempt& last = *attempts.back();
    EXPECT_LT(CancelUntilEnded(last.socket.Get(), *last.call), kCancelBound);
    EXPECT_FALSE(last.connected);
}

struct EndlessSender {
    platform::Socket socket;
    std::size_t pieces;
    std::atomic<std::uint64_t> sent = 0;
    std::atomic<int> last = 0;

    void Run() {
        std::string bytes(64 * 1024, 'x');
        const std::size_t piece = bytes.size() / pieces;
        std::vector<platform::IoBuffer> buffers;
        for (std::size_t index = 0; index < pieces; ++index) buffers.push_back({bytes.data() + index * piece, piece});
        do {
            last = pieces == 1 ? platform::Send(socket, bytes) : platform::SendFrom(socket, buffers);
            if (last > 0) sent += static_cast<std::uint64_t>(last);
        } while (last > 0);
    }

    // True when nothing more goes out because the peer does not read.
    bool IsStalled(BackgroundCall& call) {
        const std::uint64_t before = sent;
        return before > 0 && !call.HasEnded(2 * kProofOfBlocking) && sent == before;
    }
};

class CancelSend : public CancelSocket, public testing::WithParamInterface<std::size_t> {};

TEST_P(CancelSend, EndsASendToAPeerThatNeverReads) {
    const ConnectedPair pair = ConnectPair();
    EndlessSender sender{pair.client.Get(), GetParam()};
    BackgroundCall call([&] { sender.Run(); });
    ASSERT_TRUE(test_support::WaitUntil([&] { return sender.IsStalled(call); }));
    EXPECT_LT(CancelUntilEnded(pair.client.Get(), call), kCancelBound);
    EXPECT_EQ(sender.last, -1);
}

INSTANTIATE_TEST_SUITE_P(OneAndSeveralBuffers, CancelSend, testing::Values(1, 4));

TEST_F(CancelSocket, LeavesTheSocketUsable) {
    const ConnectedPair pair = ConnectPair();
    char buffer[16];
    {
        BackgroundCall call([&] {
            char unused[16];
            platform::Receive(pair.client.Get(), unused);
        });
        ASSERT_FALSE(call.HasEnded(kProofOfBlocking));
        EXPECT_LT(CancelUntilEnded(pair.client.Get(), call), kCancelBound);
    }
    ASSERT_EQ(platform::Send(pair.server.Get(), std::string_view("after")), 5);
    EXPECT_EQ(platform::Receive(pair.client.Get(), buffer), 5);
}

TEST_F(CancelSocket, DoesNothingWhenNobodyWaits) {
    const ConnectedPair pair = ConnectPair();
    platform::SetLastSocketError(10060);
    for (int time = 0; time < 3; ++time) platform::CancelSocket(pair.client.Get());
    platform::CancelSocket(platform::kNoSocket);
    EXPECT_EQ(platform::LastSocketError(), 10060);
    ASSERT_EQ(platform::Send(pair.server.Get(), std::string_view("still")), 5);
    char buffer[16];
    EXPECT_EQ(platform::Receive(pair.client.Get(), buffer), 5);
    EXPECT_EQ(platform::WaitReadable(pair.client.Get(), 20), 0);
}

TEST_F(CancelSocket, EndsEveryThreadOnTheSocketAndNoOther) {
    const ConnectedPair pair = ConnectPair();
    const ConnectedPair bystander = ConnectPair();
    const auto receive = [](platform::Socket socket) {
        char buffer[16];
        platform::Receive(socket, buffer);
    };
    BackgroundCall first([&] { receive(pair.client.Get()); });
    BackgroundCall second([&] { receive(pair.client.Get()); });
    BackgroundCall other([&] { receive(bystander.client.Get()); });
    ASSERT_FALSE(first.HasEnded(kProofOfBlocking));
    ASSERT_FALSE(second.HasEnded(kProofOfBlocking));
    EXPECT_LT(CancelUntilEnded(pair.client.Get(), first), kCancelBound);
    EXPECT_LT(CancelUntilEnded(pair.client.Get(), second), kCancelBound);
    EXPECT_FALSE(other.HasEnded(kProofOfBlocking));
    CancelUntilEnded(bystander.client.Get(), other);
}

TEST_F(CancelSocket, ClosingEndsAReceiveAsWell) {
    ConnectedPair pair = ConnectPair();
    std::atomic<int> result = 0;
    BackgroundCall call([&, socket = pair.client.Get()] {
        char buffer[16];
        result = platform::Receive(socket, buffer);
    });
    ASSERT_FALSE(call.HasEnded(kProofOfBlocking));
    EXPECT_TRUE(pair.client.Close());
    EXPECT_TRUE(call.HasEnded(1000));
    EXPECT_EQ(result, -1);
}

// The order in which a session is torn down: cancel, then close.
TEST_F(CancelSocket, ThenCloseEndsManyReceivesWithoutOneStuck) {
    for (int round = 0; round < 50; ++round) {
        ConnectedPair pair = ConnectPair();
        std::atomic<bool> entered = false;
        BackgroundCall call([&, socket = pair.client.Get()] {
            char buffer[16];
            entered = true;
            while (platform::Receive(socket, buffer) > 0) {
            }
        });
        ASSERT_TRUE(test_support::WaitUntil([&] { return entered.load(); }));
        platform::CancelSocket(pair.client.Get());
        ASSERT_TRUE(pair.client.Close());
        ASSERT_TRUE(call.HasEnded(1000)) << "round " << round;
    }
}

}  // namespace
}  // namespace platform_tests
