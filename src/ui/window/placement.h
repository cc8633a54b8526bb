// The main window's place on the screen: the stored one for the start, and noting the present one in the settings.
#pragma once

#include <windows.h>

// Left and top edge, then width and height: the stored place if a screen shows it, else one of the system's choice.
RECT FirstPlacement();
// Notes the window's place for the next start. Does nothing until the window is shown, because during creation it is
// neither maximised nor in its final place, nor while the program ends.
void RememberPlacement(HWND window);
