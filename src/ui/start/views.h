// Fills in the views through which the engine reaches the windows.
#pragma once

#include <windows.h>

void InstallViews();
// A dialog or box that waits for the user, or null; the transfer dialog does not count. UI thread.
HWND OpenModalDialog();
