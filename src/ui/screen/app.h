// What the program's windows share: handles, names, fonts, the pane with the focus. One record, used on the window's
// thread only. No behaviour here.
#pragma once

#include <windows.h>

#include <string>

enum class Pane { None, Tree, List };

struct App {
    HINSTANCE instance = nullptr;
    HWND mainWindow = nullptr;
    HWND statusBar = nullptr;
    HWND toolbar = nullptr;
    HWND treeTitle = nullptr;  // bars above the two panes
    HWND listTitle = nullptr;
    HFONT paneFont = nullptr;
    Pane focus = Pane::Tree;  // the pane that commands act on
    std::string shortName;    // message 7302
    std::string longName;     // message 7303
    std::string helpFile;
    std::string commandLineFiles;  // names, each followed by "|"
    int commandLineFileCount = 0;
    UINT dpi = 96;
    HANDLE buttonMutex = nullptr;  // "BtnStateMutex"
};
extern App gApp;

// Converts pixels at 96 dpi to the window's resolution.
int Scaled(int pixelsAt96);
