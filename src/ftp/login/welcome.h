// The server's welcome: reading it, and the host type that it names. What HELP and SYST say of the host is
// listing/host_detection.h.
#pragma once

#include <cstdint>

#include "config/site.h"
#include "ftp/control/reply_buffer.h"

// Reads the welcome (RFC 959, section 5.4). False for anything else; the console and the note of the connect failure
// then say what came instead.
bool ReadWelcome(Site* site, ReplyBuffer reply);
// The host type that a welcome text names; `configured` unless that is 7000.
std::uint32_t DetectHostType(std::uint32_t configured, const char* welcome);
