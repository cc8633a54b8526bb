// The status bar: seven parts (message or connection state, links, unique names of either direction, transfer type,
// local folder, selection), rewritten from the flags, and what a click on each does.
#pragma once

#include <windows.h>

bool CreateTheStatusWindow(HWND parent);
int StatusBarHeight();
// Rewrites all parts from the session's flags and the settings.
void ChangeSBText();
// Shows a catalogue text in the first part, as "text: detail" when `text` is not empty.
void SetPartOneSBText(unsigned messageId, const char* text);
// Shows a message in the first part; an empty text brings the connection state back.
void ShowStatusText(const char* text);
void SetLocalDirSBText();
// Shows that the window is closing.
void ShowClosing();
// `width` of the window's client area, in pixels.
void LayoutStatusParts(int width);
// A click on a part: toggles its setting, shows the console or asks for a local folder.
void Zarn_ToggleStatus(int part);
// Asks for another local folder; false when none was chosen.
bool ChangeCWD();
// Shows the help text of a highlighted menu item; 0 clears it.
void ShowMenuHelp(unsigned commandId);
