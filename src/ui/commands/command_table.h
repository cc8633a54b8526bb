// All commands of the program by id: the name in the trace and the handler. When a command may run is
// browse/command_state.h.
#pragma once

#include <windows.h>

// Runs a command chosen in a menu, by key or on the toolbar. True when the id is a command of this program.
bool ProcessCommandsWndProc(HWND window, UINT id);
// False for a command without a handler, which menus and toolbar grey.
bool CommandIsAvailable(unsigned id);
