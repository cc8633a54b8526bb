#include "ftp/control/late_reply.h"

#include "foundation/trace.h"
#include "ftp/login/login.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"

void LoseControlConnection(const char* callerName, Site* site) {
    DbgVsprintf(callerName, "ERROR. Closing Connection to %s", site->pszHost.c_str());
    // A server that does not answer may not take what is still on its way either: nothing is waited for.
    AbandonStoredSocket(site->pSock->ctrl_skt);
    site->bConnected = 0;
    if (StoppingWorker())
        LeaveLossUntold();
    else
        TellServerReset(callerName, site);
}

bool IsRestOfLine(bool unfinished, int result, const char* reply) {
    return unfinished && result == kNoUsableReply && !IsReplyLine(reply);
}

void DropUnansweredConnection(const char* callerName, Site* site) {
    if (!StopRequested() || gSession.connecting || !HasControlSocket(site)) return;
    LoseControlConnection(callerName, site);
}

void SettleCancelledTransfer(const char* callerName, Site* site, ReplyBuffer reply) {
    if (!HasControlSocket(site)) return;
    // A site that is being disconnected anyway needs no last word.
    const bool worthWaiting = !gSession.exiting && site->bConnected != 0;
    if (worthWaiting) {
        bool unfinished = false;
        int result = 0;
        do {
            unfinished = LineIsUnfinished(site->pSock->ctrl_skt);
            result = ReadReplyWithin(site, reply, kLateReplyMilliseconds);
        } while (IsRestOfLine(unfinished, result, reply.data()));
        DbgVsprintf(callerName, "The late reply is %d", result);
        if (result != SOCKET_ERROR) return;
    }
    LoseControlConnection(callerName, site);
}
