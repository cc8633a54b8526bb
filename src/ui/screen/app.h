// What the windows of the program share: their handles, names and fonts, the pane with the focus. One record, owned by
// the window's thread. No behaviour here.
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

// Pixels at the window's resolution for a measure at 96 dpi.
int Scaled(int pixelsAt96);
