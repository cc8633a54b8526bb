// All commands of the program by id: the name in the trace and the handler. When a command may run is
// browse/command_state.h.
#pragma once

#include <windows.h>

#include "config/site.h"

// Runs a command chosen in a menu, by key or on the toolbar. True when the id is a command of this program.
bool ProcessCommandsWndProc(HWND window, UINT id);
// The disconnect command for a site that need not be the active one; nothing when it has left the tree.
void DisconnectSite(Site* site);
// False for a command without a handler, which menus and toolbar grey.
bool CommandIsAvailable(unsigned id);
