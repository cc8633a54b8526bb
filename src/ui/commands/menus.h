// Which menu items are enabled for the focused pane and its selection.
#pragma once

#include <windows.h>

void Zarn_HandleInitMenuPopup(HMENU menu, int index);
void Zarn_OnContextMenu(HWND window, POINT position);
