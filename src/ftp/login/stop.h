// The commands that stop a session: Abort, Disconnect (which sends no QUIT), Exit with its QUIT. A connection that the
// server dropped is control/connection_loss.h.
#pragma once

#include "config/site.h"
#include "resources/resource.h"

inline constexpr unsigned kExitCommand = IDM_EXITAPP;

// The Abort command: ends the local side only, no ABOR is sent.
void Zarn_Abort();
void Zarn_IdmDisconnect(Site* site);
// Exit (kExitCommand) or closing a site from the menu.
void Zarn_IdmExit(Site* site, unsigned commandId);
