#include "ftp/login/connect_command.h"

#include <string>

#include "config/host_types.h"
#include "config/initial_dirs.h"
#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/control/reply_receive.h"
#include "ftp/login/connect_failure.h"
#include "ftp/login/login.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/session_view.h"
#include "ftp/worker/site_status.h"

namespace {

void RefuseSecondConnection() {
    const std::string text = CatalogueText(MSG_ALREADY_CONNECTED);
    DoPrintIdArgs(MSG_ALREADY_CONNECTED);
    gSessionView.setStatusText(text.c_str());
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
}

void ReportFailure() {
    std::string text = CatalogueText(MSG_CONNECTION_FAILED);
    gSessionView.setStatusText(text.c_str());
    // A user who stopped the connect needs no box.
    if (gSession.aborting || gSession.exiting) return;
    const std::string reason = ConnectFailure();
    if (!reason.empty()) text += "\n\n" + reason;
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
}

// Leaves the connection open unless its answer is outstanding, which would be mistaken for the next command's.
void ReportUnknownDirectory(Site* site) {
    if (gSession.aborting || gSession.exiting) return;
    if (StopRequested()) {
        AbandonStoredSocket(site->pSock->ctrl_skt);
        SetConnected(*site, false);
    }
    const std::string text = CatalogueText(MSG_GET_REMOTE_DIRECTORY_FAILED);
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
}

// Stores the directory with the time of its use; the tree offers it from the next connection on.
void RememberDirectory(Site* site) {
    LoadInitDirectories(site);
    SaveInitDirectories(site);
}

OwnedText FirstDirectory(Site* site) {
    if (site->pszDir.empty()) return GetRemoteDirectory(site);
    char reply[kReplySize] = {};
    int result = 0;
    if (ChangeRemoteDirectory(site, site->pszDir.get(), reply, &result, false)) {
        RememberDirectory(site);
        return OwnedText::Copy(site->pszDir.view());
    }
    // After a time-out the late answer would be mistaken for the answer to PWD.
    return StopRequested() ? OwnedText() : GetRemoteDirectory(site);
}

}  // namespace

char RemoteSeparator(const char* firstDirectory) {
    const std::string_view path = firstDirectory != nullptr ? firstDirectory : "";
    const bool backslashes = path.find('\\') != std::string_view::npos;
    return backslashes && path.find('/') == std::string_view::npos ? '\\' : '/';
}

bool Zarn_HandleConnect(Site* site) {
    constexpr char kFuncName[] = "Zarn_HandleConnect";
    if (site == nullptr || site->pSock == nullptr || site->dwCurType == HOST_TYPE_LOCAL) return false;
    if (!gSessionView.siteHasNode(site)) return false;
    if (HasControlSocket(site)) {
        RefuseSecondConnection();
        return false;
    }
    gSessionView.setStatusText(Zarn_ResVsprintf(MSG_CONNECTING_TO_SITE, site->pszSessionName.c_str()).c_str());
    if (!DoConnect(site)) {
        ReportFailure();
        return false;
    }
    OwnedText directory = FirstDirectory(site);
    if (!directory) {
        DbgVsprintf(kFuncName, "ERROR. The current directory is unknown. Returning FALSE");
        gSessionView.setStatusText("");
        ReportUnknownDirectory(site);
        return false;
    }
    site->chSeparator = static_cast<unsigned char>(RemoteSeparator(directory.get()));
    SetSessionDirectory(*site, directory.view());
    return true;
}

void Zarn_IdmConnect(Site* site) {
    SetConnecting(true);
    SetActiveSite(site);
    gSessionView.setStatusText(CatalogueText(MSG_CONNECTING).c_str());
    if (Zarn_HandleConnect(site)) {
        gSessionView.setStatusText(CatalogueText(MSG_DETERMINING_ROOT).c_str());
        SuppressInnerReplyLines(true);
        const std::string directory = site->pszCurrentDir.c_str();
        gSessionView.showFirstDirectory(site, directory.c_str());
        SuppressInnerReplyLines(false);
        gSessionView.setStatusText("");
    }
    SetConnecting(false);
}
