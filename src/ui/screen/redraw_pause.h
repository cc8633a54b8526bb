// Keeps a window from drawing while much of it changes at once. Pauses of one window may be nested; when the last one
// ends the window is drawn once, frame and child windows included. Window's thread only.
#pragma once

#include <windows.h>

class RedrawPause {
  public:
    explicit RedrawPause(HWND window);
    ~RedrawPause();
    RedrawPause(const RedrawPause&) = delete;
    RedrawPause& operator=(const RedrawPause&) = delete;

  private:
    HWND window_;
};
