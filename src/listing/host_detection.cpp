#include "listing/host_detection.h"

#include <string>

#include "config/host_types.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/text_compare.h"
#include "foundation/text_marker.h"
#include "foundation/trace.h"
#include "ftp/control/control_connection.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/data_connection.h"
#include "ftp/worker/beeps.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/site_status.h"
#include "listing/lost_connection.h"
#include "listing/temporary_dump.h"

namespace {

constexpr char kFuncName[] = "ReadProcessHelp";
constexpr int kHelpMessage = 214;
constexpr std::uint32_t kSolarisCapabilities = 15;
constexpr std::uint32_t kMvsCapability = 2;
constexpr std::uint32_t kMvsCapabilityOff = 2;  // bit of the site's options
constexpr std::size_t kLongestHelp = 65536;

constexpr std::uint32_t kNcsa = 7011;
constexpr std::uint32_t kWindowsNtL8 = 7017;
constexpr std::uint32_t kVms = 7016;
constexpr std::uint32_t kPcL8 = 7018;
constexpr std::uint32_t kPcTcp = 7020;

std::string ReadHelpFile(const char* file) {
    std::string text;
    const platform::FileHandle handle = GetDumpFileHandle(kFuncName, file, platform::FileAccess::Read);
    if (handle == platform::kNoFile) return text;
    text.resize(kLongestHelp);
    std::size_t length = 0;
    while (length < text.size()) {
        const int count = platform::ReadFile(handle, std::span<char>(text).subspan(length));
        if (count <= 0) break;
        length += static_cast<std::size_t>(count);
    }
    platform::CloseFile(handle);
    text.resize(length);
    return text;
}

// Asks for HELP as for a listing. Most servers answer on the control connection, which is as good as the file.
int AskHelp(Site* site, ReplyBuffer reply, std::string& help) {
    const TemporaryDump dump("HLP");
    if (dump.Name() == nullptr) return FTP_ERROR;
    const QuietBeeps quiet;
    const int result = RetrieveFile(site, reply, "HELP", dump.Name(), 'A', gSession.transferAbort);
    if (result == FTP_COMPLETE) {
        help = ReadHelpFile(dump.Name());
        return result;
    }
    if (result != 0 || !IsHelpReply(reply.data())) return result;
    help = reply.data();
    return FTP_COMPLETE;
}

// False when the server cannot be reached any more, which is reported. A refusal leaves the type at Unix.
bool AskSyst(Site* site, const std::string& help, std::uint32_t& hostType) {
    char reply[kReplySize] = "";
    const int result = command(site, reply, "SYST");
    if (result == SOCKET_ERROR || result == FTP_CLOSE) {
        EndLostConnection(kFuncName, site, result, "");
        return false;
    }
    if (result != FTP_COMPLETE) return true;
    DoPrintIdArgs(MSG_SERVER_REPLY, help);
    DoPrintIdArgs(MSG_SERVER_REPLY, std::string(reply));
    hostType = HostTypeOfSyst(reply);
    return true;
}

}  // namespace

HelpVerdict HostTypeOfHelp(std::string_view help) {
    constexpr std::string_view kPcTcpBeginning = "211-FTP Software PC/TCP FTP Server for Windows";
    if (Contains(help, "NCSA") || Contains(help, "CUTCP")) return {kNcsa, false};
    if (Contains(help, "Ambrel FTP server")) return {HOST_TYPE_CLIX, false};
    if (help.substr(0, kPcTcpBeginning.size()) == kPcTcpBeginning) return {kPcTcp, false};
    if (!Contains(help, "PC/TCP 3.10")) return {HOST_TYPE_UNIX, true};
    return {kPcTcp, false};
}

std::uint32_t HostTypeOfSyst(std::string_view reply) {
    static constexpr TextMarker<std::uint32_t> kMarkers[] = {
        {"Windows_NT", HOST_TYPE_WINDOWS_NT},
        {"WINDOWS NT Type: L8", kWindowsNtL8},
        {"UNIX", HOST_TYPE_UNIX},
        {"MultiNet", HOST_TYPE_VMS_MULTINET},
        {"VMS", kVms},
        {"PC Type: L8", kPcL8},
        {"OS/MVS", HOST_TYPE_IBM_MVS},
    };
    return MeaningOf(reply, kMarkers, HOST_TYPE_UNIX);
}

bool IsHelpReply(std::string_view reply) {
    if (IsReplyLine(reply)) return reply.front() == '2';
    // A long reply begins with a piece of a later line; a refusal is never that long.
    constexpr std::size_t kLongReply = kReplySize / 2;
    return reply.size() >= kLongReply;
}

int ReadProcessHelp(Site* site) {
    if (site == nullptr) return FTP_ERROR;
    site->capabilities = 0;
    if (site->dwType == HOST_TYPE_SOLARIS) {
        site->capabilities = kSolarisCapabilities;
        return kHelpMessage;
    }
    char reply[kReplySize] = "";
    std::string help;
    const int result = AskHelp(site, reply, help);
    if (result != FTP_COMPLETE) {
        DbgVsprintf(kFuncName, "ERROR. HELP returned %d:%s", result, reply);
        EndLostConnection(kFuncName, site, result, reply);
        return result;
    }
    if (site->dwType == HOST_TYPE_AUTO) {
        HelpVerdict verdict = HostTypeOfHelp(help);
        // A connection that was lost at HELP still shows the reply to PORT; here at the latest it comes to light.
        if (verdict.askSyst && !AskSyst(site, help, verdict.hostType)) return SOCKET_ERROR;
        SetHostType(*site, verdict.hostType);
    }
    if (site->dwCurType == HOST_TYPE_IBM_MVS && (site->flagsAfterAnonymous & kMvsCapabilityOff) == 0)
        site->capabilities |= kMvsCapability;
    DoPrintIdArgs(MSG_HOST_TYPE, site->dwCurType, HostTypeName(site->dwCurType));
    return result;
}

bool DetectUnreadableHost(Site* site) {
    if (site == nullptr || site->pSock == nullptr || site->dwType != HOST_TYPE_AUTO ||
        site->dwCurType != HOST_TYPE_AUTO || StopRequested() || !HasControlSocket(site)) {
        return false;
    }
    SocketRecord& record = *site->pSock;
    if (record.detectedPort == record.localPort) return false;
    record.detectedPort = record.localPort;
    return ReadProcessHelp(site) == FTP_COMPLETE && site->dwCurType != HOST_TYPE_AUTO;
}
