// A connected site, a worker that receives from it, and the questions about both that tests of stopping ask.
#pragma once

#include <cstdint>
#include <string>

#include "ftp/control/control_connection.h"
#include "ftp/data/data_connection.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "platform/clock.h"
#include "support/bounded_wait.h"
#include "support/session_harness.h"

inline constexpr std::uint64_t kLongestStop = 5'000'000;  // microseconds

struct Working {
    Working() : site(h.ConnectedSite()) {}
    bool Idle() {
        return test_support::WaitUntil([] { return !OperationRunning() && !WorkerRunning(); });
    }
    bool StartRetrieve() {
        const std::string file = h.LocalPath("out");
        return StartWorker("test", [this, file] {
            result = RetrieveFile(site, h.reply, "RETR f", file.c_str(), 'A', gSession.transferAbort);
        });
    }
    // The server holds, and the worker has its data connection.
    bool WaitUntilReceiving() {
        return h.server.WaitUntilHeld() &&
               test_support::WaitUntil([&] { return site->pSock->data_skt != platform::kNoSocket; });
    }
    bool InStep() {
        SetTransferAbort(false);
        return command(site, h.reply, "NOOP") == FTP_COMPLETE && std::string(h.replyText) == "200 OK.";
    }
    bool NoTransferSockets() const {
        return site->pSock->data_skt == platform::kNoSocket && site->pSock->listen_skt == platform::kNoSocket;
    }
    SessionHarness h;
    Site* site;
    int result = 0;
};

template <class Function>
std::uint64_t Microseconds(Function function) {
    const std::uint64_t startedAt = platform::Microseconds();
    function();
    return platform::Microseconds() - startedAt;
}
