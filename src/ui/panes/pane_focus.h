// Moves the keyboard focus: Tab and Backspace between tree and list, F6 through tree, list and console. When a pane
// accepts keys at all is decided by its notifications in browse/.
#pragma once

#include <windows.h>

// From tree to list, from anywhere else to the tree.
void FocusOtherPane(HWND from);
// Called by the message loop: handles F6, and Tab in the console, whose edit control would not pass it on. True when it
// moved the focus. Does nothing while a dialog waits for an answer.
bool HandleFocusKey(const MSG& message);
