// The program's help file: its name and showing its contents.
#pragma once

#include <windows.h>

#include <string>

// The program's path with its last ".exe" replaced by ".hlp"; empty when the path holds no ".exe".
std::string HelpFileFor(const std::string& programPath);
// Shows the help file's contents, or a message when there is no such file (the system's help viewer would show an error
// of its own and block).
void ShowHelpContents(HWND window);
void CloseHelp(HWND window);
