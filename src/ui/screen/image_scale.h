// Pictures scaled to another size: pixels as 0xAARRGGBB, colours not multiplied with their alpha. Pure.
#pragma once

#include <cstdint>
#include <vector>

using Pixels = std::vector<std::uint32_t>;  // of a square, row by row

// `from` and `to`: the sides. Smooth; what is transparent gives no colour to what is not.
Pixels ScaledSquare(const Pixels& pixels, int from, int to);
// The picture that looks like `onBlack` on a black ground and like `onWhite` on a white one.
Pixels PixelsFromGrounds(const Pixels& onBlack, const Pixels& onWhite);
