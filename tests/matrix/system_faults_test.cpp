// Every call of an operation to the system, made to fail once: the operation ends, a success is one, nothing is left
// open, and the next run works. In the native build, where calls can be made to fail.
#ifndef _WIN32

#include <gtest/gtest.h>

#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "host/fault_injection.h"
#include "matrix/leftovers.h"
#include "matrix/operations.h"
#include "matrix/report.h"
#include "platform/clock.h"
#include "platform/system.h"

namespace matrix {
namespace {

using fault_injection::Call;

constexpr char kMatrix[] = "failing system calls";
constexpr std::uint32_t kLongest = 5000;  // milliseconds
constexpr std::uint32_t kNoBuffers = 10055;
constexpr unsigned kSampleOf = 8;  // one call in so many
// A copy's calls are all alike.
constexpr int kMostCallsOfAKind = 40;

struct FailingCall {
    Call call;
    const char* name;
    std::uint32_t error;
};
// Not deleting: a file that cannot be deleted stays, whatever the program does.
constexpr FailingCall kCalls[] = {
    {Call::OpenFile, "opening a file", platform::kErrorAccessDenied},
    {Call::ReadFile, "reading a file", platform::kErrorAccessDenied},
    {Call::WriteFile, "writing a file", platform::kErrorDiskFull},
    {Call::SeekFile, "seeking in a file", platform::kErrorInvalidParameter},
    {Call::CloseFile, "closing a file", platform::kErrorDiskFull},
    {Call::MoveFile, "renaming a file", platform::kErrorAccessDenied},
    {Call::CreateSocket, "making a socket", kNoBuffers},
    {Call::Connect, "connecting", kNoBuffers},
    {Call::Bind, "binding", kNoBuffers},
    {Call::Listen, "listening", kNoBuffers},
    {Call::Accept, "accepting", kNoBuffers},
    {Call::Receive, "receiving", kNoBuffers},
    {Call::Send, "sending", kNoBuffers},
    {Call::WaitReadable, "waiting for bytes", kNoBuffers},
    {Call::StartThread, "starting a thread", kNoBuffers},
    {Call::CreateEvent, "making an event", kNoBuffers},
    {Call::LoadText, "loading a text", platform::kErrorInvalidParameter},
};

// One run with the `nth` call failing; false when it has no so many.
bool RunOne(Scene& s, const Operation& operation, const FailingCall& failing, int nth, Cell& cell) {
    if (!cell.Check(s.Prepare(operation), "no connection to begin with")) return false;
    bool fired = false;
    {
        const fault_injection::Scope fault(failing.call, nth, failing.error);
        const std::uint32_t startedAt = platform::TickCount();
        const bool started = s.Start(operation);
        if (started) cell.Check(s.WaitForEnd(4 * kLongest), "does not end");
        cell.Check(platform::TickCount() - startedAt < kLongest, "took too long");
        fired = fault.Fired();
        cell.Check(started || fired, "the worker does not start");
    }
    cell.Check(fired || s.Result() == FTP_COMPLETE, "returned " + std::to_string(s.Result()) + " without a failure");
    // A listing's file that cannot be read is taken to end there.
    const bool mayBeCut = fired && failing.call == Call::ReadFile;
    if (s.Result() == FTP_COMPLETE) cell.Check(operation.done(s) || mayBeCut, "a success that did nothing");
    cell.Check(!OperationRunning(), "still busy");
    cell.Check(s.site->pSock->data_skt == platform::kNoSocket, "the data connection is open");
    cell.Check(s.site->pSock->listen_skt == platform::kNoSocket, "the listener is open");
    const std::string stray = s.StrayFiles();
    cell.Check(stray.empty(), "files are left: " + stray);
    const std::string kept = s.LocalBytes("down");
    cell.Check(kept == kKeptBytes || (s.Result() == FTP_COMPLETE && kept.size() == kDownloadSize),
               "the local file has now " + std::to_string(kept.size()) + " bytes");
    cell.Check(s.Disconnect(), "connections stay open");
    if (cell.Check(s.Prepare(operation), "no fresh connection") && cell.Check(s.Start(operation), "no second start")) {
        cell.Check(s.WaitForEnd(kLongest), "the next one does not end");
        cell.Check(s.Result() == FTP_COMPLETE && operation.done(s), "the next one fails");
    }
    return fired;
}

class SystemFaults : public testing::TestWithParam<std::size_t> {
  protected:
    SystemFaults() { UseOwnTemporaryFolder(); }
};

TEST_P(SystemFaults, EveryCallFailsOnce) {
    const Operation& operation = Operations()[GetParam()];
    { const Scene warmUp; }
    const Holdings before = Holdings::Now();
    {
        Scene scene;
        gZarn.port.timeout = 1;
        const TimeOutTimer timer;
        for (const FailingCall& failing : kCalls) {
            for (int nth = 1; nth <= kMostCallsOfAKind; ++nth) {
                if (!Whole() && Random()() % kSampleOf != 0) continue;
                Cell cell(kMatrix,
                          std::string(operation.name) + ", " + failing.name + ", number " + std::to_string(nth));
                if (!RunOne(scene, operation, failing, nth, cell)) break;
            }
        }
    }
    Cell cell("left over without a session", operation.name);
    const std::string left = WhatIsLeft(before);
    cell.Check(left.empty(), left);
}

INSTANTIATE_TEST_SUITE_P(Operations, SystemFaults, testing::Range<std::size_t>(0, Operations().size()),
                         [](const auto& parameter) { return TestName(Operations()[parameter.param]); });

}  // namespace
}  // namespace matrix

#endif
