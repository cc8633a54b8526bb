#include "ftp/worker/worker.h"

#include <gtest/gtest.h>

#include <atomic>

#include "ftp/worker/session_state.h"
#include "ftp/working_session.h"

namespace {

TEST(StartWorker, RunsTheJobWithTheBusyFlagSet) {
    Working w;
    std::atomic<bool> wasBusy{false};
    ASSERT_TRUE(StartWorker("test", [&] { wasBusy = gSession.busy.load(); }));
    EXPECT_TRUE(w.Idle());
    EXPECT_TRUE(wasBusy);
}

TEST(StartWorker, ASecondOperationIsRefused) {
    Working w;
    w.h.server.AddFile("/f", "x");
    w.h.server.Once("RETR", {Hold(), Answer()});
    ASSERT_TRUE(w.StartRetrieve());
    ASSERT_TRUE(w.h.server.WaitUntilHeld());
    std::atomic<bool> ran{false};
    EXPECT_FALSE(StartWorker("second", [&] { ran = true; }));
    EXPECT_TRUE(w.h.console.HasLine("Currently busy with another remote operation..."));
    w.h.server.Release();
    EXPECT_TRUE(w.Idle());
    EXPECT_FALSE(ran);
    EXPECT_EQ(w.result, FTP_COMPLETE);
}

TEST(StartWorker, AnyOfTheThreeFlagsRefuses) {
    Working w;
    for (auto* change : {SetBusy, SetConnecting, SetAborting}) {
        change(true);
        EXPECT_FALSE(StartWorker("test", [] {}));
        change(false);
    }
    EXPECT_TRUE(StartWorker("test", [] {}));
    EXPECT_TRUE(w.Idle());
}

TEST(StartWorker, ManyInARow) {
    Working w;
    int runs = 0;
    for (int number = 0; number < 50; ++number) {
        ASSERT_TRUE(StartWorker("test", [&] { ++runs; }));
        ASSERT_TRUE(w.Idle());
    }
    EXPECT_EQ(runs, 50);
}

}  // namespace
