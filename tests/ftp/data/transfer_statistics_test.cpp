#include "ftp/data/transfer_statistics.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "support/session_harness.h"

namespace {

TEST(ReceiveStatistics, 500BytesIn300MillisecondsAre4000BitsPerSecond) {
    const TransferStatistics s = ReceiveStatistics(500, 300, true);
    EXPECT_EQ(s.messageId, 6065u);
    EXPECT_EQ(s.seconds, 1u);
    EXPECT_EQ(s.bitsPerSecond, 4000u);
}

TEST(ReceiveStatistics, SecondsAreTruncatedButAtLeastOne) {
    EXPECT_EQ(ReceiveStatistics(1, 0, true).seconds, 1u);
    EXPECT_EQ(ReceiveStatistics(1, 1000, true).seconds, 1u);
    EXPECT_EQ(ReceiveStatistics(1, 1999, true).seconds, 1u);
    EXPECT_EQ(ReceiveStatistics(1, 2000, true).seconds, 2u);
}

TEST(ReceiveStatistics, The1025thByteChangesTheMessage) {
    EXPECT_EQ(ReceiveStatistics(1024, 1, true).messageId, 6065u);
    EXPECT_EQ(ReceiveStatistics(1025, 1, true).messageId, 7025u);
    EXPECT_EQ(ReceiveStatistics(1024, 1, false).messageId, 6064u);
    EXPECT_EQ(ReceiveStatistics(1025, 1, false).messageId, 6064u);
}

TEST(SendStatistics, UseTheirOwnMessages) {
    EXPECT_EQ(SendStatistics(1024, 1, true).messageId, 6045u);
    EXPECT_EQ(SendStatistics(1024, 1, false).messageId, 6044u);
    EXPECT_EQ(SendStatistics(1025, 1, true).messageId, 6043u);
    EXPECT_EQ(SendStatistics(1025, 1, false).messageId, 6042u);
}

TEST(ReceiveStatistics, FilesAbove4GigabytesAreCountedWhole) {
    const std::uint64_t bytes = 5'000'000'000;
    EXPECT_EQ(ReceiveStatistics(bytes, 10'000, true).bitsPerSecond, 4'000'000'000u);
    SessionHarness h;
    PrintStatistics(ReceiveStatistics(bytes, 10'000, true), bytes);
    EXPECT_TRUE(h.console.HasLine("5000000000 bytes received in 10.00 seconds, (488281.25Kbytes/sec)"));
}

TEST(PrintStatistics, EachMessageHasItsNumbers) {
    SessionHarness h;
    PrintStatistics(ReceiveStatistics(500, 300, true), 500);
    PrintStatistics(ReceiveStatistics(2048, 2000, false), 2048);
    PrintStatistics(ReceiveStatistics(2048, 2000, true), 2048);
    PrintStatistics(SendStatistics(500, 300, true), 500);
    PrintStatistics(SendStatistics(500, 300, false), 500);
    PrintStatistics(SendStatistics(2048, 2000, true), 2048);
    PrintStatistics(SendStatistics(2048, 2000, false), 2048);
    for (const char* line : {"Received 500 bytes in 1 sec, 4000 bps, transfer succeeded",
                             "Received 2048 bytes in 2 sec, 8192 bps, transfer failed",
                             "2048 bytes received in 2.00 seconds, (1.00Kbytes/sec), transfer succeeded",
                             "Transmitted 500 bytes in 1 sec, 4000 bps, transfer succeeded",
                             "Transmitted 500 bytes in 1 sec, 4000 bps, transfer failed",
                             "2048 bytes transmitted in 2.00 seconds, (1.00Kbytes/sec), transfer succeeded",
                             "2048 bytes transmitted in 2.00 seconds, (1.00Kbytes/sec), transfer failed"}) {
        EXPECT_EQ(h.console.CountLines(line), 1) << line;
    }
}

}  // namespace
