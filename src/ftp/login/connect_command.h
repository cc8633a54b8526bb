// The connect command: log-in, first directory, and what the user sees meanwhile. The log-in itself is login.h.
#pragma once

#include "config/site.h"

// Connects a site that is not connected and settles its current remote directory and path separator.
bool Zarn_HandleConnect(Site* site);
// The command: status texts, connecting flag, first directory into the tree.
void Zarn_IdmConnect(Site* site);
// "\" when the first directory is written with backslashes only, else "/".
char RemoteSeparator(const char* firstDirectory);
