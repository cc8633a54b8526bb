// Finds a dialog or message box that waits for the user's answer. The transfer dialog does not wait and does not count.
#pragma once

#include <windows.h>

// The dialog, or null. Window's thread only.
HWND OpenModalDialog();
