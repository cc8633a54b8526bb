// How wide the parts of the status bar are at a width of the window. Pure; what they say is status_bar.h.
#pragma once

#include <array>

inline constexpr int kStatusParts = 7;

// Right edges in pixels; the last one is -1, the window's. The message takes what the others leave; in a narrow window
// first the local folder gives way, then the selection, then the message.
std::array<int, kStatusParts> StatusPartEdges(int width, int dpi);
