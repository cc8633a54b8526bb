// Opening a site's control connection (RFC 959, section 5.4): look-up, socket, connect. The log-in is login.h; closing
// is worker/close_socket.h.
#pragma once

#include "config/site.h"

// Resolves, creates the control socket and connects it. `service` is a name or a decimal port.
bool Zarn_ConnectSite(Site* site, const char* service, const char* protocol);
