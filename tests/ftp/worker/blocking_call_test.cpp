#include "ftp/worker/blocking_call.h"

#include <gtest/gtest.h>

#include "ftp/control/remote_commands.h"
#include "ftp/worker/session_state.h"
#include "ftp/working_session.h"

namespace {

TEST(TimeOut, WithoutABlockingCallNothingHappens) {
    SessionHarness h;
    EXPECT_EQ(HandleTimeOutTimer(7), 7000u);
    EXPECT_EQ(TimeOutRemaining(0), 1000u);
    EXPECT_FALSE(gSession.transferAbort);
}

TEST(TimeOut, ZeroMeansForEver) {
    SessionHarness h;
    const BlockingCall call(platform::kNoSocket);
    EXPECT_GT(HandleTimeOutTimer(0), 0u);
    EXPECT_FALSE(gSession.transferAbort);
}

TEST(TimeOut, ASilentServerEndsATransfer) {
    Working w;
    gZarn.port.timeout = 1;
    w.h.server.On("RETR", {Say("150 go\r\n"), OpenData(), DataBytes("some"), WaitDataClosed(), Say("426 cut\r\n")});
    const TimeOutTimer timer;
    ASSERT_TRUE(w.StartRetrieve());
    EXPECT_TRUE(w.Idle());
    EXPECT_EQ(w.result, FTP_ERROR);
    EXPECT_EQ(w.h.console.CountLines("Timer cancelled a blocking call"), 1);
    EXPECT_TRUE(w.NoTransferSockets());
    EXPECT_TRUE(w.InStep());
}

TEST(TimeOut, ALostReplyClosesTheConnection) {
    Working w;
    gZarn.port.timeout = 1;
    w.h.server.On("CWD", {Stall()});
    const TimeOutTimer timer;
    ASSERT_TRUE(StartWorker("test", [&] { w.result = DoCWD(w.site, "/x", w.h.reply, true); }));
    EXPECT_TRUE(w.Idle());
    EXPECT_EQ(w.result, SOCKET_ERROR);
    EXPECT_FALSE(HasControlSocket(w.site));
    EXPECT_TRUE(w.h.console.HasBox("The FTP Server has aborted your connection"));
    EXPECT_EQ(w.h.view.RunPostedDisconnects(), 1);
    EXPECT_EQ(w.h.view.Disconnected(), 1);
}

TEST(TimeOut, CoversTheWaitForTheDataConnection) {
    Working w;
    gZarn.port.timeout = 1;
    w.h.server.On("RETR", {Say("150 go\r\n"), Hold(), Say("425 no\r\n")});
    const TimeOutTimer timer;
    ASSERT_TRUE(w.StartRetrieve());
    ASSERT_TRUE(test_support::WaitUntil([&] { return w.h.console.HasLine("Timer cancelled a blocking call"); }));
    w.h.server.Release();
    EXPECT_TRUE(w.Idle());
    EXPECT_EQ(w.result, FTP_ERROR);
    EXPECT_TRUE(w.InStep());
}

TEST(TimeOut, TheNextOperationStartsFresh) {
    Working w;
    SetTransferAbort(true);
    w.h.server.AddFile("/f", "x");
    ASSERT_TRUE(w.StartRetrieve());
    EXPECT_TRUE(w.Idle());
    EXPECT_EQ(w.result, FTP_COMPLETE);
}

}  // namespace
