// The toolbar's pictures: the system's standard sets, scaled where the window's resolution needs another size.
#pragma once

#include <windows.h>

#include <commctrl.h>

struct ToolbarImages {
    int standard = 0;  // index of the first picture of the standard set, and of the view set
    int view = 0;
};
// Adds both sets to a toolbar that has none yet.
ToolbarImages AddToolbarImages(HWND toolbar, UINT dpi);
// Frees the scaled pictures of the last toolbar, after the toolbar was destroyed.
void DestroyToolbarImages();
