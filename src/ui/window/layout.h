// Lays out what the main window holds: toolbar, status bar, titles, panes, console. Moving the bar between the panes by
// hand is splitter.h.
#pragma once

#include <windows.h>

// The client area has a new size, in pixels.
void Zarn_OnSize(HWND window, int width, int height);
// Lays out again at the present size.
void Zarn_NewSize(HWND window);
// Lays out with the bar between the panes at `position`, pixels from the left edge, kept within its limits.
void Tree_MoveSplit(HWND window, int position);
