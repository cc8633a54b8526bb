// What the program knows while it runs: which operation is under way, the active site, the representation type in
// force, the local host's address. What two threads touch is atomic. Anyone reads; the functions below write. What is
// known of one site's connection is site_status.h.
#pragma once

#include <atomic>
#include <cstdint>

#include "config/site.h"

struct SessionState {
    std::atomic<bool> busy{false};               // a remote command is being carried out (also: changing folder)
    std::atomic<bool> connecting{false};         // a connection or reconnection is in progress
    std::atomic<bool> aborting{false};           // an abort is being unwound; sockets close with a linger of 0
    std::atomic<bool> transferAbort{false};      // read by the transfer loops between steps
    std::atomic<bool> timedOut{false};           // it was the time-out that set transferAbort
    std::atomic<bool> exiting{false};            // the program is going down
    std::atomic<bool> parsing{false};            // a listing is being parsed
    std::atomic<Site*> activeSite{nullptr};      // the site that commands act on
    std::atomic<std::uint32_t> localAddress{0};  // IPv4, host order; 0 until found
    char currentType = 'A';                      // representation type, shared by all sites; worker only

    // Totals of successful receptions of 1025 bytes or more.
    std::atomic<std::uint32_t> totalSeconds{0};
    std::atomic<std::uint64_t> totalBytes{0};
    std::atomic<std::uint32_t> totalTransfers{0};
};
extern SessionState gSession;

// The site that commands act on from now on; returns the one before. Not traced.
Site* SetActiveSite(Site* site);
// The program begins to close, for good. Not traced.
void SetExiting();

// The flags: a change is traced, and the first three refresh the window.
void SetBusy(bool busy);
void SetConnecting(bool connecting);
void SetAborting(bool aborting);
void SetTransferAbort(bool abort);
// A call has waited too long: as SetTransferAbort(true), but StoppedByTimeOut tells the difference.
void SetTransferTimedOut();
// True while any of busy, connecting and aborting is set: no remote operation may start then.
bool OperationRunning();
// True when the operation under way is to end: abort, time-out or exit.
bool StopRequested();
// True when it is to end because of a time-out only.
bool StoppedByTimeOut();
