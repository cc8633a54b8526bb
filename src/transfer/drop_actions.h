// What has to be in order before files that were dropped or pasted are sent. The windows' part is
// drop_actions_window.h, the sending itself drop_transfer.h.
#pragma once

#include "config/site.h"

// True when files may be sent to the site, which then is the active one. A site that is not connected is told (7072),
// an operation that runs refuses them (6003); the active site then stays what it is.
bool ReadyForDrop(Site* site);
