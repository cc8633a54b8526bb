#include "ftp/control/remote_commands.h"

#include <array>
#include <string>

#include "config/host_types.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/text_compare.h"
#include "foundation/trace.h"
#include "ftp/control/connection_loss.h"
#include "ftp/control/control_connection.h"
#include "ftp/control/reply_reader.h"
#include "ftp/control/reply_receive.h"
#include "ftp/errors/server_error.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/site_status.h"

namespace {

using LocalReply = std::array<char, kReplySize>;

bool IsWholeCode(int result) {
    return result >= 100 && result <= 599;
}

// A whole code such as 550 as its class; everything else unchanged.
int ClassOfWholeCode(int result) {
    return IsWholeCode(result) ? result / 100 : result;
}

bool CheckSocket(Site* site, ReplyBuffer reply) {
    if (HasControlSocket(site)) return true;
    SetReply(reply, CatalogueText(MSG_SOCKET_INVALID));
    return false;
}

bool Empty(const char* text) {
    return text == nullptr || *text == '\0';
}

// Shows why an operation failed, unless the user stopped it.
void TellServerError(int operation, const char* reply) {
    if (!StopRequested()) ShowServerError(operation, reply);
}

}  // namespace

int DoCWD(Site* site, const char* path, ReplyBuffer reply, bool remember) {
    if (!CheckSocket(site, reply)) return FTP_ERROR;
    if (Empty(path)) {
        SetReply(reply, CatalogueText(MSG_PATH_INVALID));
        return FTP_ERROR;
    }
    const int result = command(site, reply, "CWD %s", path);
    const bool changed = result == FTP_COMPLETE || (result >= 200 && result <= 299);
    if (remember && changed) SetSessionDirectory(*site, path);
    return result;
}

int DoPWD(Site* site, ReplyBuffer reply) {
    if (!CheckSocket(site, reply)) return FTP_ERROR;
    return command(site, reply, "PWD");
}

int DoNoop(Site* site) {
    if (!HasControlSocket(site)) return FTP_ERROR;
    LocalReply reply{};
    return command(site, reply, "NOOP");
}

int DoMKD(Site* site, const char* path, ReplyBuffer reply) {
    if (!CheckSocket(site, reply)) return FTP_ERROR;
    return command(site, reply, "MKD %s", path != nullptr ? path : "");
}

int DoRMD(Site* site, const char* path, ReplyBuffer reply) {
    constexpr char kFuncName[] = "DoRMD";
    // Quirk: both checks only trace (the second fires for every non-empty path) and the command is sent anyway, kept.
    if (site == nullptr) DbgVsprintf(kFuncName, "ERROR. Entered with NULL Site. Returning FTP_ERROR");
    if (path == nullptr || *path != '\0')
        DbgVsprintf(kFuncName, "ERROR. Entered with NULL Pathname. Returning FTP_ERROR");
    const char* name = path != nullptr ? path : "";
    if (site != nullptr && site->dwCurType == HOST_TYPE_IBM_MVS)
        return ClassOfWholeCode(command(site, reply, "DELE %s", name));
    return command(site, reply, "RMD %s", name);
}

int DoDELE(Site* site, const char* name, ReplyBuffer reply) {
    if (Empty(name) || reply.empty()) {
        DbgVsprintf("DoDELE", "ERROR. Bad parameter passed in. Returning 0");
        return 0;
    }
    const int result = ClassOfWholeCode(command(site, reply, "DELE %s", name));
    return result >= 1 && result <= 5 ? result : 0;
}

int DoRename(Site* site, ReplyBuffer reply, const char* oldName, const char* newName) {
    if (Empty(oldName) || Empty(newName)) return FTP_ERROR;
    const int result = command(site, reply, "RNFR %s", oldName);
    if (result != kReplyMoreNeeded) return result;
    return command(site, reply, "RNTO %s", newName);
}

bool RenameRemoteItem(Site* site, const char* oldName, const char* newName) {
    if (Empty(oldName) || Empty(newName)) return false;
    LocalReply reply{};
    if (DoRename(site, reply, oldName, newName) == FTP_COMPLETE) return true;
    TellServerError(kOperationRenameFile, reply.data());
    return false;
}

bool MakeRemoteDirectory(Site* site, const char* name) {
    LocalReply reply{};
    if (DoMKD(site, name, reply) == FTP_COMPLETE) return true;
    NameErrorSubject(name != nullptr ? name : "");
    TellServerError(kOperationMakeDirectory, reply.data());
    return false;
}

OwnedText GetRemoteDirectory(Site* site) {
    constexpr char kFuncName[] = "GetRemoteDirectory";
    constexpr int kLongestLine = 1040;
    std::array<char, kLongestLine + 1> line{};
    if (!HasControlSocket(site) || SendPacket(site, "PWD", line) != 0) return {};
    int maximumBytes = kLongestLine;
    int lineCode = 0;
    bool continuing = false;
    if (ReadOneLine(site, line, maximumBytes, lineCode, continuing) != 1) {
        DropUnansweredConnection(kFuncName, site);
        return {};
    }
    // Only the first line counts, but the rest must be read, or it would be taken for the next command's reply.
    LocalReply rest{};
    if (continuing) ReadReplyEnd(site, rest);
    if (lineCode == 0 || line[0] == '\0') return {};
    std::string directory;
    if (!QuotedDirectory(line.data(), directory)) {
        DbgVsprintf(kFuncName, "ERROR. No directory in (%s). Returning NULL", line.data());
        return {};
    }
    return OwnedText::Copy(directory);
}

bool ChangeRemoteDirectory(Site* site, const char* path, ReplyBuffer reply, int* result, bool showError) {
    int unused = 0;
    int& code = result != nullptr ? *result : unused;
    if (Empty(path)) {
        code = FTP_ERROR;
        return false;
    }
    SetReply(reply, "");
    code = DoCWD(site, path, reply, true);
    if (code == FTP_COMPLETE) return true;
    if (!reply.empty() && reply.front() == '\0') {
        DoPrintIdArgs(MSG_SERVER_ABORTED_CONNECTION);
        SetReply(reply, CatalogueText(MSG_SERVER_ABORTED_CONNECTION));
    }
    if (showError) TellServerError(kOperationChangeDirectory, reply.data());
    return false;
}

int ChkForRdir(Site* site, const char* name, bool hasParent, const char* parent, ReplyBuffer unshown) {
    SetReply(unshown, "");
    if (name == nullptr || (hasParent && parent == nullptr)) return FTP_ERROR;
    const std::string path = hasParent ? std::string(parent) + "/" + name : std::string(name);
    LocalReply reply{};
    const int entered = DoCWD(site, path.c_str(), reply, true);
    if (entered == FTP_COMPLETE) return FTP_COMPLETE;
    const std::string said = AsciiLower(reply.data());
    const bool missing = said.find("no such file or directory") != std::string::npos ||
                         said.find("the system cannot find the file specified") != std::string::npos;
    if (!missing) {
        SetReply(unshown, reply.data());
        return entered;
    }
    const int made = DoMKD(site, path.c_str(), reply);
    if (made != FTP_COMPLETE) {
        NameErrorSubject(path);
        TellServerError(kOperationMakeDirectory, reply.data());
        return made;
    }
    ChangeRemoteDirectory(site, path.c_str(), reply, nullptr, true);
    // Quirk: a directory that was made but could not be entered counts as entered, kept.
    return FTP_COMPLETE;
}
