// Scaling of toolbar pictures.
#include "ui/screen/image_scale.h"

#include <gtest/gtest.h>

namespace {

TEST(ScaledSquare, TheSameSizeIsTheSamePicture) {
    const Pixels pixels = {0xFF102030, 0x80FF0000, 0x00000000, 0xFFFFFFFF};
    EXPECT_EQ(ScaledSquare(pixels, 2, 2), pixels);
}

TEST(ScaledSquare, AnEvenColourStaysEven) {
    for (const std::uint32_t pixel : ScaledSquare(Pixels(24 * 24, 0xFF336699), 24, 20)) EXPECT_EQ(pixel, 0xFF336699u);
    for (const std::uint32_t pixel : ScaledSquare(Pixels(24 * 24, 0xFF336699), 24, 32)) EXPECT_EQ(pixel, 0xFF336699u);
}

TEST(ScaledSquare, HalfTheSizeIsTheMeanOfFour) {
    const Pixels pixels = {0xFF000000, 0xFF0000FF, 0xFF0000FF, 0xFF000000};
    EXPECT_EQ(ScaledSquare(pixels, 2, 1), Pixels{0xFF000080});
}

TEST(ScaledSquare, TransparentPixelsGiveNoColour) {
    const Pixels pixels = {0xFFFF0000, 0x0000FF00, 0x0000FF00, 0x0000FF00};
    EXPECT_EQ(ScaledSquare(pixels, 2, 1), Pixels{0x40FF0000});
}

TEST(ScaledSquare, EnlargingBlendsNeighbours) {
    const Pixels pixels = {0xFF000000, 0xFFFFFFFF, 0xFF000000, 0xFFFFFFFF};
    const Pixels scaled = ScaledSquare(pixels, 2, 4);
    ASSERT_EQ(scaled.size(), 16u);
    EXPECT_EQ(scaled[0], 0xFF000000u);
    EXPECT_GT(scaled[1] & 0xFF, 0u);
    EXPECT_LT(scaled[1] & 0xFF, scaled[2] & 0xFF);
    EXPECT_EQ(scaled[3], 0xFFFFFFFFu);
}

TEST(ScaledSquare, APictureOfAnotherSizeGivesNone) {
    EXPECT_TRUE(ScaledSquare(Pixels(5), 2, 4).empty());
    EXPECT_TRUE(ScaledSquare({}, 0, 4).empty());
}

TEST(PixelsFromGrounds, OpaqueTransparentAndHalf) {
    const Pixels onBlack = {0x00336699, 0x00000000, 0x00800000};
    const Pixels onWhite = {0x00336699, 0x00FFFFFF, 0x00FF7F7F};
    EXPECT_EQ(PixelsFromGrounds(onBlack, onWhite), (Pixels{0xFF336699, 0x00000000, 0x80FF0000}));
}

}  // namespace
