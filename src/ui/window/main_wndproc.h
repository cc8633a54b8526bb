// The main window's messages: one handler each, found in a table. Creating and closing the window is main_window.h.
#pragma once

#include <windows.h>

LRESULT CALLBACK MainWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
