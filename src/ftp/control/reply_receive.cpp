#include "ftp/control/reply_receive.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/connection_loss.h"
#include "ftp/control/reply_reader.h"
#include "ftp/errors/error_texts.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/session_state.h"
#include "platform/clock.h"

namespace {

std::atomic<bool> gInnerLinesSuppressed{false};

// The wait ends with the line feed; only a server that never sends one takes the whole time.
constexpr std::uint32_t kRestOfLineMilliseconds = 300;

// No limit: the wait can be cancelled by the time-out or an abort. A limit in milliseconds: nothing cuts it short.
using WaitLimit = std::optional<std::uint32_t>;

enum class ReadHow { Peek, Receive };

int ReadBytes(platform::Socket socket, std::span<char> buffer, ReadHow how, WaitLimit limit) {
    std::optional<BlockingCall> call;
    if (!limit) call.emplace(socket);
    return how == ReadHow::Peek ? platform::Peek(socket, buffer) : platform::Receive(socket, buffer);
}

// Receives exactly what was peeked before.
bool ReceiveExactly(platform::Socket socket, std::span<char> buffer, WaitLimit limit) {
    while (!buffer.empty()) {
        const int count = ReadBytes(socket, buffer, ReadHow::Receive, limit);
        if (count <= 0) return false;
        buffer = buffer.subspan(static_cast<std::size_t>(count));
    }
    return true;
}

// Throws away the rest of a line that is too long to keep, up to its line feed.
bool SkipToLineFeed(platform::Socket socket, WaitLimit limit) {
    std::array<char, 4096> piece;
    for (std::size_t skipped = 0; skipped < kMostReplyBytes;) {
        const int peeked = ReadBytes(socket, piece, ReadHow::Peek, limit);
        if (peeked <= 0) return false;
        const std::string_view bytes(piece.data(), static_cast<std::size_t>(peeked));
        const std::size_t lineFeed = bytes.find('\n');
        const std::size_t taken = lineFeed == std::string_view::npos ? bytes.size() : lineFeed + 1;
        if (!ReceiveExactly(socket, std::span(piece).first(taken), limit)) return false;
        if (lineFeed != std::string_view::npos) return true;
        skipped += taken;
    }
    return false;
}

// Status of ReadOneLine: 1, 0 without memory, SOCKET_ERROR. `line` receives the line with its line end.
int ReceiveLine(SocketRecord& record, std::string& line, WaitLimit wait) {
    constexpr char kFuncName[] = "ReadOneLine";
    const platform::Socket socket = record.ctrl_skt;
    std::size_t limit = kFirstPeek;
    std::unique_ptr<char[]> buffer;
    std::size_t length = 0;
    int peeked = 0;
    while (length == 0) {
        buffer.reset(new (std::nothrow) char[limit + 1]());
        if (buffer == nullptr) return 0;
        peeked = ReadBytes(socket, {buffer.get(), limit}, ReadHow::Peek, wait);
        if (peeked < 0) {
            DbgPrintSocketError(kFuncName, "recv", socket, platform::LastSocketError());
            return SOCKET_ERROR;
        }
        if (peeked == 0) {
            DbgVsprintf(kFuncName, "ERROR. iNumBytes==ZERO. 0 bytes peek'ed from socket. Returning SOCKET_ERROR");
            return SOCKET_ERROR;
        }
        length = LineLength({buffer.get(), static_cast<std::size_t>(peeked)}, limit);
        if (length == 0 && limit >= kLongestReplyLine) break;
        if (length == 0) limit += kPeekStep;
    }
    const bool tooLong = length == 0;
    if (tooLong) length = static_cast<std::size_t>(peeked);
    if (!tooLong && buffer[length - 1] != '\n')
        DbgVsprintf(kFuncName, "WARNING: Line does not end in LineFeed! (read %d of %d max)", peeked,
                    static_cast<int>(limit));
    if (!ReceiveExactly(socket, {buffer.get(), length}, wait)) {
        const int error = platform::LastSocketError();
        DbgVsprintf(kFuncName, "ERROR. After PEEK, call to recv(%x) Failed . %d:%s", static_cast<unsigned>(socket),
                    error, GetWsaErrorText(error).c_str());
        return SOCKET_ERROR;
    }
    line.assign(buffer.get(), length);
    record.lineUnfinished = !tooLong && line.back() != '\n';
    if (!tooLong) return 1;
    DoPrintIdArgs(MSG_REPLY_TOO_LONG, static_cast<unsigned>(kLongestReplyLine));
    return SkipToLineFeed(socket, wait) ? 1 : SOCKET_ERROR;
}

void TraceLineCode(const std::string& line, bool before, bool after) {
    constexpr char kFuncName[] = "ReadOneLine";
    if (!gTrace.Any()) return;
    const bool digits =
        line.size() >= 3 && std::all_of(line.begin(), line.begin() + 3, [](char c) { return c >= '0' && c <= '9'; });
    if (!digits)
        before
            ? DbgVsprintf(kFuncName, "WARNING. Can't determine Return Code from a Continue'd Line. (%s)", line.c_str())
            : DbgVsprintf(kFuncName, "ERROR. Can't determine Return Code AND Not a Continue Line. (%s)", line.c_str());
    else if (after)
        DbgVsprintf(kFuncName, "%s", before ? "CONTINUE Line." : "Begin CONTINUE Line.");
    else
        DbgVsprintf(kFuncName, "%s", before ? "End CONTINUE Line." : "Single Line.");
}

int ReadLine(Site* site, std::span<char> buffer, int& maximumBytes, int& lineCode, bool& continuing, WaitLimit limit) {
    constexpr char kFuncName[] = "ReadOneLine";
    lineCode = 0;
    if (!HasControlSocket(site)) {
        DbgVsprintf(kFuncName, "ERROR. Control Socket is INVALID. Returning SOCKET_ERROR");
        return SOCKET_ERROR;
    }
    std::string line;
    const int status = ReceiveLine(*site->pSock, line, limit);
    if (status != 1) return status;
    const auto received = static_cast<int>(line.size());
    const bool before = continuing;
    lineCode = ReplyLineCode(line, continuing);
    // A NUL would end the text for everybody else.
    std::replace(line.begin(), line.end(), '\0', ' ');
    while (line.size() > 2 && (line.back() == '\r' || line.back() == '\n' || line.back() == ' ')) line.pop_back();
    TraceLineCode(line, before, continuing);
    const int capacity = static_cast<int>(std::min<std::size_t>(buffer.size(), kLongestReplyLine + 1)) - 1;
    maximumBytes = std::min(maximumBytes, std::max(capacity, 0));
    if (received > maximumBytes) {
        if (line.size() > static_cast<std::size_t>(maximumBytes)) line.resize(static_cast<std::size_t>(maximumBytes));
        lineCode = FTP_INSUFFICIENT_BUFFER;
    } else {
        maximumBytes = received;
    }
    SetReply(buffer, line);
    return 1;
}

// Prints one line of a reply. Inner lines without a code are forced onto the console, whatever the output switches say.
void ShowReplyLine(const char* line, bool inner) {
    OutPutPrint(line);
    if (inner && !gInnerLinesSuppressed && gTrace.verbose && !IsReplyLine(line)) PrintToConsole(line);
}

int ResultOfCode(int code) {
    const int result = ReplyClass(code);
    if (result == 0)
        DbgVsprintf("ReadDisplayLine", "ERROR. nRC:%d Out of Range(100-599). Return Code will be ZERO", code);
    return result;
}

// Ends the connection after an endless reply: its rest could not be told from the reply to the next command.
void DropBrokenServer(Site* site) {
    AbandonStoredSocket(site->pSock->ctrl_skt);
    if (!gSession.connecting) LoseControlConnection("ReadDisplayLine", site);
}

enum class FirstLine { StillToRead, ReadBefore };

// Reads a whole reply, or what is left of it after its first line.
int ReadReply(Site* site, ReplyBuffer reply, WaitLimit limit, FirstLine first) {
    constexpr char kFuncName[] = "ReadDisplayLine";
    if (!HasControlSocket(site) || reply.empty()) return 0;
    const std::size_t size = reply.size();
    const std::unique_ptr<char[]> work(new (std::nothrow) char[size + 1]());
    if (work == nullptr) return 0;
    const std::uint32_t startedAt = platform::TickCount();
    std::string joined;
    int replyCode = 0;
    std::size_t bytes = 0;
    bool continuing = first == FirstLine::ReadBefore;
    for (int number = 1;; ++number) {
        if (limit) {
            const std::uint32_t elapsed = platform::TickCount() - startedAt;
            if (elapsed >= *limit || platform::WaitReadable(site->pSock->ctrl_skt, *limit - elapsed) <= 0)
                return SOCKET_ERROR;
        }
        int lineCode = 0;
        auto taken = static_cast<int>(size);
        const int status = ReadLine(site, {work.get(), size + 1}, taken, lineCode, continuing, limit);
        if (status != 1) return status;
        const std::string_view line = work.get();
        bytes += line.size();
        if (number == 1) {
            joined.assign(line.substr(0, size - 1));
            replyCode = lineCode;
        } else {
            if (joined.size() + line.size() > size)
                DbgVsprintf(kFuncName, "WARNING. Line is too large to cat to end of pszLine. Loop:%d", number);
            JoinReplyLine(joined, line, size);
        }
        SetReply(reply, joined);
        ShowReplyLine(work.get(), continuing);
        if (!continuing) return ResultOfCode(replyCode);
        if (number >= kMostReplyLines || bytes > kMostReplyBytes) {
            DoPrintIdArgs(MSG_REPLY_TOO_LONG, static_cast<unsigned>(bytes));
            DropBrokenServer(site);
            return SOCKET_ERROR;
        }
    }
}

}  // namespace

bool LineIsUnfinished(const Site* site) {
    return HasControlSocket(site) && site->pSock->lineUnfinished;
}

void DropRestOfLine(Site* site) {
    if (!LineIsUnfinished(site)) return;
    site->pSock->lineUnfinished = false;
    const platform::Socket socket = site->pSock->ctrl_skt;
    std::array<char, 4096> piece;
    for (std::size_t dropped = 0; dropped < kMostReplyBytes;) {
        if (platform::WaitReadable(socket, kRestOfLineMilliseconds) != 1) return;
        const int peeked = platform::Peek(socket, piece);
        if (peeked <= 0) return;
        const std::string_view bytes(piece.data(), static_cast<std::size_t>(peeked));
        const std::size_t lineFeed = bytes.find('\n');
        const std::size_t taken = lineFeed == std::string_view::npos ? bytes.size() : lineFeed + 1;
        if (!ReceiveExactly(socket, std::span(piece).first(taken), kRestOfLineMilliseconds)) return;
        DbgVsprintf("DropRestOfLine", "WARNING. %d bytes came after their line was read", static_cast<int>(taken));
        if (lineFeed != std::string_view::npos) return;
        dropped += taken;
    }
}

void SuppressInnerReplyLines(bool suppress) {
    gInnerLinesSuppressed = suppress;
}

int ReadOneLine(Site* site, std::span<char> buffer, int& maximumBytes, int& lineCode, bool& continuing) {
    return ReadLine(site, buffer, maximumBytes, lineCode, continuing, std::nullopt);
}

int ReadDisplayLine(Site* site, ReplyBuffer line) {
    return ReadReply(site, line, std::nullopt, FirstLine::StillToRead);
}

int ReadReplyWithin(Site* site, ReplyBuffer reply, std::uint32_t milliseconds) {
    return ReadReply(site, reply, milliseconds, FirstLine::StillToRead);
}

int ReadReplyEnd(Site* site, ReplyBuffer reply) {
    return ReadReply(site, reply, std::nullopt, FirstLine::ReadBefore);
}

int ReadDisplayServerStat(Site* site, void (*addLine)(void* context, const char* line), void* context) {
    if (!HasControlSocket(site)) return 0;
    std::array<char, kReplySize + 1> line{};
    // Quirk: the limit is set once, so every line is cut to the shortest line before it, kept.
    int maximumBytes = kReplySize;
    int replyCode = 0;
    bool continuing = false;
    for (int number = 1;; ++number) {
        int lineCode = 0;
        const int status = ReadOneLine(site, line, maximumBytes, lineCode, continuing);
        if (status != 1) return status;
        if (number == 1) replyCode = lineCode;
        addLine(context, line.data());
        if (!continuing) return replyCode;
        if (number >= kMostReplyLines) {
            DropBrokenServer(site);
            return SOCKET_ERROR;
        }
    }
}
