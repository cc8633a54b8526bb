// Where the main window stands: the stored place for its start, and the record of its present one in the settings.
#pragma once

#include <windows.h>

// Left and top edge, then width and height: the stored place if a screen shows it, else one of the system's choice.
RECT FirstPlacement();
// Notes the window's place for the next start. Does nothing until the window is shown, because during creation it is
// neither maximised nor in its final place, nor while the program ends.
void RememberPlacement(HWND window);
