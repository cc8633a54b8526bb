// Dragging entries of the list onto nodes of the tree: the loop that follows the mouse, the picture under it, the
// highlighted node. What may be dropped where is drag_rules.h, what a drop starts drops.h.
#pragma once

#include <windows.h>

// The list says that a drag of its selection begins at `item`; posts the message by which it does.
void LV_OnBeginDrag(int item);
// Follows the mouse until a button, Esc or the loss of the capture ends the drag, and drops.
void RunDrag(HWND window, int item);
