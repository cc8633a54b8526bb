// Pictures scaled to another size: pixels as 0xAARRGGBB, colours not multiplied by alpha. Pure.
#pragma once

#include <cstdint>
#include <vector>

using Pixels = std::vector<std::uint32_t>;  // of a square, row by row

// `from` and `to`: the sides in pixels. Scales smoothly; transparent pixels do not tint their neighbours.
Pixels ScaledSquare(const Pixels& pixels, int from, int to);
// Recovers transparency: the result looks like `onBlack` on a black ground and like `onWhite` on a white one.
Pixels PixelsFromGrounds(const Pixels& onBlack, const Pixels& onWhite);
