#include "ftp/login/login.h"

#include <array>
#include <string>

#include "config/host_types.h"
#include "config/settings.h"
#include "config/site_login.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/control_connection.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/errors/error_texts.h"
#include "ftp/login/connect_failure.h"
#include "ftp/login/connect_site.h"
#include "ftp/login/welcome.h"
#include "ftp/worker/beeps.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/session_view.h"
#include "ftp/worker/site_status.h"
#include "platform/system.h"

namespace {

constexpr std::size_t kLongestAnswer = 80;
constexpr char kAnonymous[] = "anonymous";

// Outcome of one log-in attempt. Only Failed is retried; GivenUp means that the user cancelled.
enum class Attempt { Connected, Failed, GivenUp };

struct Credentials {
    std::string user;
    std::string password;
    bool useGateway = false;
};

bool NonEmpty(const OwnedText& text) {
    return !text.empty();
}

Credentials ChooseCredentials(Site* site) {
    Credentials login;
    // Quirk: the gateway's host only says that there is a gateway; the connection is made to the site's host, kept.
    login.useGateway =
        site->bUseGateway != 0 && site->bAnonymous == 0 && NonEmpty(site->pszGateHost) && NonEmpty(site->pszGateUID);
    if (!login.useGateway) site->bUseGateway = 0;
    if (site->bAnonymous != 0) {
        login.user = kAnonymous;
        login.password = gZarn.MAILADDR;
        return login;
    }
    const SiteLogin stored = LoginOf(*site);
    login.user = NonEmpty(stored.user) ? stored.user.get() : platform::UserName();
    login.password = stored.password.c_str();
    return login;
}

bool AskUser(unsigned caption, unsigned prompt, bool isSecret, std::string& answer) {
    TextQuestion question;
    question.caption = CatalogueText(caption);
    question.prompt = CatalogueText(prompt);
    question.isSecret = isSecret;
    question.longest = kLongestAnswer;
    return gSessionView.askText(question, answer);
}

void DetectFromWelcome(Site* site, const char* welcome) {
    SetHostType(*site, DetectHostType(site->dwType, welcome));
    DoPrintIdArgs(MSG_HOST_TYPE, site->dwCurType, HostTypeName(site->dwCurType));
}

bool PassGateway(Site* site, ReplyBuffer reply) {
    int result = command(site, reply, "USER %s", site->pszGateUID.c_str());
    if (result == kReplyMoreNeeded) result = command(site, reply, "PASS %s", site->pszGatePWD.c_str());
    if (result != FTP_COMPLETE) {
        DoPrintIdArgs(MSG_GATEWAY_LOGON_FAILURE);
        return false;
    }
    result = commandf(site, reply, "site %s", site->pszHost.c_str());
    // After a time-out its late answer would be mistaken for the answer to "USER".
    if (result == FTP_ERROR || (result == SOCKET_ERROR && StopRequested())) {
        DoPrintIdArgs(MSG_FINAL_DESTINATION_FAILED);
        return false;
    }
    return true;
}

void KeepPassword(Site* site, const Credentials& login) {
    if (login.useGateway) {
        if (site->pszGatePWD.empty()) SetGatewayPassword(*site, login.password);
    } else if (site->pszPWD.empty()) {
        SetPassword(*site, login.password);
    }
}

// From "USER" to the last reply; Failed leaves the reason in `reply`.
Attempt SendCredentials(Site* site, Credentials& login, ReplyBuffer reply) {
    int result = command(site, reply, "USER %s", login.user.c_str());
    if (result == FTP_COMPLETE) DoPrintIdArgs(MSG_USER_LOGGED_ON);
    if (result == kReplyMoreNeeded) {
        if (login.password.empty()) {
            if (!AskUser(MSG_LONG_PRODUCT_NAME, MSG_NEED_PASSWORD, true, login.password)) return Attempt::GivenUp;
            KeepPassword(site, login);
        }
        result = command(site, reply, "PASS %s", login.password.c_str());
        if (result == kReplyMoreNeeded) {
            std::string account;
            if (!AskUser(MSG_ACCOUNT_REQUIRED, MSG_NEED_ACCOUNT, false, account)) return Attempt::GivenUp;
            result = command(site, reply, "ACCT %s", account.c_str());
        }
    }
    return result == FTP_COMPLETE ? Attempt::Connected : Attempt::Failed;
}

Attempt LogIn(Site* site) {
    std::array<char, kReplySize> buffer{};
    const ReplyBuffer reply(buffer);
    Credentials login = ChooseCredentials(site);
    if (!Zarn_ConnectSite(site, "ftp", "tcp")) {
        const OwnedText text = Zarn_ResVsprintf(MSG_CONNECTION_TO_HOST_FAILED, site->pszHost.c_str());
        DoPrintIdArgs(MSG_CONNECTION_TO_HOST_FAILED, site->pszHost.c_str());
        NoteConnectFailure(text.view());
        return Attempt::Failed;
    }
    const SocketRecord& record = *site->pSock;
    DbgVsprintfID("DoConnect2", MSG_SOCKET_FROM, static_cast<unsigned>(record.ctrl_skt.load()), record.PeerName,
                  static_cast<unsigned>(record.peerPort));
    SetHostType(*site, site->dwType);
    if (!ReadWelcome(site, reply)) return Attempt::Failed;
    DetectFromWelcome(site, reply.data());
    if (!platform::SetOutOfBandInline(record.ctrl_skt))
        DbgPrintSocketError("DoConnect2", "setsockopt(SO_OOBINLINE)", record.ctrl_skt, 0);
    if (login.useGateway && !PassGateway(site, reply)) {
        NoteConnectFailure(reply.data());
        return Attempt::Failed;
    }
    const Attempt attempt = SendCredentials(site, login, reply);
    if (attempt == Attempt::Connected) return attempt;
    DoPrintIdArgs(MSG_LOGON_FAILURE);
    NoteConnectFailure(reply.data());
    return attempt;
}

// After a time-out the socket is reset: bytes that are still to be sent may never arrive.
void CloseFailedAttempt(Site* site) {
    if (StopRequested())
        AbandonStoredSocket(site->pSock->ctrl_skt);
    else
        CloseStoredSocket(site->pSock->ctrl_skt, CloseHow::Send);
}

Attempt TryConnect(Site* site) {
    if (site == nullptr || site->pSock == nullptr) return Attempt::GivenUp;
    if (site->bConnected != 0) {
        DoPrintIdArgs(MSG_ALREADY_CONNECTED);
        return Attempt::GivenUp;
    }
    const Attempt attempt = LogIn(site);
    SetConnected(*site, attempt == Attempt::Connected);
    // An abort sends QUIT itself before it closes the connection.
    if (attempt != Attempt::Connected && !gSession.aborting) CloseFailedAttempt(site);
    return attempt;
}

}  // namespace

bool DoConnect2(Site* site) {
    return TryConnect(site) == Attempt::Connected;
}

bool DoConnect(Site* site) {
    if (site == nullptr) return false;
    const std::uint32_t retries = gZarn.port.retries;
    for (std::uint32_t attempt = 1;; ++attempt) {
        NoteConnectFailure("");
        const Attempt end = TryConnect(site);
        if (end == Attempt::Connected) return true;
        if (end == Attempt::GivenUp || gSession.aborting || gSession.exiting) return false;
        if (attempt > retries) break;
        DoPrintIdArgs(MSG_CONNECTION_RETRYING, static_cast<int>(attempt), static_cast<int>(retries));
        // A time-out ended one attempt, not the whole connect.
        SetTransferAbort(false);
    }
    if (retries >= 1) {
        DoPrintIdArgs(MSG_ALL_RETRIES_FAILED, static_cast<int>(retries), site->pszHost.c_str());
        BeepOnFailure();
    }
    return false;
}

bool Zarn_ReConnect(Site* site) {
    if (site == nullptr || site->pSock == nullptr) return false;
    SetConnecting(true);
    CloseStoredSocket(site->pSock->ctrl_skt, CloseHow::Send);
    SetConnected(*site, false);
    const bool connected = DoConnect(site);
    SetConnecting(false);
    return connected;
}
