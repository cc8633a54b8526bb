#include "ftp/data/data_copy.h"

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <string>

#include "ftp/data/data_accept.h"
#include "ftp/data/data_connection.h"
#include "ftp/data/data_fixture.h"
#include "platform/clock.h"
#include "platform/files.h"
#include "platform/system.h"
#ifndef _WIN32
#include "host/fault_injection.h"
#endif

namespace {

TEST(RetrieveFile, ReceivesByteForByte) {
    Connected c;
    for (const std::size_t size : {0u, 1u, 2047u, 2048u, 2049u, 65536u, 1'000'003u}) {
        c.h.server.AddFile("/f", Pattern(size));
        ASSERT_EQ(c.Retrieve("RETR f"), FTP_COMPLETE) << size;
        ASSERT_EQ(SessionHarness::LocalBytes(c.file), Pattern(size)) << size;
    }
    EXPECT_TRUE(c.NoTransferSockets());
}

TEST(RetrieveFile, TextArrivesUnchanged) {
    Connected c;
    c.h.server.AddFile("/t", "a\r\nb\nc\r");
    EXPECT_EQ(c.Retrieve("RETR t", 'A'), FTP_COMPLETE);
    EXPECT_EQ(SessionHarness::LocalBytes(c.file), "a\r\nb\nc\r");
}

TEST(RetrieveFile, AShorterFileReplacesALongerOneWhole) {
    Connected c;
    c.h.server.AddFile("/long", Pattern(5000));
    c.h.server.AddFile("/short", "s");
    c.Retrieve("RETR long");
    c.Retrieve("RETR short");
    EXPECT_EQ(SessionHarness::LocalBytes(c.file), "s");
}

TEST(RetrieveFile, EveryPacketSizeWorks) {
    Connected c;
    c.h.server.AddFile("/f", Pattern(300'000));
    for (const std::uint32_t size : {1u, 512u, 2048u, 8096u, 1u << 20, 0u}) {
        gZarn.port.packetSize = size;
        ASSERT_EQ(c.Retrieve("RETR f"), FTP_COMPLETE) << size;
        ASSERT_EQ(SessionHarness::LocalBytes(c.file), Pattern(300'000)) << size;
    }
}

TEST(ReadMass, WithoutDataSocketReturnsMinusOneAndEmptiesTheReply) {
    Connected c;
    EXPECT_EQ(ReadMass(c.site, c.h.reply, c.file.c_str(), true), -1);
    EXPECT_STREQ(c.h.replyText, "");
}

TEST(RetrieveFile, PrintsItsStatisticsAndAddsToTheTotals) {
    Connected c;
    c.h.server.AddFile("/small", std::string(500, 's'));
    c.h.server.AddFile("/big", std::string(2048, 'b'));
    c.Retrieve("RETR small");
    EXPECT_TRUE(c.h.console.HasLine("Received 500 bytes in 1 sec, 4000 bps, transfer succeeded"));
    EXPECT_EQ(gSession.totalTransfers, 0u);
    c.Retrieve("RETR big");
    EXPECT_TRUE(c.h.console.HasLine("2048 bytes received in 1.00 seconds, (2.00Kbytes/sec), transfer succeeded"));
    EXPECT_EQ(gSession.totalTransfers, 1u);
    EXPECT_EQ(gSession.totalBytes, 2048u);
    EXPECT_EQ(gSession.totalSeconds, 1u);
}

TEST(DlgRetrieveFile, ShowsProgressAndSetsTheNodesResult) {
    Connected c;
    c.h.server.AddFile("/f", Pattern(200'000));
    TransferNode node = Node("f", 200'000);
    EXPECT_EQ(DlgRetrieveFile(c.site, node, c.h.reply, "RETR f", c.file.c_str(), 'I', kNoAbort), FTP_COMPLETE);
    EXPECT_EQ(node.iRetCode, FTP_COMPLETE);
    const auto progress = c.h.view.Progress();
    ASSERT_FALSE(progress.empty());
    EXPECT_EQ(progress.back().done, 200'000u);
    EXPECT_EQ(progress.back().total, 200'000u);
}

TEST(DlgRetrieveFile, ProgressComesAtMostTwentyTimesASecond) {
    Connected c;
    gZarn.port.packetSize = 512;
    c.h.server.AddFile("/f", Pattern(3'000'000));
    TransferNode node = Node("f", 3'000'000);
    const std::uint64_t startedAt = platform::Microseconds();
    DlgRetrieveFile(c.site, node, c.h.reply, "RETR f", c.file.c_str(), 'I', kNoAbort);
    const std::uint64_t elapsed = platform::Microseconds() - startedAt;
    EXPECT_LE(c.h.view.Progress().size(), elapsed / 50'000 + 4);
}

TEST(DlgRetrieveFile, AShortFileSaysHowMuchArrived) {
    Connected c;
    c.h.server.On("RETR",
                  {Say("150 go\r\n"), OpenData(), DataBytes(Pattern(4000)), Hold(), ResetData(), Say("426 lost\r\n")});
    TransferNode node = Node("f", 10'000);
    int result = 0;
    {
        OtherThread retrieving(
            [&] { result = DlgRetrieveFile(c.site, node, c.h.reply, "RETR f", c.file.c_str(), 'I', kNoAbort); });
        ASSERT_TRUE(c.h.server.WaitUntilHeld());
        while (SessionHarness::LocalBytes(c.file).size() < 4000) {
        }
        c.h.server.Release();
    }
    EXPECT_EQ(result, 4);
    EXPECT_TRUE(c.h.console.HasLine("closed early: 4,000 of 10,000 bytes arrived."));
}

TEST(ReadMass, ReturnsTheBytesAndShowsNoProgress) {
    Connected c;
    c.h.server.AddFile("/f", Pattern(100'000));
    ASSERT_TRUE(c.OpenDataFor("RETR f"));
    EXPECT_EQ(ReadMass(c.site, c.h.reply, c.file.c_str(), true), 100'000);
    EXPECT_EQ(SessionHarness::LocalBytes(c.file), Pattern(100'000));
    EXPECT_TRUE(c.h.view.Progress().empty());
    EXPECT_EQ(c.CloseAndReadFinalReply(CloseHow::Receive), FTP_COMPLETE);
}

TEST(DlgReadMass, TellsHowItEndedAndShowsProgress) {
    Connected c;
    c.h.server.AddFile("/f", Pattern(100'000));
    ASSERT_TRUE(c.OpenDataFor("RETR f"));
    const CopyOutcome outcome = DlgReadMass(c.site, c.h.reply, c.file.c_str(), true, 100'000);
    EXPECT_EQ(outcome.bytes, 100'000);
    EXPECT_TRUE(outcome.reachedEnd);
    EXPECT_EQ(outcome.localError, 0u);
    EXPECT_STREQ(c.h.replyText, "");
    EXPECT_EQ(SessionHarness::LocalBytes(c.file), Pattern(100'000));
    ASSERT_FALSE(c.h.view.Progress().empty());
    EXPECT_EQ(c.h.view.Progress().back().done, 100'000u);
    EXPECT_EQ(c.h.view.Progress().back().total, 100'000u);
    EXPECT_EQ(c.CloseAndReadFinalReply(CloseHow::Receive), FTP_COMPLETE);
}

TEST(DlgReadMass, WithoutDataSocketNothingIsDone) {
    Connected c;
    const CopyOutcome outcome = DlgReadMass(c.site, c.h.reply, c.file.c_str(), true, 5);
    EXPECT_EQ(outcome.bytes, -1);
    EXPECT_FALSE(outcome.reachedEnd);
    EXPECT_TRUE(c.h.view.Progress().empty());
    platform::FileInfo info;
    EXPECT_FALSE(platform::GetFileInfo(c.file.c_str(), info));
}

TEST(ReceiveFile, ALocalFileThatCannotBeMadeIsALocalError) {
    Connected c;
    c.h.server.AddFile("/f", Pattern(100));
    ASSERT_TRUE(c.OpenDataFor("RETR f"));
    const std::string nowhere = c.h.LocalPath("no-such-folder") + platform::kPathSeparator + "x";
    const CopyOutcome outcome = ReceiveFile(c.site, nowhere.c_str(), false, 0);
    EXPECT_EQ(outcome.bytes, -1);
    EXPECT_NE(outcome.localError, 0u);
    EXPECT_EQ(outcome.socketError, 0);
    c.CloseAndReadFinalReply(CloseHow::Receive);
    EXPECT_TRUE(c.InStep());
}

#ifndef _WIN32
TEST(ReceiveFile, AFullDiskEndsTheCopyAndIsNoSocketError) {
    Connected c;
    c.h.server.AddFile("/f", Pattern(1000));
    ASSERT_TRUE(c.OpenDataFor("RETR f"));
    const fault_injection::Scope scope(fault_injection::Call::WriteFile, 1, platform::kErrorDiskFull);
    const CopyOutcome outcome = ReceiveFile(c.site, c.file.c_str(), false, 0);
    EXPECT_EQ(outcome.localError, platform::kErrorDiskFull);
    EXPECT_EQ(outcome.socketError, 0);
    EXPECT_EQ(outcome.bytes, 0);
    EXPECT_FALSE(outcome.reachedEnd);
    EXPECT_EQ(gSession.totalTransfers, 0u);
    c.CloseAndReadFinalReply(CloseHow::Receive);
    EXPECT_TRUE(c.InStep());
}
#endif

}  // namespace
