// The console: a read-only text pane under the tree and the list that shows the dialogue with the server. Showing it
// switches verbose on, hiding it off. Other threads' lines are queued and appended, in order, by the window's thread.
#pragma once

#include <cstddef>

// Windows as the system knows them, without its header.
struct HWND__;
using WindowHandle = HWND__*;

// Creates the pane as a child of `parent`; false on failure. `font` (a system font handle) may be null.
bool CreateFtpConsole(WindowHandle parent);
void SetConsoleFont(void* font);
// toggle: hide it (verbose off, height 0) if it is there; otherwise create it (verbose on). Then re-lays out `parent`.
void Zarn_ShowConsole(WindowHandle parent, bool toggle);
WindowHandle ConsoleWindow();
// Ten lines of text in pixels; 0 while hidden.
int ConsoleHeight();
// Called after the console was shown or hidden (status bar).
void SetConsoleChanged(void (*changed)());

// Appends a text on a new line and returns the new line count; 0 without a console. From another thread the line is
// queued and the count is the one before it.
int ConsolePrint(const char* text);
// Appends what other threads queued; the console does so itself when it is idle.
void FlushConsoleQueue();

// Deletes the lines from `fromLine` up to, not including, `toLine`.
void EditClear(int fromLine, int toLine);
int EditGetLineCount();
// True when the line exists; `buffer` gets it without trailing blanks, tabs and line ends.
bool EditGetLine(int line, char* buffer, std::size_t capacity);
int EditGetCurLine();
void EditSetCurLine(int line);
void EditSelectLine(int line);
