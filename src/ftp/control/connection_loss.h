// A control connection that is lost: closed by the server, or closed here because its replies are out of step. An
// orderly end is login/stop.h.
#pragma once

#include "config/site.h"

// The server dropped the connection: tells the user (7318) and disconnects; nothing when that has been done.
void Zarn_HandleFtpReset(const char* callerName, Site* site);
// The box of Zarn_HandleFtpReset and the disconnect command, whatever is left of the connection.
void TellServerReset(const char* callerName, Site* site);
// Closes the control connection and tells the user, unless whoever stops the worker does that.
void LoseControlConnection(const char* callerName, Site* site);
// After a failed wait for a reply: if it was cancelled, the reply is lost, so the connection is closed and the user is
// told. Not while connecting: the log-in handles that itself.
void DropUnansweredConnection(const char* callerName, Site* site);
