#include "transfer/transfer_job.h"

#include <gtest/gtest.h>

#include "config/settings.h"
#include "ftp/data/transfer_node.h"
#include "ftp/worker/session_state.h"
#include "support/session_harness.h"
#include "transfer/drop_transfer.h"
#include "transfer/get_item.h"
#include "transfer/local_tree_transfer.h"
#include "transfer/put_item.h"
#include "transfer/selection_transfer.h"
#include "transfer/transfer_run.h"
#include "transfer/tree_transfer.h"

namespace {

class TransferJobTest : public testing::Test {
  protected:
    ~TransferJobTest() override { SetTransferAbort(false); }
    SessionHarness harness;
    TransferJob job;
};

TEST_F(TransferJobTest, StartTellsTheDirection) {
    for (const TransferStart start : {TransferStart::DropFiles, TransferStart::StandardInput}) {
        job.start = start;
        EXPECT_EQ(TransferDirection::Upload, job.Direction());
    }
    for (const TransferStart start : {TransferStart::ListSelection, TransferStart::TreeSelection}) {
        job.start = start;
        EXPECT_EQ(TransferDirection::Download, job.Direction());
    }
}

TEST_F(TransferJobTest, StopSetsTheProgramsAbortFlag) {
    EXPECT_FALSE(job.Stopped());
    job.Stop();
    EXPECT_TRUE(gSession.transferAbort);
    EXPECT_TRUE(job.Stopped());
    SetTransferAbort(false);
    EXPECT_FALSE(job.Stopped());
}

TEST_F(TransferJobTest, TimeOutAndAbortCommandStopIt) {
    SetTransferTimedOut();
    EXPECT_TRUE(job.Stopped());
    SetTransferAbort(false);
    SetAborting(true);
    EXPECT_TRUE(job.Stopped());
    SetAborting(false);
    EXPECT_FALSE(job.Stopped());
}

TEST_F(TransferJobTest, RunsOnItsOwnThreadOnly) {
    const RunningJobScope running(job);
    const TransferJob* elsewhere = &job;
    OtherThread other([&] { elsewhere = RunningJob(); });
    other.Join();
    EXPECT_EQ(&job, RunningJob());
    EXPECT_EQ(nullptr, elsewhere);
}

TEST_F(TransferJobTest, ScopeBringsTheJobBeforeBack) {
    TransferJob inner;
    EXPECT_EQ(nullptr, RunningJob());
    {
        const RunningJobScope outerScope(job);
        {
            const RunningJobScope innerScope(inner);
            EXPECT_EQ(&inner, RunningJob());
        }
        EXPECT_EQ(&job, RunningJob());
    }
    EXPECT_EQ(nullptr, RunningJob());
}

TEST_F(TransferJobTest, EntryPointsDoNothingWithoutAJob) {
    const std::atomic<bool>& abort = gSession.transferAbort;
    TransferNode node;
    node.pszLocalName = OwnedText::Copy("a");
    node.pszRemoteName = OwnedText::Copy("a");
    node.pszLocation = OwnedText::Copy("/");
    node.pszDestination = OwnedText::Copy("/");
    for (const auto step : {DlgGetFile, DlgCreateDir, DlgPutFile, DlgPutDir}) {
        node.iRetCode = 0;
        EXPECT_FALSE(step(&node, abort));
        EXPECT_EQ(FTP_ERROR, node.iRetCode);
    }
    for (const auto run :
         {Zarn_TransferDropFiles, Zarn_TransferStdInFiles, Zarn_TransferLVitems, Zarn_TransferTVitem}) {
        EXPECT_EQ(kNothingDone, run(abort));
    }
    EXPECT_FALSE(TransferRemoteTree(&node, "C:\\", "/", abort));
    EXPECT_FALSE(TransferLocalTree("C:\\", "C:\\", "/", abort));
    EXPECT_TRUE(harness.server.Commands().empty());
}

}  // namespace
