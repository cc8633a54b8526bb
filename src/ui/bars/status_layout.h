// The widths of the status bar's parts in a window of some width. Pure; their texts are status_bar.h.
#pragma once

#include <array>

inline constexpr int kStatusParts = 7;

// Right edges in pixels; the last one is -1, the edge of the window. The message gets the room that the others leave;
// in a narrow window first the local folder shrinks, then the selection, then the message.
std::array<int, kStatusParts> StatusPartEdges(int width, int dpi);
