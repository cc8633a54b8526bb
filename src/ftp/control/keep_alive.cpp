#include "ftp/control/keep_alive.h"

#include "foundation/trace.h"
#include "ftp/control/connection_loss.h"
#include "ftp/control/remote_commands.h"
#include "ftp/worker/session_state.h"
#include "platform/clock.h"

namespace {

constexpr std::uint32_t kReadyWithinMilliseconds = 1001;

}  // namespace

std::uint32_t LastCmdTicks(const Site* site) {
    if (site == nullptr) site = gSession.activeSite;
    return site != nullptr ? platform::TickCount() - site->lastCommandTicks : 0;
}

bool ServerReadyForCmd(Site* site, bool closeOnFailure) {
    constexpr char kFuncName[] = "ServerReadyForCmd";
    if (site == nullptr) site = gSession.activeSite;
    if (site == nullptr) return false;
    if (LastCmdTicks(site) < kReadyWithinMilliseconds) return true;
    const int result = DoNoop(site);
    if (result == FTP_COMPLETE) return true;
    DbgVsprintf(kFuncName, "ERROR. Call to DoNoop() Returned:%d.", result);
    if (closeOnFailure) {
        DbgVsprintf(kFuncName, "ERROR. Closing Connection to %s", site->pszHost.c_str());
        Zarn_HandleFtpReset(kFuncName, site);
    }
    return false;
}
