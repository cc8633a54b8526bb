// Tells a lost control connection from an operation that failed on it. Not for the engine's own calls, which know.
#pragma once

#include "config/site.h"

// After a failed operation with its result and reply: when the server cannot be reached any more, the user is told, the
// disconnect is on its way, and the answer is true. A failure without a refusal asks the server with a NOOP.
bool EndLostConnection(const char* callerName, Site* site, int result, const char* reply);
// True when the reply is the server's own refusal (RFC 959, section 4.2: 4xx or 5xx), not what an earlier step left.
bool IsRefusal(const char* reply);
