// The status bar: seven parts (message or connection state, links, unique names of either direction, transfer type,
// local folder, selection), rewritten from the flags, and what a click on each does.
#pragma once

#include <windows.h>

bool CreateTheStatusWindow(HWND parent);
int StatusBarHeight();
// Rewrites all parts from the busy flags and settings.
void ChangeSBText();
void SetPartOneSBText(unsigned messageId, const char* text);
// Empty text: the state takes its place again.
void ShowStatusText(const char* text);
void SetLocalDirSBText();
// The user closes the window.
void ShowClosing();
void LayoutStatusParts(int width);
void Zarn_ToggleStatus(int part);
bool ChangeCWD();
// Help text of the highlighted menu item; 0 clears it.
void ShowMenuHelp(unsigned commandId);
