// Replies from a real socket: what a server may send, in one piece and then no more, through the functions that every
// command waits in.
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <string>

#include "config/site.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/control/reply_receive.h"
#include "ftp/worker/close_socket.h"
#include "fuzz/harness.h"
#include "host/socket_table.h"

namespace {

constexpr int kMostReplies = 64;
constexpr std::uint32_t kPatience = 1000;

// The client's end of a connection on which the server has sent `bytes` and then closed its half.
platform::Socket ServedSocket(std::string_view bytes) {
    int ends[2];
    REQUIRE_THAT(::socketpair(AF_UNIX, SOCK_STREAM | SOCK_NONBLOCK, 0, ends) == 0);
    // What does not fit was never sent; the longest inputs only show that the limits hold.
    const bool sent = bytes.empty() || ::send(ends[1], bytes.data(), bytes.size(), MSG_NOSIGNAL) > 0;
    ::close(ends[1]);
    REQUIRE_THAT(sent);
    return host::AddSocket(ends[0]);
}

bool IsResult(int result) {
    return (result >= SOCKET_ERROR && result <= FTP_ERROR) || result == kFileUnavailable;
}

bool IsLine(const char* line, std::size_t size) {
    const std::size_t length = std::string_view(line, size).find('\0');
    return length != std::string_view::npos;
}

void CountStatusLine(void* context, const char* line) {
    REQUIRE_THAT(IsLine(line, kReplySize + 1));
    ++*static_cast<int*>(context);
}

}  // namespace

// One byte for the way of reading, one for the size of the reply's buffer, then what the server sends.
void FuzzReplyStream(std::string_view input) {
    FuzzInput from(input);
    const std::uint8_t way = from.Byte();
    const std::size_t size = kReplySize + std::size_t{from.Byte()};
    static const SitePtr site(Zarn_CreateDefaultSite("fuzz"));
    site->pSock->ctrl_skt = ServedSocket(from.Rest());
    DropRestOfLine(site.get());
    // Exactly as long as it says, so that one byte too many is seen.
    const std::string before(size, '~');
    const std::unique_ptr<char[]> buffer(new char[size]);
    const ReplyBuffer reply{buffer.get(), size};
    int lines = 0;
    int result = 0;
    for (int number = 0; number < kMostReplies && HasControlSocket(site.get()); ++number) {
        before.copy(buffer.get(), size);
        switch (way % 3) {
            case 0:
                result = ReadDisplayLine(site.get(), reply);
                break;
            case 1:
                result = ReadReplyWithin(site.get(), reply, kPatience);
                break;
            default:
                result = ReadDisplayServerStat(site.get(), CountStatusLine, &lines);
                REQUIRE_THAT(result >= SOCKET_ERROR && result <= 9999);
        }
        if (way % 3 < 2) REQUIRE_THAT(IsResult(result) || result == FTP_INSUFFICIENT_BUFFER);
        if (way % 3 < 2 && result > 0) REQUIRE_THAT(IsLine(buffer.get(), size));
        if (result == SOCKET_ERROR) break;
    }
    if (HasControlSocket(site.get())) CloseStoredSocket(site->pSock->ctrl_skt, CloseHow::None);
    REQUIRE_THAT(!HasControlSocket(site.get()));
}
