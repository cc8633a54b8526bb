#include "listing/lost_connection.h"

#include "foundation/trace.h"
#include "ftp/control/connection_loss.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"

bool EndLostConnection(const char* callerName, Site* site, int result, const char* reply) {
    // Without a control socket the loss has been reported already.
    if (!HasControlSocket(site)) return true;
    if (StopRequested()) return false;
    if (result != FTP_CLOSE) {
        if (IsRefusal(reply)) return false;
        result = DoNoop(site);
    }
    if (result != FTP_CLOSE && result != SOCKET_ERROR) return false;
    Zarn_HandleFtpReset(callerName, site);
    return true;
}

bool IsRefusal(const char* reply) {
    return IsReplyLine(reply) && (reply[0] == '4' || reply[0] == '5');
}
