#include "ftp/data/transfer_buffer.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>

#include "platform/clock.h"
#include "support/recording_session_view.h"

namespace {

constexpr std::size_t kMebibyte = std::size_t{1} << 20;

TEST(TransferBuffer, PiecesOfOnePacketLieSideBySide) {
    TransferBuffer buffer(2048);
    ASSERT_EQ(buffer.pieces().size(), 32u);
    EXPECT_EQ(buffer.size(), 32u * 2048u);
    for (std::size_t number = 0; number < buffer.pieces().size(); ++number) {
        EXPECT_EQ(buffer.pieces()[number].data, buffer.data() + number * 2048);
        EXPECT_EQ(buffer.pieces()[number].size, 2048u);
    }
}

TEST(TransferBuffer, EveryPacketSizeHasAPieceAndABound) {
    EXPECT_EQ(TransferBuffer(0).size(), 32u);
    EXPECT_EQ(TransferBuffer(1).size(), 32u);
    EXPECT_EQ(TransferBuffer(64 * 1024).pieces().size(), 4u);
    EXPECT_EQ(TransferBuffer(kMebibyte).pieces().size(), 1u);
    EXPECT_EQ(TransferBuffer(kMebibyte).size(), kMebibyte);
    EXPECT_EQ(TransferBuffer(UINT32_MAX).size(), 16 * kMebibyte);
}

TEST(TransferProgressMeter, TellsTheFirstMoveAndTheEnd) {
    RecordingSessionView view;
    TransferProgressMeter meter(true, 10);
    meter.Moved(3);
    meter.Finished(10);
    ASSERT_EQ(view.Progress().size(), 2u);
    EXPECT_EQ(view.Progress()[0].done, 3u);
    EXPECT_EQ(view.Progress()[1].done, 10u);
    EXPECT_EQ(view.Progress()[1].total, 10u);
}

TEST(TransferProgressMeter, TellsAtMostTwentyTimesASecond) {
    RecordingSessionView view;
    TransferProgressMeter meter(true, 100'000);
    const std::uint64_t startedAt = platform::Microseconds();
    for (std::uint64_t done = 1; done <= 100'000; ++done) meter.Moved(done);
    const std::uint64_t elapsed = platform::Microseconds() - startedAt;
    EXPECT_LE(view.Progress().size(), elapsed / 50'000 + 2);
}

TEST(TransferProgressMeter, TellsNothingWhereNothingIsShown) {
    RecordingSessionView view;
    TransferProgressMeter meter(false, 10);
    meter.Moved(3);
    meter.Finished(10);
    EXPECT_TRUE(view.Progress().empty());
}

}  // namespace
