// The toolbar: sixteen slots with their images, enabled to fit the focused pane and its selection. The rules are
// browse/command_state.h, the images toolbar_images.h.
#pragma once

#include <windows.h>

bool CreateTheToolbar(HWND parent);
// Makes it again for another resolution.
bool RecreateTheToolbar(HWND parent);
// In pixels.
int ToolbarHeight();
void SetToolbarButtonState();
