// The bar between tree and list: dragged by mouse or moved by keys.
#pragma once

#include <windows.h>

inline constexpr int kSplitterWidth = 4;  // pixels at 96 dpi
// True when the point (client coordinates of the main window) lies on the bar.
bool OverSplitter(POINT point);
// Runs the drag in a loop of its own until a button, Enter, Escape or the loss of the capture ends it.
void TV_HandleSplitDrag(HWND window, POINT start);
// Lays the panes out at a new split (pixels from the left edge of the client area), kept within the limits.
void Tree_MoveSplit(HWND window, int position);
int ClampSplit(int position, int clientWidth);
