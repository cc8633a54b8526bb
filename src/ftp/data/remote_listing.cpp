#include "ftp/data/remote_listing.h"

#include <array>
#include <string_view>

#include "foundation/message_expansion.h"
#include "foundation/trace.h"
#include "ftp/control/control_connection.h"
#include "ftp/control/remote_commands.h"
#include "ftp/data/data_connection.h"
#include "ftp/data/dump_file.h"
#include "ftp/errors/server_error.h"
#include "ftp/worker/beeps.h"
#include "ftp/worker/session_state.h"

int DoDirList(Site* site, const char* listCommand, ReplyBuffer reply) {
    constexpr char kFuncName[] = "DoDirList";
    if (listCommand == nullptr) return FTP_ERROR;
    const QuietBeeps quiet;
    const int result = RetrieveFile(site, reply, listCommand, ListingDumpFile(), 'A', gSession.transferAbort);
    if (result == FTP_CLOSE)
        DbgVsprintf(kFuncName, "ERROR: Call to RetrieveFile() Returned FTP_CLOSE");
    else if (result != FTP_COMPLETE && !StopRequested())
        ShowServerError(kOperationList, reply.data());
    return result;
}

int LIST(Site* site, const char* listCommand) {
    if (listCommand == nullptr) return FTP_ERROR;
    std::array<char, kReplySize> reply{};
    const std::string_view text = listCommand;
    const int result = text.starts_with("LIST") || text.starts_with("NLST")
                           ? DoDirList(site, listCommand, reply)
                           : command(site, reply, "%s", ExpandOnceMore(text).c_str());
    return result >= 100 ? result / 100 : result;
}

int ListContentsByName(Site* site, const char* directory, const char* dumpFile, ReplyBuffer reply,
                       const std::atomic<bool>& abort) {
    constexpr char kFuncName[] = "ListContentsByName";
    if (abort) {
        DbgVsprintf(kFuncName, "*lpAbort was TRUE on Func() Entry. Returning 0");
        return 0;
    }
    if (site == nullptr || directory == nullptr || *directory == '\0' || dumpFile == nullptr || *dumpFile == '\0')
        return 0;
    int result = 0;
    if (!site->pszCurrentDir || site->pszCurrentDir.view() != directory) {
        SetReply(reply, "");
        result = DoCWD(site, directory, reply, true);
        if (result != FTP_COMPLETE) {
            DbgVsprintf(kFuncName, "ERROR. Call to DoCWD() returned %d:%s. Returning 0", result, reply.data());
            return 0;
        }
    }
    if (abort) return result;
    result = RetrieveFile(site, reply, "LIST", dumpFile, 'A', abort);
    if (result != FTP_COMPLETE && result != FTP_CLOSE && !abort) ShowServerError(kOperationList, reply.data());
    return result;
}
