#include "ftp/control/reply_buffer.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/result_codes.h"
#include "support/bounded_wait.h"
#include "transfer/get_item.h"
#include "transfer/put_item.h"
#include "transfer/transfer_fixture.h"
#include "transfer/tree_transfer.h"

namespace {

// What a transfer that waited too long tells, and how it differs from one that the user ended. The flag is the one that
// the window's timer sets.
class TransferTimeOut : public TransferTest {
  protected:
    TransferTimeOut() {
        gZarn.SENDUNIQUE = 0;
        gZarn.port.timeout = 1;
        SetTransferAbort(false);
        harness.server.AddFile("/pub/a.txt", "hello\r\n");
        local.Write("up.txt", "text");
    }
    bool Get() {
        node = NodeFor("/pub", "a.txt");
        return DlgGetFile(&node, gSession.transferAbort);
    }
    bool Put(const std::string& name = "up.txt") {
        node = NodeFor(local.Path().c_str(), "");
        node.pszRemoteName.reset();
        node.pszLocalName = OwnedText::Copy(name);
        node.pszDestination = OwnedText::Copy("/pub");
        outcome = PutItem(job, node);
        return outcome.code == FTP_COMPLETE;
    }
    bool TellsTimeOut(const std::string& name) {
        return harness.console.HasBox("The server did not answer for 1 seconds while transferring\n    <" + name + ">");
    }
    TransferNode node;
    ItemOutcome outcome;
};

TEST_F(TransferTimeOut, ReceptionThatStandsStillIsToldAsATimeOut) {
    harness.server.On("RETR", {Say("150 ok\r\n"), OpenData(), DataBytes("hel"), WaitDataClosed(), Say("426 gone\r\n")});
    harness.console.AnswerNext(BoxAnswer::Ignore);
    const TimeOutTimer timer;
    EXPECT_FALSE(Get());
    EXPECT_TRUE(TellsTimeOut("a.txt"));
    EXPECT_EQ(1u, harness.console.Boxes().size());
    EXPECT_EQ(BoxButtons::AbortRetryIgnore, harness.console.Boxes()[0].buttons);
    EXPECT_TRUE(harness.console.HasLine("Timer cancelled a blocking call"));
    EXPECT_TRUE(local.Exists("up.txt"));
    EXPECT_FALSE(local.Exists("a.txt"));
    // Ignore continues: the abort is withdrawn and the server in step.
    EXPECT_FALSE(gSession.transferAbort);
    harness.server.Forget("RETR");
    EXPECT_TRUE(Get());
    EXPECT_EQ("hello\r\n", local.Read("a.txt"));
}

TEST_F(TransferTimeOut, RetryAfterATimeOutReceivesTheFile) {
    harness.server.Once("RETR", {Say("150 ok\r\n"), OpenData(), WaitDataClosed(), Say("426 gone\r\n")});
    harness.console.AnswerNext(BoxAnswer::Retry);
    const TimeOutTimer timer;
    EXPECT_TRUE(Get());
    EXPECT_EQ("hello\r\n", local.Read("a.txt"));
    EXPECT_EQ(0, job.counters.failures);
}

TEST_F(TransferTimeOut, AbortInItsBoxEndsTheTransfer) {
    harness.server.On("RETR", {Say("150 ok\r\n"), OpenData(), WaitDataClosed(), Say("426 gone\r\n")});
    harness.console.AnswerNext(BoxAnswer::Abort);
    const TimeOutTimer timer;
    EXPECT_FALSE(Get());
    EXPECT_TRUE(gSession.transferAbort);
    EXPECT_EQ(1u, harness.console.Boxes().size());
}

TEST_F(TransferTimeOut, DataConnectionThatNeverComesIsATimeOutToo) {
    harness.server.On("RETR", {Say("150 ok\r\n"), Stall()});
    const TimeOutTimer timer;
    EXPECT_FALSE(Get());
    EXPECT_TRUE(TellsTimeOut("a.txt"));
    EXPECT_TRUE(gSession.transferAbort);
}

TEST_F(TransferTimeOut, ServerThatTakesNoBytesIsToldAsATimeOut) {
    local.Write("big.bin", std::string(20'000'000, 'x'));
    harness.server.On("STOR", {Say("150 ok\r\n"), OpenData(), Hold(), CloseData(), Say("426 gone\r\n")});
    harness.console.AnswerNext(BoxAnswer::Ignore);
    OtherThread release([this] {
        test_support::WaitUntil([this] { return harness.console.HasLine("Timer cancelled a blocking call"); });
        harness.server.Release();
    });
    const TimeOutTimer timer;
    EXPECT_FALSE(Put("big.bin"));
    EXPECT_TRUE(TellsTimeOut("big.bin"));
    EXPECT_TRUE(GoesOnWithout(job, outcome));
    EXPECT_FALSE(gSession.transferAbort);
    EXPECT_EQ(1, job.counters.failures);
}

TEST_F(TransferTimeOut, MissingLastWordOfAnUploadIsATimeOutAndEndsTheConnection) {
    harness.server.On("STOR", {Say("150 ok\r\n"), OpenData(), ReadData(), CloseData(), Stall()});
    const TimeOutTimer timer;
    EXPECT_FALSE(Put());
    EXPECT_TRUE(TellsTimeOut("up.txt"));
    EXPECT_TRUE(gSession.transferAbort);
    EXPECT_FALSE(GoesOnWithout(job, outcome));
    EXPECT_FALSE(HasControlSocket(site));
}

TEST_F(TransferTimeOut, ListingOfATreeThatStandsStillIsToldAndTriedAgain) {
    harness.server.AddFile("/pub/dir/b.txt", "bbb");
    harness.server.Once("LIST", {Say("150 ok\r\n"), OpenData(), WaitDataClosed(), Say("426 gone\r\n")});
    harness.console.AnswerNext(BoxAnswer::Retry);
    node = NodeFor("/pub", "dir", kNodeFolder);
    const TimeOutTimer timer;
    EXPECT_TRUE(TransferRemoteTree(&node, local.Path().c_str(), "/pub", gSession.transferAbort));
    EXPECT_TRUE(TellsTimeOut("/pub/dir"));
    EXPECT_EQ("bbb", local.Read("dir/b.txt"));
}

TEST_F(TransferTimeOut, AbortByTheUserIsNoTimeOut) {
    gZarn.port.timeout = 60;
    harness.server.On("RETR", {Say("150 ok\r\n"), OpenData(), Hold(), Say("426 gone\r\n")});
    OtherThread user([this] {
        harness.server.WaitUntilHeld();
        // Before that reply is read the abort would end the wait for it, and with it the session.
        test_support::WaitUntil([this] { return harness.console.HasLine("150 ok"); });
        AbortAsTheUserDoes();
        harness.server.Release();
    });
    EXPECT_FALSE(Get());
    EXPECT_TRUE(harness.console.Boxes().empty());
    EXPECT_FALSE(StoppedByTimeOut());
}

TEST_F(TransferTimeOut, TimerAfterTheUsersAbortChangesNothing) {
    SetTransferAbort(true);
    SetTransferTimedOut();
    EXPECT_FALSE(StoppedByTimeOut());
    SetTransferAbort(false);
    SetTransferTimedOut();
    EXPECT_TRUE(StoppedByTimeOut());
    EXPECT_TRUE(gSession.transferAbort);
    SetTransferAbort(false);
    EXPECT_FALSE(StoppedByTimeOut());
}

}  // namespace
