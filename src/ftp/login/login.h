// Logging in to a site (RFC 959, section 6): directly, anonymously or through a gateway, with retries. Runs on the
// worker; texts go to the console, questions through the session view. The command around it is connect_command.h.
#pragma once

#include "config/site.h"

// One attempt with the whole log-in.
bool DoConnect2(Site* site);
// At most gZarn.port.retries + 1 attempts.
bool DoConnect(Site* site);
// Closes what is open and connects again.
bool Zarn_ReConnect(Site* site);
