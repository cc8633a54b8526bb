// The program's help file and the request to show its contents.
#pragma once

#include <windows.h>

#include <string>

// The program's path with its last ".exe" replaced by ".hlp"; empty when the path holds no ".exe".
std::string HelpFileFor(const std::string& programPath);
// Opens the help file's contents; tells the user when there is no such file (the system's help viewer would show an
// error of its own and block).
void ShowHelpContents(HWND window);
void CloseHelp(HWND window);
