// The resolution of a window and the system sizes for it, also on systems that know one resolution only.
#pragma once

#include <windows.h>

// Dots per inch of the window's screen; null: of the main screen.
UINT DpiOfWindow(HWND window);
// GetSystemMetrics at a resolution, in pixels.
int MetricAtDpi(int metric, UINT dpi);
