#include "ftp/data/data_connection.h"

#include <array>
#include <string>

#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/control_connection.h"
#include "ftp/control/late_reply.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/data_accept.h"
#include "ftp/data/data_copy.h"
#include "ftp/errors/error_texts.h"
#include "ftp/worker/beeps.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "platform/address_text.h"
#include "platform/system.h"

namespace {

// Off: the listener would wait, and no PORT would announce it to the server.
constexpr bool kPortSwitch = true;

// One receiving command. The two families differ in their progress and in how a local failure ends.
struct Reception {
    const char* caller;
    Retrieval what;
    const std::atomic<bool>& abort;
    bool showProgress;
    std::uint32_t localError = 0;  // out: system error of the local file
};

constexpr char kDlgFuncName[] = "DlgRetrieveFile";

// The code of a user's transfer.
int CodeOf(int result, std::uint32_t localError) {
    return localError == platform::kErrorAccessDenied ? kLocalAccessDenied : result;
}

bool IsComplete(const CopyOutcome& outcome) {
    return outcome.reachedEnd && outcome.localError == 0;
}

// Reads the transfer's final reply, so that the next command gets its own, and judges the whole transfer.
int FinishReception(Site* site, ReplyBuffer reply, const CopyOutcome& outcome, Reception& reception) {
    const bool incomplete = !IsComplete(outcome);
    if (incomplete && StopRequested()) {
        SettleCancelledTransfer(reception.caller, site, reply);
        return FTP_ERROR;
    }
    const int result = ReadFinalReply(reception.caller, site, reply);
    if (!incomplete) return result;
    if (outcome.localError != 0) {
        SetReply(reply, platform::SystemErrorText(outcome.localError));
        reception.localError = outcome.localError;
        return outcome.bytes < 0 && !reception.showProgress ? SOCKET_ERROR : FTP_ERROR;
    }
    // The server may believe that all went well; a part of a file is no success.
    if (result == FTP_COMPLETE) SetReply(reply, GetWsaErrorText(outcome.socketError).view());
    return outcome.bytes < 0 || result == FTP_COMPLETE ? SOCKET_ERROR : result;
}

int Receive(Site* site, ReplyBuffer reply, Reception& reception) {
    const Retrieval& what = reception.what;
    if (!HasControlSocket(site)) {
        DoPrintIdArgs(MSG_NO_CONTROL_SOCKET);
        return SOCKET_ERROR;
    }
    if (reception.abort) return FTP_ERROR;
    SetRepresentationType(site, reply, what.type);
    const int listening = GetFTPListenSocket(site, reply);
    if (listening != FTP_COMPLETE) {
        CloseStoredSocket(site->pSock->listen_skt, CloseHow::None);
        BeepOnFailure();
        return listening;
    }
    const DataOpening opening =
        OpenDataConnection(reception.caller, site, reply, ExpandOnceMore(what.commandText).c_str(), reception.abort);
    if (!opening.open) return opening.code;
    SetReply(reply, "");
    const CopyOutcome outcome = ReceiveFile(site, what.localFile, reception.showProgress, what.total);
    CloseStoredSocket(site->pSock->data_skt, CloseHow::Receive);
    return FinishReception(site, reply, outcome, reception);
}

}  // namespace

void SetRepresentationType(Site* site, ReplyBuffer reply, char type) {
    // Quirk: one type for all sites, 'A' from the start, so the first text transfer sends no TYPE, kept.
    // A new connection starts at 'A' again, whatever the last one had: without the second test a binary file would
    // arrive changed.
    SocketRecord& record = *site->pSock;
    if (gSession.currentType == type && record.serverType == type) return;
    gSession.currentType = type;
    record.serverType = type;
    if (type == 'L')
        command(site, reply, "TYPE L 8");
    else
        command(site, reply, "TYPE %c", type);
}

std::string PortCommand(std::uint32_t address, std::uint16_t port) {
    const auto byteOf = [](std::uint32_t value, int shift) { return static_cast<int>(value >> shift & 255u); };
    std::array<char, 48> text{};
    std::snprintf(text.data(), text.size(), "PORT %d,%d,%d,%d,%d,%d", byteOf(address, 24), byteOf(address, 16),
                  byteOf(address, 8), byteOf(address, 0), byteOf(port, 8), byteOf(port, 0));
    return text.data();
}

int GetFTPListenSocket(Site* site, ReplyBuffer reply) {
    constexpr char kFuncName[] = "GetFTPListenSocket";
    if (!HasControlSocket(site)) return FTP_CLOSE;
    const platform::Socket listener = platform::CreateSocket(platform::SocketKind::Stream);
    const auto fail = [&](const char* operation) {
        DbgPrintSocketError(kFuncName, operation, listener, 0);
        DoClose(listener, CloseHow::None);
        return FTP_CLOSE;
    };
    if (listener == platform::kNoSocket) return fail("create socket");
    if (!kPortSwitch && !platform::SetReuseAddress(listener)) return fail("setsockopt(SO_REUSEADDR)");
    if (!platform::BindAnyAddress(listener, 0)) return fail("bind");
    platform::Endpoint bound;
    if (!platform::GetLocalEndpoint(listener, bound)) return fail("getsockname");
    site->pSock->listenPort = bound.port;
    DbgVsprintf(kFuncName, "Listen Port ID:%u ", static_cast<unsigned>(bound.port));
    if (!platform::ListenSocket(listener, 1)) return fail("listen");
    const std::uint32_t address = gSession.localAddress;
    if (kPortSwitch) {
        const int result = command(site, reply, "%s", PortCommand(address, bound.port).c_str());
        if (result != FTP_COMPLETE) {
            DoPrintIdArgs(MSG_PORT_NOT_UNDERSTOOD, static_cast<unsigned>(site->pSock->ctrl_skt.load()));
            DoClose(listener, CloseHow::None);
            return result;
        }
    }
    DbgVsprintfID(kFuncName, MSG_LISTENING, static_cast<unsigned>(listener), platform::AddressText(address),
                  static_cast<unsigned>(bound.port));
    site->pSock->listen_skt = listener;
    return FTP_COMPLETE;
}

int RetrieveFile(Site* site, ReplyBuffer reply, const char* commandText, const char* localFile, char type,
                 const std::atomic<bool>& abort) {
    Reception reception{"RetrieveFile", {commandText, localFile, type}, abort, false};
    return Receive(site, reply, reception);
}

ItemOutcome ReceiveItem(Site* site, const Retrieval& what) {
    char reply[kReplySize] = "";
    Reception reception{kDlgFuncName, what, gSession.transferAbort, true};
    ItemOutcome outcome;
    outcome.code = CodeOf(Receive(site, reply, reception), reception.localError);
    outcome.localError = reception.localError;
    outcome.reply = reply;
    return outcome;
}

int DlgRetrieveFile(Site* site, TransferNode& node, ReplyBuffer reply, const char* commandText, const char* localFile,
                    char type, const std::atomic<bool>& abort) {
    Reception reception{kDlgFuncName, {commandText, localFile, type, node.iSize}, abort, true};
    const int result = Receive(site, reply, reception);
    node.iRetCode = CodeOf(result, reception.localError);
    return result;
}
