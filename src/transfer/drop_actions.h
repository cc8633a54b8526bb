// The conditions for sending files that were dropped or pasted. Not here: the windows' part (drop_actions_window.h) and
// the sending itself (drop_transfer.h).
#pragma once

#include "config/site.h"

// True when files may be sent to the site, which becomes the active one. A site that is not connected refuses them with
// a box (7072), a running operation with a line (6003); the active site then does not change.
bool ReadyForDrop(Site* site);
