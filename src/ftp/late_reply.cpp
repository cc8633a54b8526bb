#include "ftp/late_reply.h"

#include "foundation/trace.h"
#include "ftp/login.h"
#include "ftp/session_state.h"
#include "ftp/worker.h"

void LoseControlConnection(const char* callerName, Site* site) {
    DbgVsprintf(callerName, "ERROR. Closing Connection to %s", site->pszHost.c_str());
    CloseStoredSocket(site->pSock->ctrl_skt, CloseHow::Send);
    site->bConnected = 0;
    if (!StoppingWorker()) TellServerReset(callerName, site);
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
        const int result = ReadReplyWithin(site, reply, kLateReplyMilliseconds);
        DbgVsprintf(callerName, "The late reply is %d", result);
        if (result != SOCKET_ERROR) return;
    }
    LoseControlConnection(callerName, site);
}
