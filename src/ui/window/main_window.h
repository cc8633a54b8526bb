// The one top-level window: its creation with all that it holds, another resolution, the orderly close. Its messages
// are main_wndproc.h, the layout of what it holds is layout.h.
#pragma once

#include <windows.h>

bool RegisterMainWindowClass(WNDPROC procedure);
// Null when the window, or something in it, cannot be made.
HWND CreateTheMainWindow();
// WM_CREATE: makes the bars, the panes and, if it was shown last, the console. False when one of them cannot be made.
bool CreateAppWindows(HWND mainWindow);
// The window moved to a screen of another resolution; `suggested` is its new place there.
void ChangeDpi(HWND window, UINT dpi, const RECT& suggested);
void Zarn_OnClose(HWND window);
