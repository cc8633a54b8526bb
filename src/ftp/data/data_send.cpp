#include "ftp/data/data_send.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string>
#include <string_view>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/number_text.h"
#include "foundation/text_compare.h"
#include "foundation/trace.h"
#include "ftp/control/late_reply.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/data_accept.h"
#include "ftp/data/data_connection.h"
#include "ftp/data/data_copy.h"
#include "ftp/data/transfer_buffer.h"
#include "ftp/data/transfer_statistics.h"
#include "ftp/errors/error_texts.h"
#include "ftp/worker/beeps.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/system.h"

namespace {

constexpr char kFuncName[] = "DlgSendFile";
// What a listing and a record can describe.
constexpr std::uint64_t kLargestUpload = UINT32_MAX;

// How a node is to be sent.
struct Sending {
    Site* site;
    char type;  // 'A', 'I' or 'L'
    const std::atomic<bool>& abort;
};

std::string LocalPath(const TransferNode& node) {
    return node.pszLocation.c_str() + std::string(1, platform::kPathSeparator) + node.pszLocalName.c_str();
}

BoxAnswer AskAboutOpening(const TransferNode& node, std::uint32_t error) {
    const OwnedText text =
        Zarn_ResVsprintf(MSG_CANNOT_OPEN_LOCAL_FILE, node.pszLocalName.c_str(), platform::SystemErrorText(error));
    const std::string caption = CatalogueText(MSG_TRANSFER_ERROR_CAPTION);
    return ShowMessageBox(text.c_str(), caption.c_str(), BoxButtons::AbortRetryIgnore, BoxIcon::Exclamation);
}

bool IsTooBigToSend(const TransferNode& node, std::uint64_t size) {
    if (size <= kLargestUpload) return false;
    const std::string digits = GroupDigits(std::to_string(size));
    DoPrintIdArgs(MSG_FILE_TOO_BIG_TO_SEND, node.pszLocalName.c_str(), digits);
    const OwnedText text = Zarn_ResVsprintf(MSG_BOX_FILE_TOO_BIG_TO_SEND, node.pszLocalName.c_str(), digits);
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
    return true;
}

int SendBytes(Site* site, std::span<const char> bytes, std::uint64_t sentBefore, TransferProgressMeter& meter) {
    const platform::Socket socket = site->pSock->data_skt;
    std::span<const char> rest = bytes;
    while (!rest.empty()) {
        int sent = 0;
        {
            const BlockingCall call(socket);
            sent = StopRequested() ? -1 : platform::Send(socket, rest);
        }
        if (sent < 0) {
            DbgPrintSocketError("DlgSendBuffer", "send", socket, 0);
            return SOCKET_ERROR;
        }
        if (sent == 0) return FTP_ERROR;
        rest = rest.subspan(static_cast<std::size_t>(sent));
        meter.Moved(sentBefore + (bytes.size() - rest.size()));
    }
    return FTP_COMPLETE;
}

// One piece of the file; false ends the loop.
bool SendPiece(Site* site, platform::FileHandle file, TransferBuffer& buffer, std::uint64_t size,
               TransferProgressMeter& meter, CopyOutcome& outcome) {
    const std::uint64_t rest = size - static_cast<std::uint64_t>(outcome.bytes);
    const std::size_t asked = static_cast<std::size_t>(std::min<std::uint64_t>(buffer.size(), rest));
    const int read = platform::ReadFile(file, {buffer.data(), asked});
    if (read <= 0) {
        // The file has become shorter since it was opened.
        outcome.localError = read < 0 ? std::max(platform::LastSystemError(), 1u) : platform::kErrorHandleEof;
        DbgVsprintf("DlgSendMass", "ERROR. Call to ReadFile(%x, %x, %d, ...) Returned ZERO . Breaking Loop:%d",
                    static_cast<unsigned>(file), static_cast<unsigned>(site->pSock->data_skt.load()),
                    static_cast<int>(asked), static_cast<int>(outcome.bytes));
        return false;
    }
    const std::span<const char> bytes(buffer.data(), static_cast<std::size_t>(read));
    if (SendBytes(site, bytes, static_cast<std::uint64_t>(outcome.bytes), meter) != FTP_COMPLETE) {
        outcome.socketError = platform::LastSocketError();
        return false;
    }
    outcome.bytes += read;
    return true;
}

// After the last byte: signals the end of the file, reads the server's verdict, then closes. In this order nothing
// waits in a close that cannot be cancelled.
bool FinishSending(Site* site, ReplyBuffer reply, const CopyOutcome& outcome) {
    SocketRecord& record = *site->pSock;
    if (!outcome.reachedEnd) {
        // Cut off, so that the server does not take half a file for a whole one.
        AbandonStoredSocket(record.data_skt);
        if (StopRequested())
            SettleCancelledTransfer(kFuncName, site, reply);
        else
            ReadFinalReply(kFuncName, site, reply);
        return false;
    }
    platform::ShutdownSocket(record.data_skt, platform::ShutdownHow::Send);
    const int result = ReadFinalReply(kFuncName, site, reply);
    // A server that has not confirmed the file may never read what is still on its way.
    if (result == FTP_COMPLETE)
        CloseStoredSocket(record.data_skt, CloseHow::Send);
    else
        AbandonStoredSocket(record.data_skt);
    return result == FTP_COMPLETE;
}

// The name that the server chose, from its answer to STOU (RFC 1123, section 4.1.2.9); empty when it gives none.
std::string UniqueName(std::string_view answer) {
    constexpr std::string_view kMark = "file: ";
    const std::size_t mark = AsciiLower(answer).find(kMark);
    if (mark == std::string::npos) return {};
    std::string_view path = answer.substr(mark + kMark.size());
    // The lines of a long answer follow one another without a break; the next one begins with the code.
    if (answer[3] == '-') path = path.substr(0, path.find(std::string(answer.substr(0, 3)) + ' '));
    std::string name(path.substr(path.find_last_of('/') + 1));
    StripTrailing(name, "\r\n ");
    return name;
}

struct SourceFile {
    platform::FileHandle file;
    std::uint64_t size;  // bytes
};

// Opens the node's local file, asking whether to try again while that fails. Given up: kNoFile, with the user's last
// answer in `answer`.
platform::FileHandle OpenFileToSend(const TransferNode& node, BoxAnswer& answer) {
    const std::string path = LocalPath(node);
    do {
        const platform::FileHandle file = platform::OpenFile(path.c_str(), {});
        if (file != platform::kNoFile) return file;
        const std::uint32_t error = platform::LastSystemError();
        BeepOnFailure();
        DbgFileCreateError("DlgSendMass", path.c_str(), error);
        answer = AskAboutOpening(node, error);
    } while (answer == BoxAnswer::Retry);
    return platform::kNoFile;
}

CopyOutcome SendOpenFile(Site* site, const SourceFile& source) {
    CopyOutcome outcome;
    outcome.bytes = 0;
    TransferBuffer buffer(gZarn.port.packetSize);
    TransferProgressMeter meter(true, source.size);
    const std::uint32_t startedAt = platform::TickCount();
    while (static_cast<std::uint64_t>(outcome.bytes) < source.size) {
        if (StopRequested() || !SendPiece(site, source.file, buffer, source.size, meter, outcome)) break;
    }
    const std::uint32_t elapsed = platform::TickCount() - startedAt;
    const auto bytes = static_cast<std::uint64_t>(outcome.bytes);
    outcome.reachedEnd = bytes == source.size;
    meter.Finished(bytes);
    PrintStatistics(SendStatistics(bytes, elapsed, outcome.reachedEnd), bytes);
    return outcome;
}

std::string StoreCommand(const TransferNode& node) {
    const char* name = !node.pszRemoteName.empty() ? node.pszRemoteName.get() : node.pszLocalName.get();
    // A command that is too long is refused where it is sent; here it keeps its whole length.
    const std::size_t longest = std::strlen(name) + sizeof "STOU ";
    return gZarn.SENDUNIQUE != 0 ? FormatBounded(kFuncName, longest, "STOU %s", name)
                                 : FormatBounded(kFuncName, longest, "STOR %s", name);
}

// One transfer command with everything that belongs to it; `outcome` gets the code and the local error.
void SendOnConnection(const Sending& sending, TransferNode& node, const SourceFile& source, ReplyBuffer reply,
                      ItemOutcome& outcome) {
    Site* site = sending.site;
    SetRepresentationType(site, reply, sending.type);
    outcome.code = GetFTPListenSocket(site, reply);
    if (outcome.code != FTP_COMPLETE) {
        DbgVsprintf(kFuncName, "ERROR. Call to GetFTPListenSocket() Failed. Returning %d", outcome.code);
        return;
    }
    const DataOpening opening = OpenDataConnection(kFuncName, site, reply, StoreCommand(node).c_str(), sending.abort);
    if (!opening.open) {
        outcome.code = opening.code;
        return;
    }
    if (gZarn.SENDUNIQUE != 0) node.pszStoredName = OwnedText::Copy(UniqueName(reply.data()));
    const CopyOutcome copied = SendOpenFile(site, source);
    outcome.localError = copied.localError;
    outcome.code = FinishSending(site, reply, copied) ? FTP_COMPLETE : FTP_ERROR;
}

// Sends the open file, unless it is too big.
void SendOpened(const Sending& sending, TransferNode& node, platform::FileHandle file, ItemOutcome& outcome) {
    std::uint64_t size = 0;
    if (!platform::GetFileSize(file, size)) {
        outcome.localError = std::max(platform::LastSystemError(), 1u);
    } else if (IsTooBigToSend(node, size)) {
        outcome.told = true;
        outcome.answer = BoxAnswer::Ok;
    } else {
        char reply[kReplySize] = "";
        SendOnConnection(sending, node, {file, size}, reply, outcome);
        outcome.reply = reply;
    }
}

ItemOutcome SendNode(const Sending& sending, TransferNode& node) {
    ItemOutcome outcome;
    if (node.pszLocalName.empty() || node.pszLocation.empty() || node.pszDestination.empty()) {
        DbgVsprintf(kFuncName, "ERROR. Entered with Bad Parameter. Returning FALSE");
        return outcome;
    }
    if (!HasControlSocket(sending.site)) {
        DoPrintIdArgs(MSG_NO_CONTROL_SOCKET);
        outcome.code = SOCKET_ERROR;
        return outcome;
    }
    // The file is opened before the server is asked to replace its own.
    BoxAnswer answer = BoxAnswer::None;
    const platform::FileHandle file = OpenFileToSend(node, answer);
    if (file == platform::kNoFile) {
        outcome.told = true;
        outcome.answer = answer;
        return outcome;
    }
    SendOpened(sending, node, file, outcome);
    platform::CloseFile(file);
    return outcome;
}

}  // namespace

ItemOutcome SendItem(Site* site, TransferNode& node, char type) {
    return SendNode({site, type, gSession.transferAbort}, node);
}

bool DlgSendFile(Site* site, TransferNode& node, ReplyBuffer reply, char type, const std::atomic<bool>& abort) {
    const ItemOutcome outcome = SendNode({site, type, abort}, node);
    node.iRetCode = outcome.code;
    SetReply(reply, outcome.reply);
    return outcome.code == FTP_COMPLETE;
}

bool DlgSendMass(Site* site, TransferNode& node) {
    BoxAnswer answer = BoxAnswer::None;
    const platform::FileHandle file = OpenFileToSend(node, answer);
    if (file == platform::kNoFile) {
        node.iRetCode = FTP_ERROR;
        return false;
    }
    std::uint64_t size = 0;
    const bool sent = platform::GetFileSize(file, size) && SendOpenFile(site, {file, size}).reachedEnd;
    platform::CloseFile(file);
    return sent;
}

int DlgSendBuffer(Site* site, const char* buffer, std::uint32_t length, std::uint64_t sentBefore, std::uint64_t total) {
    if (buffer == nullptr || site == nullptr || site->pSock == nullptr) return FTP_ERROR;
    TransferProgressMeter meter(true, std::max<std::uint64_t>(total, 1));
    if (length == 0 || total == 0 || length > total) meter.Finished(std::max<std::uint64_t>(total, 1));
    return SendBytes(site, {buffer, length}, sentBefore, meter);
}
