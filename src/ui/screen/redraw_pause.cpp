#include "ui/screen/redraw_pause.h"

#include <algorithm>
#include <vector>

namespace {

std::vector<HWND> gPaused;  // one element per pause

bool IsPaused(HWND window) {
    return std::find(gPaused.begin(), gPaused.end(), window) != gPaused.end();
}

}  // namespace

RedrawPause::RedrawPause(HWND window) : window_(window) {
    if (!IsPaused(window)) SendMessageW(window, WM_SETREDRAW, FALSE, 0);
    gPaused.push_back(window);
}

RedrawPause::~RedrawPause() {
    gPaused.erase(std::find(gPaused.begin(), gPaused.end(), window_));
    if (IsPaused(window_)) return;
    SendMessageW(window_, WM_SETREDRAW, TRUE, 0);
    RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_FRAME | RDW_ALLCHILDREN);
}
