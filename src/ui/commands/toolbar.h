// The toolbar: sixteen slots, their images and tooltips, and which of them can be pressed.
#pragma once

#include <windows.h>

bool CreateTheToolbar(HWND parent);
// The same for another resolution.
bool RecreateTheToolbar(HWND parent);
int ToolbarHeight();
void SetToolbarButtonState();
