// The resolution of a window and the sizes that go with it, on systems that know one per screen and on those that do
// not.
#pragma once

#include <windows.h>

// Of the screen that the window is on; null: of the main screen.
UINT DpiOfWindow(HWND window);
// GetSystemMetrics at a resolution.
int MetricAtDpi(int metric, UINT dpi);
