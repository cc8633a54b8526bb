// The server's answer to STAT, line by line (RFC 959, section 4.1.3).
#pragma once

#include "config/site.h"
#include "foundation/console_pane.h"

// Sends STAT on the worker and shows the lines in a modal dialog titled with the site's host.
void ShowServerStatus(WindowHandle owner, Site* site);
