#include "ftp/control/connection_loss.h"

#include <string>

#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/session_view.h"
#include "ftp/worker/site_status.h"
#include "ftp/worker/worker.h"

void TellServerReset(const char* callerName, Site* site) {
    if (site == nullptr) return;
    Site* previous = SetActiveSite(site);
    DbgVsprintf("Zarn_HandleFtpReset", "Entered from %s", callerName != nullptr ? callerName : "");
    DoPrintIdArgs(MSG_SERVER_ABORTED_CONNECTION);
    const std::string text = CatalogueText(MSG_SERVER_ABORTED_CONNECTION);
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Stop);
    gSessionView.postDisconnect(site);
    SetActiveSite(previous);
}

void Zarn_HandleFtpReset(const char* callerName, Site* site) {
    if (site == nullptr) site = gSession.activeSite;
    if (site == nullptr) return;
    // A lost connection is reported once.
    if (!HasControlSocket(site) && site->bConnected == 0) {
        DbgVsprintf("Zarn_HandleFtpReset", "WARNING. %s is closed already. Returning", site->pszHost.c_str());
        return;
    }
    TellServerReset(callerName, site);
}

void LoseControlConnection(const char* callerName, Site* site) {
    DbgVsprintf(callerName, "ERROR. Closing Connection to %s", site->pszHost.c_str());
    // A server that does not answer may not take the bytes that are still to be sent either, so the socket is reset.
    AbandonStoredSocket(site->pSock->ctrl_skt);
    SetConnected(*site, false);
    if (StoppingWorker())
        DeferLossReport();
    else
        TellServerReset(callerName, site);
}

void DropUnansweredConnection(const char* callerName, Site* site) {
    if (!StopRequested() || gSession.connecting || !HasControlSocket(site)) return;
    LoseControlConnection(callerName, site);
}
