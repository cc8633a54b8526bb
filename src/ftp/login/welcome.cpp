#include "ftp/login/welcome.h"

#include <string_view>

#include "config/host_types.h"
#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/text_marker.h"
#include "ftp/control/reply_receive.h"
#include "ftp/login/connect_failure.h"
#include "ftp/worker/session_state.h"

bool ReadWelcome(Site* site, ReplyBuffer reply) {
    SetReply(reply, "");
    const int result = ReadDisplayLine(site, reply);
    if (result == FTP_COMPLETE) return true;
    const char* host = site->pszHost.c_str();
    if (result == SOCKET_ERROR && StopRequested()) {
        DoPrintIdArgs(MSG_SERVER_SILENT, host, gZarn.port.timeout);
        NoteConnectFailure(Zarn_ResVsprintf(MSG_BOX_SERVER_SILENT, gZarn.port.timeout).view());
    } else if (result == SOCKET_ERROR) {
        DoPrintIdArgs(MSG_NO_WELCOME, host);
        NoteConnectFailure(Zarn_ResVsprintf(MSG_NO_WELCOME, host).view());
    } else if (result == 0) {
        DoPrintIdArgs(MSG_NOT_A_REPLY, reply.data());
        NoteConnectFailure(Zarn_ResVsprintf(MSG_BOX_NOT_A_FTP_SERVER, host).view());
    } else {
        NoteConnectFailure(reply.data());
    }
    DoPrintIdArgs(MSG_UNKNOWN_OPEN_MESSAGE, reply.data(), static_cast<unsigned>(result));
    return false;
}

std::uint32_t DetectHostType(std::uint32_t configured, const char* welcome) {
    if (configured != HOST_TYPE_AUTO || welcome == nullptr) return configured;
    static constexpr TextMarker<std::uint32_t> kMarkers[] = {
        {"(EXOS", HOST_TYPE_EXOS},
        {"Microsoft FTP Service", HOST_TYPE_WINDOWS_NT},
        {"Ambrel FTP server", HOST_TYPE_CLIX},
        {"UNIX", HOST_TYPE_UNIX},
        {"Unix", HOST_TYPE_UNIX},
        {"unix", HOST_TYPE_UNIX},
    };
    return MeaningOf<std::uint32_t>(welcome, kMarkers, HOST_TYPE_AUTO);
}
