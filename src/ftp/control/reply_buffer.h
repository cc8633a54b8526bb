// The buffer that a caller hands down for the server's words, and the test that there is a server to speak to. Filling
// it from the socket is reply_receive.h.
#pragma once

#include <span>
#include <string_view>

#include "config/site.h"

// At least kReplySize characters, terminator included.
using ReplyBuffer = std::span<char>;

// Copies `text` into a reply buffer, cut to it.
void SetReply(ReplyBuffer reply, std::string_view text);
// True when the site has an open control socket.
bool HasControlSocket(const Site* site);
