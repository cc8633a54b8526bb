// Dragging entries of the list onto nodes of the tree: the loop that follows the mouse, the image under the pointer,
// the highlighted node. What may be dropped where is drag_rules.h, what a drop starts is drops.h.
#pragma once

#include <windows.h>

// The list control reports that the user began to drag the entry at `item`. Posts kBeginDragMessage, because the
// control must first return from its notification.
void LV_OnBeginDrag(int item);
// Follows the mouse until a button, Esc or the loss of the capture ends the drag, and drops.
void RunDrag(HWND window, int item);
