#include "ftp/worker/close_socket.h"

#include <gtest/gtest.h>

#include "foundation/trace.h"
#include "ftp/worker/session_state.h"
#include "support/session_harness.h"

#ifndef _WIN32
#include "host/fault_injection.h"
#include "host/recorded_calls.h"
#endif

namespace {

platform::Socket NewSocket() {
    return platform::CreateSocket(platform::SocketKind::Stream);
}

TEST(DoClose, AlwaysReturnsNoSocket) {
    SessionHarness h;
    EXPECT_EQ(DoClose(NewSocket(), CloseHow::Both), platform::kNoSocket);
    EXPECT_EQ(DoClose(platform::kNoSocket, CloseHow::None), platform::kNoSocket);
}

TEST(CloseStoredSocket, TakesTheSocketOutAndClosesItOnce) {
    SessionHarness h;
    std::atomic<platform::Socket> stored{NewSocket()};
    EXPECT_TRUE(CloseStoredSocket(stored, CloseHow::None));
    EXPECT_EQ(stored, platform::kNoSocket);
    EXPECT_FALSE(CloseStoredSocket(stored, CloseHow::None));
}

#ifndef _WIN32

using Calls = std::vector<std::string>;

TEST(DoClose, ShutsDownThenLingers25SecondsThenCloses) {
    SessionHarness h;
    const recorded_calls::Recording recording;
    for (const CloseHow how : {CloseHow::Receive, CloseHow::Send, CloseHow::Both}) {
        const platform::Socket socket = NewSocket();
        const auto before = recording.CallsOn(socket).size();
        DoClose(socket, how);
        Calls calls = recording.CallsOn(socket);
        calls.erase(calls.begin(), calls.begin() + static_cast<std::ptrdiff_t>(before));
        EXPECT_EQ(calls, (Calls{"shutdown " + std::to_string(static_cast<int>(how)), "linger 25", "close"}));
    }
}

TEST(DoClose, WithoutADirectionNothingIsShutDown) {
    SessionHarness h;
    const recorded_calls::Recording recording;
    const platform::Socket socket = NewSocket();
    DoClose(socket, CloseHow::None);
    EXPECT_EQ(recording.CallsOn(socket), (Calls{"linger 25", "close"}));
}

TEST(DoClose, DuringAnAbortNothingLingers) {
    SessionHarness h;
    const recorded_calls::Recording recording;
    const platform::Socket socket = NewSocket();
    SetAborting(true);
    DoClose(socket, CloseHow::Send);
    EXPECT_EQ(recording.CallsOn(socket), (Calls{"shutdown 1", "linger 0", "close"}));
}

TEST(DoClose, ACloseThatWouldBlockIsTriedFiveTimesMore) {
    SessionHarness h;
    gTrace.debug = true;
    const platform::Socket socket = NewSocket();
    {
        const recorded_calls::Recording recording;
        fault_injection::Reset();
        fault_injection::FailFrom(fault_injection::Call::CloseSocket, 1, platform::kSocketWouldBlock);
        EXPECT_EQ(DoClose(socket, CloseHow::None), platform::kNoSocket);
        fault_injection::Reset();
        EXPECT_EQ(recording.CallsOn(socket),
                  (Calls{"linger 25", "close", "close", "close", "close", "close", "close"}));
    }
    EXPECT_TRUE(h.console.HasLine("Retried 5 times to close data socket."));
    EXPECT_TRUE(platform::CloseSocket(socket));
}

TEST(DoClose, AnyOtherFailureToCloseIsNotRepeated) {
    SessionHarness h;
    const platform::Socket socket = NewSocket();
    const recorded_calls::Recording recording;
    {
        const fault_injection::Scope fault(fault_injection::Call::CloseSocket, 1, 10038);
        DoClose(socket, CloseHow::None);
    }
    EXPECT_EQ(recording.CallsOn(socket), (Calls{"linger 25", "close"}));
    EXPECT_TRUE(platform::CloseSocket(socket));
}

TEST(AbandonStoredSocket, ClosesWithoutShutdownOrLinger) {
    SessionHarness h;
    const recorded_calls::Recording recording;
    const platform::Socket socket = NewSocket();
    std::atomic<platform::Socket> stored{socket};
    AbandonStoredSocket(stored);
    EXPECT_EQ(recording.CallsOn(socket), (Calls{"linger 0", "close"}));
    EXPECT_EQ(stored, platform::kNoSocket);
}

#endif

}  // namespace
