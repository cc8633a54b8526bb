// Every command of the program by id: the name it is traced with and its handler. When a command may run is the matter
// of command_state.h.
#pragma once

#include <windows.h>

// Menu, accelerator, toolbar and context-menu choices. True when the id is a command of this program.
bool ProcessCommandsWndProc(HWND window, UINT id);
// False for a command that has no handler: menus and toolbar show it greyed.
bool CommandIsAvailable(unsigned id);
