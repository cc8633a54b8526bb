// The NOOP before a command on a connection that has been idle: a dead connection is found before the operation starts.
// Sending the command itself is control_connection.h.
#pragma once

#include <cstdint>

#include "config/site.h"

// Milliseconds since the site's last command (null: the active site); 0 without a site.
std::uint32_t LastCmdTicks(const Site* site);
// True when the server takes commands: at once within 1000 ms of the last command, else after a NOOP. A failed NOOP
// with `closeOnFailure` tells the user and disconnects.
bool ServerReadyForCmd(Site* site, bool closeOnFailure);
