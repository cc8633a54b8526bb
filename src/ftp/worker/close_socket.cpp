#include "ftp/worker/close_socket.h"

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/worker/session_state.h"

namespace {

constexpr char kFuncName[] = "DoClose";
constexpr int kShutdownFirst = 2;
// How the program's sockets close; any other mode leaves out shutdown and linger.
constexpr int kShutdownMode = kShutdownFirst;
constexpr int kMostCloseRetries = 5;
constexpr int kLingerSeconds = 25;

}  // namespace

platform::Socket DoClose(platform::Socket socket, CloseHow how) {
    if (socket == platform::kNoSocket) return platform::kNoSocket;
    if (kShutdownMode == kShutdownFirst) {
        if (how != CloseHow::None) platform::ShutdownSocket(socket, static_cast<platform::ShutdownHow>(how));
        platform::SetLinger(socket, gSession.aborting ? 0 : kLingerSeconds);
    }
    int retries = 0;
    while (!platform::CloseSocket(socket) && platform::LastSocketError() == platform::kSocketWouldBlock &&
           retries < kMostCloseRetries)
        ++retries;
    if (retries > 0) DbgVsprintfID(kFuncName, MSG_DATA_SOCKET_CLOSE_RETRIED, retries);
    DbgVsprintfID(kFuncName, MSG_SOCKET_CLOSED, static_cast<unsigned>(socket));
    return platform::kNoSocket;
}

bool CloseStoredSocket(std::atomic<platform::Socket>& stored, CloseHow how) {
    const platform::Socket socket = stored.exchange(platform::kNoSocket);
    if (socket == platform::kNoSocket || socket == 0) return false;
    DoClose(socket, how);
    return true;
}

void AbandonStoredSocket(std::atomic<platform::Socket>& stored) {
    const platform::Socket socket = stored.exchange(platform::kNoSocket);
    if (socket == platform::kNoSocket || socket == 0) return;
    platform::SetLinger(socket, 0);
    platform::CloseSocket(socket);
    DbgVsprintfID(kFuncName, MSG_SOCKET_CLOSED, static_cast<unsigned>(socket));
}
