#include "ftp/control/control_connection.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/connection_loss.h"
#include "ftp/control/reply_receive.h"
#include "ftp/errors/error_texts.h"
#include "ftp/worker/blocking_call.h"
#include "platform/clock.h"

namespace {

constexpr std::size_t kLongestSend = 1024;
constexpr std::size_t kCommandSize = 2048;  // terminator included
constexpr std::size_t kCommandfSize = 512;  // terminator included

// A line end inside an argument would start a second command.
bool HoldsLineEnd(std::string_view text) {
    return text.find_first_of("\r\n") != std::string_view::npos;
}

int SendCommandAndRead(Site* site, ReplyBuffer reply, const char* text) {
    constexpr char kFuncName[] = "command";
    if (HoldsLineEnd(text)) {
        DbgVsprintf(kFuncName, "ERROR. The command holds a line end. Returning FTP_ERROR");
        SetReply(reply, CatalogueText(MSG_PATH_INVALID));
        return FTP_ERROR;
    }
    const int result = getreply(site, text, reply);
    // Quirk: the debug trace shows the whole command, even a password, kept.
    DbgVsprintf(kFuncName, "CMD:%s, Returning %d", text, result);
    return result;
}

}  // namespace

int sendstr(Site* site, std::string_view text, ReplyBuffer errorText) {
    constexpr char kFuncName[] = "sendstr";
    if (!HasControlSocket(site)) return FTP_CLOSE;
    const platform::Socket socket = site->pSock->ctrl_skt;
    int error = 0;
    while (!text.empty()) {
        const std::string_view piece = text.substr(0, kLongestSend);
        int sent = 0;
        {
            const BlockingCall call(socket);
            sent = platform::Send(socket, piece);
        }
        if (sent <= 0) {
            error = platform::LastSocketError();
            DbgPrintSocketError(kFuncName, "send", socket, error);
            break;
        }
        text.remove_prefix(static_cast<std::size_t>(sent));
        DbgVsprintfID(kFuncName, MSG_SOCKET_BYTES_REMAIN, static_cast<unsigned>(socket),
                      static_cast<unsigned>(text.size()), static_cast<unsigned>(sent));
    }
    if (text.empty()) {
        site->lastCommandTicks = platform::TickCount();
        return 0;
    }
    const OwnedText words = GetWsaErrorText(error);
    if (words) SetReply(errorText, words.view());
    return FTP_CLOSE;
}

int SendPacket(Site* site, const char* commandLine, ReplyBuffer errorText) {
    constexpr char kFuncName[] = "SendPacket";
    if (commandLine == nullptr || *commandLine == '\0' || !HasControlSocket(site)) {
        DbgVsprintf(kFuncName, "(ERROR) Bad Parameter passed in. Returning FTP_ERROR");
        return FTP_ERROR;
    }
    const std::size_t length = std::strlen(commandLine);
    OwnedText packet = OwnedText::Copy(commandLine, length + 3);
    if (!packet) {
        ShowNoMemoryError();
        return FTP_ERROR;
    }
    DropRestOfLine(site);
    packet.data()[length] = '\r';
    packet.data()[length + 1] = '\n';
    return sendstr(site, {packet.get(), length + 2}, errorText);
}

int getreply(Site* site, const char* commandLine, ReplyBuffer reply) {
    constexpr char kFuncName[] = "getreply";
    if (!HasControlSocket(site)) {
        DoPrintIdArgs(MSG_NOT_CONNECTED);
        return FTP_ERROR;
    }
    const auto socket = static_cast<unsigned>(site->pSock->ctrl_skt.load());
    // Quirk: only "PASS" in capitals hides the password here, kept.
    if (commandLine != nullptr && std::string_view(commandLine).starts_with("PASS "))
        DbgVsprintf(kFuncName, "(Sock:%x) Sending Password.", socket);
    else
        DbgVsprintf(kFuncName, "(Sock:%x) Sending: %s.", socket, commandLine != nullptr ? commandLine : "");
    const int sent = SendPacket(site, commandLine, reply);
    if (sent != 0) return sent;
    // Without an answer, the previous reply must not be mistaken for one.
    SetReply(reply, "");
    const int result = ReadDisplayLine(site, reply.first(std::min<std::size_t>(reply.size(), kReplySize)));
    if (result == SOCKET_ERROR) DropUnansweredConnection(kFuncName, site);
    return result;
}

int command(Site* site, ReplyBuffer reply, const char* format, ...) {
    char text[kCommandSize];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof text) {
        // A truncated command would act on the wrong name.
        DbgVsprintf("command", "ERROR. The command has %d characters. Returning FTP_ERROR", length);
        SetReply(reply, CatalogueText(MSG_PATH_INVALID));
        return FTP_ERROR;
    }
    return SendCommandAndRead(site, reply, text);
}

int commandf(Site* site, ReplyBuffer reply, const char* format, ...) {
    char text[kCommandfSize];
    va_list arguments;
    va_start(arguments, format);
    const int length = std::vsnprintf(text, sizeof text, format, arguments);
    va_end(arguments);
    if (length < 0 || static_cast<std::size_t>(length) >= sizeof text) {
        DbgVsprintf("commandf", "ERROR. The command has %d characters. Returning FTP_ERROR", length);
        SetReply(reply, CatalogueText(MSG_PATH_INVALID));
        return FTP_ERROR;
    }
    // Quirk: the formatted text is expanded a second time, kept.
    return SendCommandAndRead(site, reply, ExpandOnceMore(text).c_str());
}
