#include "ftp/worker/session_state.h"

#include "foundation/trace.h"
#include "ftp/worker/session_view.h"

SessionState gSession;

namespace {

void ChangeFlag(std::atomic<bool>& flag, bool value, const char* funcName) {
    if (flag.exchange(value) == value) return;
    DbgVsprintf(funcName, "%s", value ? "set" : "cleared");
    gSessionView.refreshWindow();
}

}  // namespace

Site* SetActiveSite(Site* site) {
    return gSession.activeSite.exchange(site);
}

void SetExiting() {
    gSession.exiting = true;
}

void SetBusy(bool busy) {
    ChangeFlag(gSession.busy, busy, "SetBusy");
}
void SetConnecting(bool connecting) {
    ChangeFlag(gSession.connecting, connecting, "SetConnecting");
}
void SetAborting(bool aborting) {
    ChangeFlag(gSession.aborting, aborting, "SetAborting");
}

void SetTransferAbort(bool abort) {
    if (!abort) gSession.timedOut = false;
    if (gSession.transferAbort.exchange(abort) != abort)
        DbgVsprintf("SetTransferAbort", "%s", abort ? "set" : "cleared");
}

void SetTransferTimedOut() {
    // A user's abort is not turned into a time-out.
    if (gSession.transferAbort) return;
    gSession.timedOut = true;
    SetTransferAbort(true);
}

bool OperationRunning() {
    return gSession.busy || gSession.connecting || gSession.aborting;
}
bool StopRequested() {
    return gSession.transferAbort || gSession.aborting || gSession.exiting;
}
bool StoppedByTimeOut() {
    return gSession.timedOut && !gSession.aborting && !gSession.exiting;
}
