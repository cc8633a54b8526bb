// Every operation, stopped in every way at random moments of its real length: it ends in time, says what it must,
// leaves nothing open, and the control connection is in step or closed.
#include <gtest/gtest.h>

#include <algorithm>

#include "config/settings.h"
#include "ftp/control/control_connection.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/login/stop.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "matrix/leftovers.h"
#include "matrix/operations.h"
#include "matrix/report.h"
#include "platform/clock.h"
#include "platform/threads.h"

namespace matrix {
namespace {

constexpr char kMatrix[] = "abort matrix";
constexpr std::uint32_t kLongest = 5000;  // milliseconds
constexpr int kMeasuredRuns = 5;
constexpr std::uint32_t kTimeOutRepeat = 1;  // milliseconds; the window's timer is slower

struct Stop {
    const char* name;
    void (*run)(Scene& scene);
};

// What the window's timer does when the time is over, until the operation has ended of it.
void TimeOut(Scene& scene) {
    while (!scene.WaitForEnd(0) && !gSession.transferAbort) {
        TimeOutBlockingCall();
        if (!gSession.transferAbort) platform::SleepMilliseconds(kTimeOutRepeat);
    }
    const std::uint32_t startedAt = platform::TickCount();
    while (!scene.WaitForEnd(kTimeOutRepeat) && platform::TickCount() - startedAt < kLongest) TimeOutBlockingCall();
}

const Stop kStops[] = {
    {"abort", [](Scene&) { Zarn_Abort(); }},
    {"exit", [](Scene& s) { Zarn_IdmExit(s.site, kExitCommand); }},
    {"disconnect", [](Scene& s) { Zarn_IdmDisconnect(s.site); }},
    {"time-out", TimeOut},
};
enum StopKind { kAbort, kExit, kDisconnect, kTimeOut };

// Precise for short times without keeping a processor busy for long ones.
void WaitMicroseconds(std::uint32_t microseconds) {
    const std::uint64_t until = platform::Microseconds() + microseconds;
    constexpr std::uint32_t kSpin = 1000;
    if (microseconds > 2 * kSpin) platform::SleepMilliseconds((microseconds - kSpin) / 1000);
    while (platform::Microseconds() < until) {
    }
}

class StopRun {
  public:
    StopRun(Scene& scene, const Operation& operation, int stop, Cell& cell)
        : s_(scene), operation_(operation), stop_(stop), cell_(cell) {}

    bool Run(std::uint32_t delay) {
        if (!cell_.Check(s_.Prepare(operation_), "no connection to begin with")) return false;
        if (!cell_.Check(s_.Start(operation_), "the worker does not start")) return false;
        WaitMicroseconds(delay);
        wasRunning_ = OperationRunning();
        const std::uint32_t startedAt = platform::TickCount();
        kStops[stop_].run(s_);
        const bool ended = s_.WaitForEnd(4 * kLongest);
        const std::uint32_t took = platform::TickCount() - startedAt;
        cell_.Check(took < kLongest, "took " + std::to_string(took) + " ms");
        if (!cell_.Check(ended, "does not end")) return false;
        CheckMessages();
        CheckSession();
        CheckFiles();
        CheckConnection();
        return true;
    }

  private:
    int Lines(const char* text) const { return s_.h.console.CountLines(text); }

    void CheckMessages() {
        cell_.Check(Lines("Killing active thread") == 0, "the worker did not end by itself");
        const int aborting = Lines("Aborting Remote thread");
        const int aborted = Lines("Remote Operation Aborted") + Lines("Remote Connect Aborted");
        const int beforeExit = Lines("Aborting thread before closing or exiting");
        const int timedOut = Lines("Timer cancelled a blocking call");
        cell_.Check(aborting == aborted && aborting == Lines("WARNING: If the abort fails"), "half an abort was told");
        cell_.Check(aborting <= (stop_ == kAbort && wasRunning_ ? 1 : 0), "an abort too many was told");
        cell_.Check(beforeExit <= (stop_ == kExit && wasRunning_ ? 1 : 0), "an exit too many was told");
        cell_.Check(stop_ == kTimeOut || timedOut == 0, "a time-out was told");
        if (stop_ == kDisconnect || stop_ == kExit)
            cell_.Check(s_.h.console.Boxes().empty(), "a box for somebody who leaves");
        if (operation_.connects && stop_ == kAbort && Lines("Remote Connect Aborted") == 1)
            cell_.Check(!HasControlSocket(s_.site) && s_.site->bConnected == 0, "an aborted connect is connected");
    }

    void CheckSession() {
        const SocketRecord& record = *s_.site->pSock;
        cell_.Check(record.data_skt == platform::kNoSocket, "the data connection is open");
        cell_.Check(record.listen_skt == platform::kNoSocket, "the listener is open");
        const bool leaves = stop_ == kExit || stop_ == kDisconnect;
        if (leaves) cell_.Check(!HasControlSocket(s_.site), "the control connection is open");
        cell_.Check(HasControlSocket(s_.site) || s_.site->bConnected == 0, "closed, but called connected");
        if (stop_ == kExit)
            cell_.Check(s_.h.view.ClosedPrograms() == 1 && s_.h.view.SavedConfigurations() == 1, "no proper exit");
        if (stop_ == kDisconnect) cell_.Check(s_.h.view.Disconnected() == 1, "the window was not told");
        const bool established = !operation_.connects;
        if (established && !leaves && !HasControlSocket(s_.site)) {
            cell_.Check(s_.h.console.HasBox("has aborted your connection"), "a lost connection was not told");
            cell_.Check(s_.h.view.PostedDisconnects() == 1,
                        std::to_string(s_.h.view.PostedDisconnects()) + " disconnects posted");
        }
    }

    void CheckFiles() {
        const std::string stray = s_.StrayFiles();
        cell_.Check(stray.empty(), "files are left: " + stray);
        const std::string kept = s_.LocalBytes("down");
        cell_.Check(kept == kKeptBytes || kept.size() == kDownloadSize,
                    "the local file has now " + std::to_string(kept.size()) + " bytes");
    }

    void CheckConnection() {
        s_.h.view.RunPostedDisconnects();
        gSession.exiting = false;
        SetTransferAbort(false);
        if (!HasControlSocket(s_.site)) return;
        const int result = command(s_.site, s_.h.reply, "STAT");
        cell_.Check(IsStatus(s_.h.replyText), "STAT got " + std::to_string(result) + " " + s_.h.replyText);
    }

    Scene& s_;
    const Operation& operation_;
    int stop_;
    Cell& cell_;
    bool wasRunning_ = false;
};

// Microseconds that the operation takes when nobody stops it; 0 when it does not work.
std::uint32_t MeasureLength(Scene& scene, const Operation& operation) {
    std::uint64_t longest = 0;
    for (int run = 0; run < kMeasuredRuns; ++run) {
        if (!scene.Prepare(operation)) return 0;
        const std::uint64_t startedAt = platform::Microseconds();
        if (!scene.Start(operation) || !scene.WaitForEnd(kLongest) || scene.Result() != FTP_COMPLETE) return 0;
        longest = std::max(longest, platform::Microseconds() - startedAt);
    }
    return static_cast<std::uint32_t>(longest);
}

class AbortMatrix : public testing::TestWithParam<std::size_t> {
  protected:
    AbortMatrix() { UseOwnTemporaryFolder(); }
};

TEST_P(AbortMatrix, EveryStopAtRandomMoments) {
    const Operation& operation = Operations()[GetParam()];
    Random();
    // What comes with the first session and stays is not counted.
    { const Scene warmUp; }
    const Holdings before = Holdings::Now();
    for (int stop = 0; stop < static_cast<int>(std::size(kStops)); ++stop) {
        {
            Scene scene;
            const std::uint32_t length = MeasureLength(scene, operation);
            ASSERT_GT(length, 0u) << operation.name << " does not work";
            bool going = true;
            for (int round = 0; round < Rounds() && going; ++round) {
                const std::uint32_t delay = Random()() % (length + length / 8);
                Cell cell(kMatrix, std::string(operation.name) + ", " + kStops[stop].name + " after " +
                                       std::to_string(delay) + " us of " + std::to_string(length));
                going = StopRun(scene, operation, stop, cell).Run(delay);
            }
            Cell cell("left over after all rounds", std::string(operation.name) + ", " + kStops[stop].name);
            cell.Check(scene.Disconnect(), "connections stay open");
        }
        Cell cell("left over without a session", std::string(operation.name) + ", " + kStops[stop].name);
        const std::string left = WhatIsLeft(before);
        cell.Check(left.empty(), left);
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, AbortMatrix, testing::Range<std::size_t>(0, Operations().size()),
                         [](const auto& parameter) { return TestName(Operations()[parameter.param]); });

}  // namespace
}  // namespace matrix
