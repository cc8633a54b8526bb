#include "transfer/disk_space.h"

#include <gtest/gtest.h>

#include <cstdint>

#include "ftp/worker/result_codes.h"
#include "support/recording_view.h"

namespace {

// A drive with 5 GiB free and clusters of 4 KiB while it lives.
class DriveWithFiveGigabytes {
  public:
    DriveWithFiveGigabytes() {
        SetDiskSpaceSource([](const char*, platform::DiskSpace& space) {
            space = {5ull << 30, 512, 8, (5u << 20) / 4};
            return true;
        });
    }
    ~DriveWithFiveGigabytes() { SetDiskSpaceSource(nullptr); }
};

TEST(DiskSpace, FiveGigabytesFreeAreReportedAsOne) {
    const DriveWithFiveGigabytes drive;
    EXPECT_EQ(1u << 30, GetFreeSpaceForCurrentDrive());
    EXPECT_EQ(1u << 30, GetFreeSpaceForDrive('C'));
}

TEST(DiskSpace, FitIsDecidedInSixtyFourBits) {
    const DriveWithFiveGigabytes drive;
    RecordingView view;
    EXPECT_EQ(FTP_COMPLETE, FitFileOnLocalDrive("two gigabytes", 2ull << 30));
    EXPECT_EQ(FTP_COMPLETE, FitFileOnLocalDrive("five", 5ull << 30));
    EXPECT_EQ(0, FitFileOnLocalDrive("more", (5ull << 30) + 1));
    ASSERT_EQ(1u, view.Boxes().size());
    EXPECT_EQ("more is larger in size (5368709121) than the current drive's available space (1073741824).",
              view.Boxes()[0].text);
}

TEST(DiskSpace, DriveThatDoesNotTellItsSpaceIsTried) {
    SetDiskSpaceSource([](const char*, platform::DiskSpace&) { return false; });
    EXPECT_EQ(0u, GetFreeSpaceForCurrentDrive());
    EXPECT_EQ(FTP_COMPLETE, FitFileOnLocalDrive("any", 1ull << 40));
    SetDiskSpaceSource(nullptr);
}

#ifdef _WIN32
TEST(DiskSpace, MissingDriveHasNone) {
    EXPECT_EQ(0u, GetFreeSpaceForDrive('?'));
    EXPECT_NE(0u, GetFreeSpaceForDrive('C'));
}
#endif

TEST(DiskSpace, FileThatFitsIsNotAskedFor) {
    RecordingView view;
    EXPECT_EQ(FTP_COMPLETE, FitFileOnLocalDrive("small", 1));
    EXPECT_TRUE(view.Boxes().empty());
}

TEST(DiskSpace, FileTooLargeIsToldAndRefusedWhateverTheAnswer) {
    RecordingView view;
    for (const BoxAnswer answer : {BoxAnswer::Ok, BoxAnswer::Cancel}) {
        view.Clear();
        view.AnswerNext(answer);
        EXPECT_EQ(0, FitFileOnLocalDrive("huge.iso", std::uint64_t{1} << 60));
        ASSERT_EQ(1u, view.Boxes().size());
        EXPECT_EQ(BoxButtons::OkCancel, view.Boxes().front().buttons);
        EXPECT_EQ(0u, view.Boxes().front().text.find("huge.iso is larger in size (1152921504606846976) than the "
                                                     "current drive's available space ("));
    }
}

}  // namespace
