// The bar between tree and list: dragged by mouse or moved by keys. Laying the panes out is layout.h.
#pragma once

#include <windows.h>

#include <optional>

inline constexpr int kSplitterWidth = 4;  // pixels at 96 dpi
// True when the point (client coordinates of the main window) lies on the bar.
bool OverSplitter(POINT point);
// Runs the drag in a loop of its own until a button, Enter, Escape or the loss of the capture ends it. Returns the
// bar's new position, pixels from the left edge of the client area; empty after Escape.
std::optional<int> TV_HandleSplitDrag(HWND window, POINT start);
// The position within the limits of a client area of that width, in pixels.
int ClampSplit(int position, int clientWidth);
