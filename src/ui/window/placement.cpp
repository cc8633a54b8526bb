#include "ui/window/placement.h"

#include <algorithm>

#include "config/settings.h"
#include "ftp/worker/session_state.h"
#include "ui/screen/app.h"

namespace {

constexpr int kFirstWidth = 980;  // pixels at 96 dpi
constexpr int kFirstHeight = 640;

// A stored place that no screen shows any more (a screen was taken away) is replaced by the system's choice.
bool IsOnAScreen(const RECT& place) {
    return MonitorFromRect(&place, MONITOR_DEFAULTTONULL) != nullptr;
}

}  // namespace

RECT FirstPlacement() {
    const bool stored =
        gZarn.xPos != kDefaultPlacement && gZarn.nWidth != kDefaultPlacement && gZarn.nWidth > 0 && gZarn.nHeight > 0;
    if (stored) {
        const RECT place{gZarn.xPos, gZarn.yPos, gZarn.xPos + gZarn.nWidth, gZarn.yPos + gZarn.nHeight};
        if (IsOnAScreen(place)) return {gZarn.xPos, gZarn.yPos, gZarn.nWidth, gZarn.nHeight};
    }
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    const LONG width = std::min<LONG>(Scaled(kFirstWidth), work.right - work.left);
    const LONG height = std::min<LONG>(Scaled(kFirstHeight), work.bottom - work.top);
    return {CW_USEDEFAULT, CW_USEDEFAULT, width, height};
}

void RememberPlacement(HWND window) {
    if (gSession.exiting || !IsWindowVisible(window)) return;
    gZarn.bMinimized = IsIconic(window) != 0;
    gZarn.bMaximized = IsZoomed(window) != 0;
    if (gZarn.bMinimized != 0 || gZarn.bMaximized != 0) return;
    RECT place{};
    GetWindowRect(window, &place);
    gZarn.xPos = place.left;
    gZarn.yPos = place.top;
    gZarn.nWidth = place.right - place.left;
    gZarn.nHeight = place.bottom - place.top;
}
