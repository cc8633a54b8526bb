// The counters of what an operation left behind count at all.
#include "matrix/leftovers.h"

#include <gtest/gtest.h>

#include "platform/sockets.h"
#include "support/session_harness.h"

TEST(Leftovers, ARunningThreadAndAnOpenSocketAreCounted) {
    std::string description;
    ASSERT_EQ(platform::StartSockets(description), 0);
    const platform::EventHandle end = platform::CreateManualEvent();
    const platform::Socket first = platform::CreateSocket(platform::SocketKind::Stream);
    // ThreadSanitizer starts a thread of its own with the first one of the program.
    {
        const OtherThread warmUp([] {});
    }
    const matrix::Holdings before = matrix::Holdings::Now();
    const platform::Socket second = platform::CreateSocket(platform::SocketKind::Stream);
    {
        const OtherThread waiting([end] { platform::WaitEvent(end, 10'000); });
        const matrix::Holdings now = matrix::Holdings::Now();
        EXPECT_EQ(now.threads, before.threads + 1);
        EXPECT_EQ(now.sockets, before.sockets + 1);
        platform::SignalEvent(end);
    }
    platform::CloseSocket(second);
    EXPECT_EQ(matrix::WhatIsLeft(before), "");
    platform::CloseSocket(first);
    platform::CloseEvent(end);
}
