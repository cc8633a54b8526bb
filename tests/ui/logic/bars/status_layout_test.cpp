// Widths of the status bar's parts.
#include "ui/bars/status_layout.h"

#include <gtest/gtest.h>

namespace {

TEST(StatusLayout, TheMessageTakesWhatTheOthersLeave) {
    const auto edges = StatusPartEdges(1000, 96);
    const std::array<int, kStatusParts> expected = {312, 378, 434, 510, 572, 782, -1};
    EXPECT_EQ(edges, expected);
}

TEST(StatusLayout, InANarrowWindowTheFolderGivesWayFirst) {
    const auto edges = StatusPartEdges(800, 96);
    EXPECT_EQ(edges[0], 160);
    EXPECT_EQ(edges[5] - edges[4], 162);
    EXPECT_EQ(800 - edges[5], 218);
}

TEST(StatusLayout, ThenTheSelectionThenTheMessage) {
    auto edges = StatusPartEdges(700, 96);
    EXPECT_EQ(edges[5] - edges[4], 90);
    EXPECT_EQ(700 - edges[5], 190);
    EXPECT_EQ(edges[0], 160);
    edges = StatusPartEdges(620, 96);
    EXPECT_EQ(edges[0], 140);
    EXPECT_EQ(620 - edges[5], 130);
}

TEST(StatusLayout, NoPartBecomesSmallerThanItsLeast) {
    const auto edges = StatusPartEdges(300, 96);
    EXPECT_EQ(edges[0], 100);
    for (std::size_t part = 1; part + 1 < edges.size(); ++part) EXPECT_GT(edges[part], edges[part - 1]);
}

TEST(StatusLayout, WidthsFollowTheResolution) {
    const auto edges = StatusPartEdges(2000, 192);
    const std::array<int, kStatusParts> expected = {624, 756, 868, 1020, 1144, 1564, -1};
    EXPECT_EQ(edges, expected);
}

}  // namespace
