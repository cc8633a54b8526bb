#include "ui/screen/image_scale.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>

namespace {

constexpr std::array<int, 3> kColours = {16, 8, 0};  // shifts of red, green, blue
constexpr int kAlpha = 24;

std::size_t Index(int row, int side) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(side);
}

double Channel(std::uint32_t pixel, int shift) {
    return static_cast<double>(pixel >> shift & 0xFF);
}

std::uint32_t ChannelBits(double value, int shift) {
    return static_cast<std::uint32_t>(std::clamp(std::lround(value), 0L, 255L)) << shift;
}

// A range of the source's rows or columns.
struct Span {
    double begin, end;
};

// The rows or columns that one of the target's is made from; at least one whole pixel, so that enlarging blends
// neighbours instead of repeating them.
Span SourceSpan(int index, double step) {
    const double middle = (index + 0.5) * step;
    const double half = std::max(step, 1.0) / 2;
    return {middle - half, middle + half};
}

double Share(const Span& span, int index) {
    return std::max(0.0, std::min(span.end, index + 1.0) - std::max(span.begin, static_cast<double>(index)));
}

std::uint32_t BlendedPixel(const Pixels& pixels, int side, const Span& columns, const Span& rows) {
    double weight = 0;
    double alpha = 0;
    std::array<double, 3> colours{};
    for (int y = std::max(0, static_cast<int>(std::floor(rows.begin))); y < side && y < rows.end; ++y) {
        for (int x = std::max(0, static_cast<int>(std::floor(columns.begin))); x < side && x < columns.end; ++x) {
            const std::uint32_t pixel = pixels[Index(y, side) + Index(x, 1)];
            const double share = Share(columns, x) * Share(rows, y);
            weight += share;
            alpha += share * Channel(pixel, kAlpha);
            for (std::size_t i = 0; i < colours.size(); ++i) {
                colours[i] += share * Channel(pixel, kAlpha) * Channel(pixel, kColours[i]);
            }
        }
    }
    if (weight <= 0 || alpha <= 0) return 0;
    std::uint32_t result = ChannelBits(alpha / weight, kAlpha);
    for (std::size_t i = 0; i < colours.size(); ++i) result |= ChannelBits(colours[i] / alpha, kColours[i]);
    return result;
}

}  // namespace

Pixels ScaledSquare(const Pixels& pixels, int from, int to) {
    if (from <= 0 || to <= 0 || pixels.size() != Index(from, from)) return {};
    Pixels scaled;
    scaled.reserve(Index(to, to));
    const double step = static_cast<double>(from) / to;
    for (int y = 0; y < to; ++y) {
        for (int x = 0; x < to; ++x)
            scaled.push_back(BlendedPixel(pixels, from, SourceSpan(x, step), SourceSpan(y, step)));
    }
    return scaled;
}

Pixels PixelsFromGrounds(const Pixels& onBlack, const Pixels& onWhite) {
    Pixels pixels(std::min(onBlack.size(), onWhite.size()));
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        // The ground shows through all colours alike; green has the finest steps.
        const double through = Channel(onWhite[i], 8) - Channel(onBlack[i], 8);
        const double alpha = 255 - std::clamp(through, 0.0, 255.0);
        if (alpha <= 0) continue;
        pixels[i] = ChannelBits(alpha, kAlpha);
        for (const int shift : kColours) pixels[i] |= ChannelBits(Channel(onBlack[i], shift) * 255 / alpha, shift);
    }
    return pixels;
}
