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
// Title, toolbar, status bar and cursor after the state or the selection changed. UI thread.
void RefreshWindowState();
// The same from any thread: posted, several at once count as one.
void PostRefreshWindowState();
inline constexpr UINT kRefreshMessage = WM_APP + 2;
// Timer 10: runs while an operation runs.
inline constexpr UINT_PTR kTimeOutTimer = 10;
