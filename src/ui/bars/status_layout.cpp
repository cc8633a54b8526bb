#include "ui/bars/status_layout.h"

#include <algorithm>

namespace {

struct PartWidth {
    int preferred;  // pixels at 96 dpi; of the message: its width before other parts shrink
    int smallest;   // the part never becomes narrower
};
// Message, links, bell, unique names, transfer type, local folder, selection.
constexpr std::array<PartWidth, kStatusParts> kWidths = {
    {{160, 100}, {90, 90}, {56, 56}, {102, 102}, {62, 62}, {210, 80}, {218, 130}}};
// In a window too narrow for all: the local folder, then the selection, then the message.
constexpr std::array<std::size_t, 3> kShrinkOrder = {5, 6, 0};
constexpr int kUsualDpi = 96;

}  // namespace

std::array<int, kStatusParts> StatusPartEdges(int width, int dpi) {
    const auto scaled = [dpi](int pixels) { return (pixels * dpi + kUsualDpi / 2) / kUsualDpi; };
    std::array<int, kStatusParts> widths{};
    int missing = -width;
    for (std::size_t part = 0; part < kWidths.size(); ++part) {
        widths[part] = scaled(kWidths[part].preferred);
        missing += widths[part];
    }
    for (const std::size_t part : kShrinkOrder) {
        const int taken = std::clamp(widths[part] - scaled(kWidths[part].smallest), 0, std::max(missing, 0));
        widths[part] -= taken;
        missing -= taken;
    }
    widths[0] += std::max(-missing, 0);
    std::array<int, kStatusParts> edges{};
    int edge = 0;
    for (std::size_t part = 0; part < widths.size(); ++part) edges[part] = edge += widths[part];
    edges.back() = -1;
    return edges;
}
