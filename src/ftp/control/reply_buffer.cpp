#include "ftp/control/reply_buffer.h"

#include <algorithm>

bool HasControlSocket(const Site* site) {
    if (site == nullptr || site->pSock == nullptr) return false;
    const platform::Socket socket = site->pSock->ctrl_skt;
    return socket != platform::kNoSocket && socket != 0;
}

void SetReply(ReplyBuffer reply, std::string_view text) {
    if (reply.empty()) return;
    const std::size_t length = std::min(text.size(), reply.size() - 1);
    std::copy_n(text.data(), length, reply.data());
    reply[length] = '\0';
}
