// Keeps title, toolbar, status bar and cursor in step with the program's state. Any room may ask for a refresh; the
// main window installs what one does.
#pragma once

// `refresh` runs on the window's thread.
void InstallRefresh(void (*refresh)());
// Refreshes at once. Window's thread only.
void RefreshWindowState();
// Refreshes soon, from any thread; requests made before the refresh runs count as one.
void PostRefreshWindowState();
// The main window received kRefreshMessage.
void HandleRefreshMessage();
