// The keys that move the keyboard focus: Tab and Backspace from tree to list and back, F6 through tree, list and
// console. Which keys a pane is ready for, the pane's own notifications decide.
#pragma once

#include <windows.h>

// From tree to list, from anywhere else to the tree.
void FocusOtherPane(HWND from);
// A message of the program's loop: F6, or Tab in the console, whose edit control would keep it. True when it moved the
// focus; a dialog that waits for an answer keeps its keys.
bool HandleFocusKey(const MSG& message);
