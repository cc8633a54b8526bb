#include "ftp/control/late_reply.h"

#include "foundation/foundation_view.h"
#include "foundation/trace.h"
#include "ftp/control/connection_loss.h"
#include "ftp/control/reply_receive.h"
#include "ftp/worker/session_state.h"

bool IsRestOfLine(bool unfinished, int result, const char* reply) {
    return unfinished && result == kNoUsableReply && !IsReplyLine(reply);
}

void SettleCancelledTransfer(const char* callerName, Site* site, ReplyBuffer reply) {
    if (!HasControlSocket(site)) return;
    // A site that is being disconnected anyway needs no final reply.
    const bool worthWaiting = !gSession.exiting && site->bConnected != 0;
    if (worthWaiting) {
        bool unfinished = false;
        int result = 0;
        do {
            unfinished = LineIsUnfinished(site);
            result = ReadReplyWithin(site, reply, kLateReplyMilliseconds);
        } while (IsRestOfLine(unfinished, result, reply.data()));
        DbgVsprintf(callerName, "The late reply is %d", result);
        if (result != SOCKET_ERROR) return;
    }
    LoseControlConnection(callerName, site);
}
