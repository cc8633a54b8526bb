#include "ftp/data/data_accept.h"

#include <array>
#include <string_view>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/connection_loss.h"
#include "ftp/control/control_connection.h"
#include "ftp/control/late_reply.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/control/reply_reader.h"
#include "ftp/control/reply_receive.h"
#include "ftp/errors/error_texts.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/session_state.h"
#include "platform/address_text.h"
#include "platform/clock.h"

namespace {

constexpr std::uint32_t kSliceMilliseconds = 50;
// A final reply can overtake the data connection on a real network, but not by long.
constexpr std::uint32_t kOvertakenMilliseconds = 2000;

enum class Control { Quiet, Refusal, Overtaking, Closed };

// What has arrived on the control connection, without reading it off.
Control PeekControl(platform::Socket control) {
    const int readable = platform::WaitReadable(control, 0);
    if (readable == 0) return Control::Quiet;
    std::array<char, 8> bytes{};
    const int count = readable < 0 ? readable : platform::Peek(control, bytes);
    if (count <= 0) return Control::Closed;
    bool continuing = false;
    const int code = ReplyLineCode({bytes.data(), static_cast<std::size_t>(count)}, continuing);
    return code >= 400 ? Control::Refusal : Control::Overtaking;
}

// A connection from anybody else could read or replace the file.
bool ComesFromServer(const char* callerName, Site* site, platform::Socket data, const platform::Endpoint& from) {
    const SocketRecord& record = *site->pSock;
    platform::Endpoint server;
    if (!platform::GetPeerEndpoint(record.ctrl_skt, server)) server = record.peerAddress;
    if (from.address == server.address) return true;
    DoPrintIdArgs(MSG_DATA_CONNECTION_FROM_STRANGER, platform::AddressText(from.address));
    DbgVsprintf(callerName, "WARNING. Closing the connection of a stranger");
    DoClose(data, CloseHow::None);
    return false;
}

enum class Wait { Accepted, Refused, Stopped, Failed };

Wait TakeConnection(const char* callerName, Site* site, bool& stranger) {
    SocketRecord& record = *site->pSock;
    platform::Endpoint from;
    const platform::Socket data = platform::AcceptSocket(record.listen_skt, &from);
    if (data == platform::kNoSocket) {
        DbgPrintSocketError(callerName, "accept", record.listen_skt, 0);
        return Wait::Failed;
    }
    stranger = !ComesFromServer(callerName, site, data, from);
    if (stranger) return Wait::Failed;
    record.data_skt = data;
    DbgVsprintfID(callerName, MSG_ACCEPTED_FROM, static_cast<unsigned>(data), platform::AddressText(from.address),
                  static_cast<unsigned>(from.port));
    return Wait::Accepted;
}

// Watches the listener and the control connection by turns: a server that cannot connect says so there.
Wait WaitForConnection(const char* callerName, Site* site) {
    const SocketRecord& record = *site->pSock;
    const BlockingCall call(record.listen_skt);
    bool overtaken = false;
    std::uint32_t overtakenAt = 0;
    for (;;) {
        const int ready = platform::WaitReadable(record.listen_skt, kSliceMilliseconds);
        if (StopRequested()) return Wait::Stopped;
        if (ready < 0) {
            DbgPrintSocketError(callerName, "select", record.listen_skt, 0);
            return Wait::Failed;
        }
        if (ready > 0) {
            bool stranger = false;
            const Wait taken = TakeConnection(callerName, site, stranger);
            if (!stranger) return taken;
            continue;
        }
        if (overtaken) {
            if (platform::TickCount() - overtakenAt >= kOvertakenMilliseconds) return Wait::Refused;
            continue;
        }
        const Control control = PeekControl(record.ctrl_skt);
        if (control == Control::Closed) return Wait::Failed;
        if (control == Control::Refusal) return Wait::Refused;
        overtaken = control == Control::Overtaking;
        overtakenAt = platform::TickCount();
    }
}

}  // namespace

int ClassOfCutReply(int result, const char* reply) {
    if (result != 0 || !IsReplyLine(reply)) return result;
    bool continuing = false;
    return ReplyClass(ReplyLineCode(std::string_view(reply), continuing));
}

int ReadFinalReply(const char* callerName, Site* site, ReplyBuffer reply) {
    const ReplyBuffer cut = reply.size() > kReplySize ? reply.first(kReplySize) : reply;
    bool unfinished = false;
    int result = 0;
    do {
        unfinished = LineIsUnfinished(site);
        result = ReadDisplayLine(site, cut);
    } while (IsRestOfLine(unfinished, result, reply.data()));
    if (result == SOCKET_ERROR) DropUnansweredConnection(callerName, site);
    return ClassOfCutReply(result, reply.data());
}

DataOpening OpenDataConnection(const char* callerName, Site* site, ReplyBuffer reply, const char* commandLine,
                               const std::atomic<bool>& abort) {
    SocketRecord& record = *site->pSock;
    const int sent = command(site, reply, "%s", commandLine);
    if (ClassOfCutReply(sent, reply.data()) != kReplyPreliminary) {
        CloseStoredSocket(record.listen_skt, CloseHow::None);
        // A code that came in pieces: the server may have begun a transfer whose last word would be the next answer.
        if (sent == kNoUsableReply && LineIsUnfinished(site)) LoseControlConnection(callerName, site);
        return {false, StopRequested() ? FTP_ERROR : 0};
    }
    Wait wait = Wait::Stopped;
    if (!abort && !StopRequested()) wait = WaitForConnection(callerName, site);
    if (wait == Wait::Accepted && !platform::SetReuseAddress(record.data_skt)) {
        DbgPrintSocketError(callerName, "setsockopt(SO_REUSEADDR)", record.data_skt, 0);
        CloseStoredSocket(record.data_skt, CloseHow::None);
        wait = Wait::Failed;
    }
    CloseStoredSocket(record.listen_skt, CloseHow::None);
    switch (wait) {
        case Wait::Accepted:
            return {true};
        case Wait::Refused: {
            const int result = ReadFinalReply(callerName, site, reply);
            // "Transfer complete" without a data connection: nothing was transferred.
            return {false, result == FTP_COMPLETE ? FTP_ERROR : result};
        }
        case Wait::Stopped:
            SettleCancelledTransfer(callerName, site, reply);
            return {false, FTP_ERROR};
        case Wait::Failed:
            break;
    }
    SettleCancelledTransfer(callerName, site, reply);
    return {false, SOCKET_ERROR};
}
