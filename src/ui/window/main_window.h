// The one top-level window: creation, messages, layout of its panes, the orderly close.
#pragma once

#include <windows.h>

bool RegisterMainWindowClass();
HWND CreateTheMainWindow();
bool CreateAppWindows(HWND mainWindow);
LRESULT CALLBACK MainWndProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam);
void Zarn_OnSize(HWND window, int width, int height);
// Lays the panes out again at the present size.
void Zarn_NewSize(HWND window);
void Zarn_OnClose(HWND window);
