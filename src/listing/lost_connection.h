// Distinguishes a lost control connection from an operation that failed on it. Not for the session engine's own calls,
// which know the difference.
#pragma once

#include "config/site.h"

// For a failed operation with its result and reply: true when the server cannot be reached any more; the user has been
// informed and a disconnect is under way. After a failure without a refusal the server is probed with NOOP.
bool EndLostConnection(const char* callerName, Site* site, int result, const char* reply);
// True when the reply is the server's own refusal (RFC 959, section 4.2: 4xx or 5xx), not what an earlier step left.
bool IsRefusal(const char* reply);
