// The menu bar's items and the context menus of the panes: enables what fits the focused pane and its selection, and
// runs what is chosen from a context menu. The rules are browse/command_state.h.
#pragma once

#include <windows.h>

// A menu of the menu bar is about to open; `index` is its position there.
void Zarn_HandleInitMenuPopup(HMENU menu, int index);
// `position`: on the screen, or (-1, -1) when the menu was asked for by key.
void Zarn_OnContextMenu(HWND window, POINT position);
