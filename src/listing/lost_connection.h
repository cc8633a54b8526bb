// Tells a lost control connection from an operation that failed on it. Not for the engine's own calls, which know.
#pragma once

#include "config/site.h"

// After a failed operation with its result and reply: when the server cannot be reached any more, the user is told, the
// disconnect is on its way, and the answer is true. A failure without a reply asks the server with a NOOP.
bool EndLostConnection(const char* callerName, Site* site, int result, const char* reply);
