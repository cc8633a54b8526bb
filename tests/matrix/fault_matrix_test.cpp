// Every operation, at every step of its protocol, with a server that fails in every way: it ends within its time, says
// what it must, leaves nothing behind, and works again on a fresh connection.
#include <gtest/gtest.h>

#include <algorithm>

#include "ftp/control/control_connection.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "matrix/faults.h"
#include "matrix/leftovers.h"
#include "matrix/operations.h"
#include "matrix/report.h"
#include "platform/clock.h"

namespace matrix {
namespace {

constexpr char kMatrix[] = "fault matrix";
constexpr std::uint32_t kTimeOutSeconds = 1;
constexpr std::uint32_t kLongest = 5000;   // milliseconds: the time-out, and the late reply of a transfer
constexpr std::uint32_t kAtOnce = 2500;    // milliseconds, on a loaded machine
constexpr unsigned kSampleOf = 6;          // one cell in so many
constexpr unsigned kSampleOfWaiting = 30;  // one that waits for the time-out

std::string Text(const std::vector<int>& results) {
    std::string text;
    for (const int result : results) text += (text.empty() ? "" : " or ") + std::to_string(result);
    return text;
}

int CountBoxes(const Scene& scene, const std::string& part) {
    int count = 0;
    for (const RecordedBox& box : scene.h.console.Boxes()) count += box.text.find(part) != std::string::npos ? 1 : 0;
    return count;
}

// In a box or a dialog; of a time-out, and of a folder that could not be counted, on the console.
bool UserWasTold(const Scene& scene) {
    return scene.h.console.HasLine("Timer cancelled a blocking call") || scene.h.console.HasLine("DirList returned") ||
           !scene.h.console.Boxes().empty() || !scene.h.view.ServerErrors().empty() ||
           scene.h.view.PostedDisconnects() > 0;
}

class FaultRun {
  public:
    FaultRun(Scene& scene, const Operation& operation, std::size_t index, Way way, Cell& cell)
        : s_(scene), operation_(operation), index_(index), step_(operation.steps[index]), way_(way), cell_(cell) {}

    void Run() {
        if (!cell_.Check(s_.Prepare(operation_), "no connection to begin with")) return;
        Arrange(s_.h.server, step_, way_);
        if (!Execute()) return;
        CheckResult();
        CheckFiles();
        CheckConnection();
        cell_.Check(s_.Disconnect(), std::to_string(s_.h.server.OpenConnections()) + " connections stay open");
        CheckAnotherRun();
    }

  private:
    bool Execute() {
        const std::uint32_t startedAt = platform::TickCount();
        if (!cell_.Check(s_.Start(operation_), "the worker does not start")) return false;
        const bool waits = WaitsForTimeOut(way_, step_);
        const bool ended = s_.WaitForEnd(4 * kLongest);
        const std::uint32_t took = platform::TickCount() - startedAt;
        cell_.Check(took <= (waits ? kLongest : kAtOnce), "took " + std::to_string(took) + " ms");
        return cell_.Check(ended, "does not end");
    }

    void CheckResult() {
        const std::vector<int> expected = ExpectedResults(operation_, index_, way_);
        const int result = s_.Result();
        cell_.Check(std::find(expected.begin(), expected.end(), result) != expected.end(),
                    "returned " + std::to_string(result) + ", not " + Text(expected));
        if (operation_.tellsUser && result != FTP_COMPLETE) cell_.Check(UserWasTold(s_), "nobody was told");
        cell_.Check(CountBoxes(s_, "has aborted your connection") <= 1, "the lost connection was told twice");
        cell_.Check(s_.h.view.PostedDisconnects() <= 1, "two disconnects are posted");
        if (way_ == Way::Stall)
            cell_.Check(s_.h.console.HasLine("Timer cancelled a blocking call"), "no word of the time-out");
        const SocketRecord& record = *s_.site->pSock;
        cell_.Check(record.data_skt == platform::kNoSocket, "the data connection is open");
        cell_.Check(record.listen_skt == platform::kNoSocket, "the listener is open");
    }

    void CheckFiles() {
        const std::string stray = s_.StrayFiles();
        cell_.Check(stray.empty(), "files are left: " + stray);
        const std::string kept = s_.LocalBytes("down");
        cell_.Check(kept == kKeptBytes || (s_.Result() == FTP_COMPLETE && kept.size() == kDownloadSize),
                    "the local file has now " + std::to_string(kept.size()) + " bytes");
    }

    // In step, or closed.
    void CheckConnection() {
        SetTransferAbort(false);
        const bool open = HasControlSocket(s_.site);
        if (way_ == Way::Stall) cell_.Check(!open, "a connection without an answer stays open");
        if (!open || way_ == Way::NoLineFeedWait) {
            if (!open) cell_.Check(s_.site->bConnected == 0, "closed, but called connected");
            const bool unreadable = way_ == Way::BytePackets && step_.part == Part::Preliminary;
            const bool mayClose =
                EndsConnection(way_) || operation_.connects || WaitsForTimeOut(way_, step_) || unreadable;
            cell_.Check(open || mayClose, "the connection was given up");
            return;
        }
        const int result = command(s_.site, s_.h.reply, "STAT");
        if (EndsConnection(way_))
            cell_.Check(result == SOCKET_ERROR || result == FTP_CLOSE, "STAT to nobody: " + std::to_string(result));
        else
            cell_.Check(IsStatus(s_.h.replyText), "STAT got " + std::string(s_.h.replyText));
    }

    void CheckAnotherRun() {
        if (!cell_.Check(s_.Prepare(operation_), "no fresh connection")) return;
        if (!cell_.Check(s_.Start(operation_), "the worker does not start again")) return;
        cell_.Check(s_.WaitForEnd(kLongest), "the next one does not end");
        cell_.Check(s_.Result() == FTP_COMPLETE, "the next one returned " + std::to_string(s_.Result()));
        cell_.Check(operation_.done(s_), "the next one did nothing");
    }

    Scene& s_;
    const Operation& operation_;
    std::size_t index_;
    const Step& step_;
    Way way_;
    Cell& cell_;
};

bool Chosen(Way way, const Step& step) {
    return Whole() || Random()() % (WaitsForTimeOut(way, step) ? kSampleOfWaiting : kSampleOf) == 0;
}

class FaultMatrix : public testing::TestWithParam<std::size_t> {
  protected:
    FaultMatrix() { UseOwnTemporaryFolder(); }
};

TEST_P(FaultMatrix, EveryStepInEveryWay) {
    const Operation& operation = Operations()[GetParam()];
    Scene scene;
    gZarn.port.timeout = kTimeOutSeconds;
    const TimeOutTimer timer;
    Holdings before{};
    for (std::size_t index = 0; index < operation.steps.size(); ++index) {
        const Step& step = operation.steps[index];
        const std::string where = std::string(operation.name) + ", " + step.verb + " " + std::to_string(step.nth) +
                                  ", " + PartName(step.part);
        for (const Way way : kWays) {
            if (!Applies(way, step) || !Chosen(way, step)) continue;
            Cell cell(kMatrix, where + ", " + WayName(way));
            FaultRun(scene, operation, index, way, cell).Run();
        }
        Cell cell("left over after a step", where);
        cell.Check(scene.Disconnect(), "connections stay open");
        if (index == 0) before = Holdings::Now();
        const std::string left = WhatIsLeft(before);
        cell.Check(left.empty(), left);
    }
}

INSTANTIATE_TEST_SUITE_P(Operations, FaultMatrix, testing::Range<std::size_t>(0, Operations().size()),
                         [](const auto& parameter) { return TestName(Operations()[parameter.param]); });

}  // namespace
}  // namespace matrix
