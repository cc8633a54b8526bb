#include "transfer/transfer_progress.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <vector>

#include "support/recording_transfer_view.h"
#include "support/session_harness.h"

namespace {

TransferProgress Read() {
    TransferProgress progress;
    ReadTransferProgress(progress);
    return progress;
}

TEST(TransferProgress, IsReadOnlyWhenItHasChanged) {
    ResetTransferProgress();
    TransferProgress seen;
    ASSERT_TRUE(ReadTransferProgress(seen));
    EXPECT_FALSE(ReadTransferProgress(seen));
    SetProgressBar(kBarHalf);
    ASSERT_TRUE(ReadTransferProgress(seen));
    EXPECT_EQ(kBarHalf, seen.bar);
    EXPECT_FALSE(ReadTransferProgress(seen));
}

TEST(TransferProgress, HoldsTheLastOfEachField) {
    ResetTransferProgress();
    SetDlgTransferingText("first");
    SetDlgTransferingText("second");
    SetDlgFromText("Site", "/pub");
    SetDlgSendToText("", "C:\\in");
    ShowMode('A');
    ShowTransferProgress(5, 10);
    RefreshCountersText({2, 3, 0, 0});
    const TransferProgress progress = Read();
    EXPECT_EQ("Transfering: second", progress.item);
    EXPECT_EQ("Site : /pub", progress.source);
    EXPECT_EQ("C:\\in", progress.destination);
    EXPECT_EQ("5 of 10", progress.bytes);
    EXPECT_EQ("3 Files Transfered,  2 Folders Created", progress.counters);
    EXPECT_EQ('A', progress.mode);
    EXPECT_EQ(kBarHalf, progress.bar);
}

TEST(TransferProgress, ANewTransferBeginsWithNothing) {
    SetDlgTransferingText("old");
    ShowTransferProgress(5, 10);
    TransferProgress seen = Read();
    ResetTransferProgress();
    ASSERT_TRUE(ReadTransferProgress(seen)) << "a reader of the old record sees the change";
    EXPECT_EQ("", seen.item);
    EXPECT_EQ("", seen.bytes);
    EXPECT_EQ(0, seen.bar);
    EXPECT_EQ('\0', seen.mode);
}

// Bytes and bar are published together, so a reader never sees one without the other.
TEST(TransferProgress, AReaderSeesWholePublicationsWhileTheWorkerWrites) {
    constexpr std::uint64_t kTotal = 1000;
    constexpr int kRounds = 20;
    ResetTransferProgress();
    std::atomic<bool> done{false};
    OtherThread worker([&done] {
        for (int round = 0; round < kRounds; ++round) {
            SetDlgTransferingText("a name that is too long to be stored within the text object itself");
            for (std::uint64_t bytes = 1; bytes <= kTotal; ++bytes) ShowTransferProgress(bytes, kTotal);
        }
        done = true;
    });
    TransferProgress seen;
    int reads = 0;
    bool last = false;
    while (!last) {
        last = done;
        if (!ReadTransferProgress(seen) || seen.bytes.empty()) continue;
        ++reads;
        ASSERT_EQ(std::to_string(seen.bar) + " of 1000", seen.bytes);
    }
    worker.Join();
    EXPECT_GT(reads, 0);
    EXPECT_EQ("1000 of 1000", Read().bytes);
}

TEST(CountersText, FilesAndFolders) {
    EXPECT_EQ("3 Files Transfered,  2 Folders Created", CountersText(3, 2));
    EXPECT_EQ("3 Files Transfered", CountersText(3, 0));
    EXPECT_EQ("2 Folders Created", CountersText(0, 2));
    EXPECT_EQ("", CountersText(0, 0));
}

TEST(ProgressTexts, AreExpandedAndHarmless) {
    RecordingTransferView view;
    SetDlgTransferingText("a%s\x1B.txt");
    SetDlgCreatingText("folder");
    SetDlgFromText("Site", "/pub");
    SetDlgFromText("", "/pub");
    SetDlgSendToText(nullptr, "C:\\in");
    EXPECT_EQ((std::vector<std::string>{"Transfering: a%s?.txt", "Creating Directory: folder "}), view.items);
    EXPECT_EQ((std::vector<std::string>{"Site : /pub", "/pub"}), view.sources);
    EXPECT_EQ((std::vector<std::string>{"C:\\in"}), view.destinations);
}

TEST(ProgressTexts, BytesGoBeyondFourGigabytes) {
    RecordingTransferView view;
    SetByteCountText(5'000'000'000, 6'000'000'000);
    SetByteCountText(5'000'000'000, 0);
    EXPECT_EQ((std::vector<std::string>{"5000000000 of 6000000000", "5000000000"}), view.bytes);
}

TEST(ProgressTexts, BarGoesFromNothingToAThousand) {
    RecordingTransferView view;
    ShowTransferProgress(0, 3);
    ShowTransferProgress(1, 3);
    ShowTransferProgress(3, 3);
    ShowTransferProgress(9, 3);
    ShowTransferProgress(4'000'000'000'000, 8'000'000'000'000);
    ShowTransferProgress(7, 0);
    EXPECT_EQ((std::vector<int>{0, 333, 1000, 500}), view.bars);
}

}  // namespace
