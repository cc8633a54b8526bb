#include "ftp/login/stop.h"

#include <string>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "ftp/control/connection_loss.h"
#include "ftp/control/control_connection.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/session_view.h"
#include "ftp/worker/site_status.h"
#include "ftp/worker/worker.h"

namespace {

constexpr std::uint32_t kStopMilliseconds = 4000;
constexpr std::uint32_t kForcedStopMilliseconds = 500;

bool IsOpen(const std::atomic<platform::Socket>& stored) {
    return stored.load() != platform::kNoSocket;
}

// Ends the worker. If it does not end in time, its sockets are closed so that its next call fails; true then.
bool EndWorker(Site* site) {
    if (StopWorker(kStopMilliseconds) || site == nullptr || site->pSock == nullptr) return false;
    DoPrintIdArgs(MSG_KILLING_ACTIVE_THREAD);
    CloseStoredSocket(site->pSock->data_skt, CloseHow::Receive);
    CloseStoredSocket(site->pSock->listen_skt, CloseHow::None);
    CloseStoredSocket(site->pSock->ctrl_skt, CloseHow::Send);
    SetConnected(*site, false);
    StopWorker(kForcedStopMilliseconds);
    return true;
}

// Closes what the worker has not closed on its way out: data connection (how = receive), then listener. The control
// connection follows.
void CloseTransferSockets(SocketRecord& record, bool hadData) {
    CloseStoredSocket(record.data_skt, CloseHow::Receive);
    if (hadData) DoPrintIdArgs(MSG_WAITING_FOR_ABORT_RESPONSE);
    CloseStoredSocket(record.listen_skt, CloseHow::None);
}

// The reply is not waited for.
void SayGoodbye(Site* site) {
    if (!HasControlSocket(site)) return;
    char errorText[kReplySize] = {};
    SendPacket(site, "QUIT", errorText);
    CloseStoredSocket(site->pSock->ctrl_skt, CloseHow::Send);
    SetConnected(*site, false);
}

}  // namespace

void Zarn_Abort() {
    constexpr char kFuncName[] = "Zarn_Abort";
    if (!OperationRunning()) return;
    DoPrintIdArgs(MSG_ABORTING_REMOTE_THREAD);
    DoPrintIdArgs(MSG_ABORT_MAY_FAIL);
    Site* site = gSession.activeSite;
    const bool hasRecord = site != nullptr && site->pSock != nullptr;
    bool wasConnecting = gSession.connecting;
    const bool hadData = hasRecord && IsOpen(site->pSock->data_skt);
    AnnounceStop();
    SetAborting(true);
    SetTransferAbort(true);
    const bool forced = EndWorker(site);
    const bool lost = TakeDeferredLoss() || forced;
    // A connect that had only just begun leaves an open socket that never logged in.
    wasConnecting = wasConnecting || (hasRecord && HasControlSocket(site) && site->bConnected == 0);
    if (hasRecord) CloseTransferSockets(*site->pSock, hadData);
    if (wasConnecting) {
        if (hasRecord) {
            SayGoodbye(site);
            SetConnected(*site, false);
        }
        DoPrintIdArgs(MSG_REMOTE_CONNECT_ABORTED);
        SetConnecting(false);
    } else {
        DoPrintIdArgs(MSG_REMOTE_OPERATION_ABORTED);
    }
    SetAborting(false);
    gSessionView.refreshWindow();
    if (!wasConnecting && lost) TellServerReset(kFuncName, site);
}

void Zarn_IdmDisconnect(Site* site) {
    if (site == nullptr || site->pSock == nullptr) return;
    if (!gSessionView.siteHasNode(site)) return;
    gSessionView.setStatusText(Zarn_ResVsprintf(MSG_DISCONNECTING_FROM, site->pszSessionName.c_str()).c_str());
    const bool running = WorkerRunning();
    AnnounceStop();
    SetConnected(*site, false);
    EndWorker(site);
    SetConnected(*site, false);  // a log-in may have ended well just before it was stopped
    SetConnecting(true);
    // A stopped operation may have left unsent bytes that the server never takes: no linger.
    if (running) SetAborting(true);
    CloseStoredSocket(site->pSock->ctrl_skt, CloseHow::Send);
    if (running) SetAborting(false);
    SetBusy(true);
    ForgetSessionDirectory(*site);
    site->lastCommandTicks = 0;
    gSessionView.showDisconnected(site);
    SetBusy(false);
    SetConnecting(false);
    gSessionView.setStatusText(Zarn_ResVsprintf(MSG_DISCONNECTED_FROM, site->pszSessionName.c_str()).c_str());
}

void Zarn_IdmExit(Site* site, unsigned commandId) {
    const bool leaving = commandId == kExitCommand;
    const bool running = OperationRunning();
    if (running) AnnounceStop();
    if (leaving) SetExiting();
    SetTransferAbort(true);
    const bool hasRecord = site != nullptr && site->pSock != nullptr;
    const bool wasConnected = hasRecord && site->bConnected != 0;
    const bool hadData = hasRecord && IsOpen(site->pSock->data_skt);
    if (running) {
        // Before the disconnect, which would stop the worker silently.
        DoPrintIdArgs(MSG_ABORTING_BEFORE_EXIT);
        if (hasRecord) SetConnected(*site, false);
        EndWorker(site);
        SetConnecting(false);
    }
    if (wasConnected) Zarn_IdmDisconnect(site);
    if (hasRecord) {
        CloseTransferSockets(*site->pSock, hadData);
        SayGoodbye(site);
    }
    gSessionView.refreshWindow();
    if (gZarn.SAVEONEXIT != 0) gSessionView.saveConfiguration();
    if (leaving) {
        gSessionView.closeProgram();
        return;
    }
    gSessionView.refreshWindow();
}
