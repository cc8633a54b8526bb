// Every command of the program by id: the name it is traced with, its handler, and when it may run.
#pragma once

#include <windows.h>

// Menu, accelerator, toolbar and context-menu choices. True when the id is a command of this program.
bool ProcessCommandsWndProc(HWND window, UINT id);
