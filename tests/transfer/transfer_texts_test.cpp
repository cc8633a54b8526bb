#include <gtest/gtest.h>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "ftp/worker/result_codes.h"
#include "platform/files.h"
#include "platform/system.h"
#include "support/local_folder.h"
#include "support/recording_transfer_view.h"
#include "support/recording_view.h"
#include "transfer/disk_space.h"
#include "transfer/transfer_errors.h"
#include "transfer/transfer_progress.h"

namespace {

class TransferError : public testing::Test {
  protected:
    std::string TextOf(int option, std::uint32_t error, const char* reply, const char* name = "file") {
        view.Clear();
        answer = TransferDlgError(name, option, error, reply);
        return view.Boxes().empty() ? "(nothing)" : view.Boxes().front().text;
    }
    RecordingView view;
    BoxAnswer answer = BoxAnswer::None;
};

TEST_F(TransferError, SystemErrorsStandInTheirTexts) {
    const std::string denied = platform::SystemErrorText(5);
    ASSERT_FALSE(denied.empty());
    EXPECT_EQ("Unable to set local directory <file>.\n(" + denied + ")", TextOf(1, 5, nullptr));
    EXPECT_EQ("An error occured while trying to create file.\n (" + denied + " )", TextOf(2, 5, nullptr));
    EXPECT_EQ("Unable to create a local file <file>.\n(" + denied + ")", TextOf(3, 5, nullptr));
    EXPECT_EQ("An error occured while trying to transfer\n    <file>\n\n    (" + denied + ")", TextOf(9, 5, nullptr));
}

TEST_F(TransferError, FullDriveIsNamedByItsFirstTwoCharacters) {
    EXPECT_EQ("There is not enough free space on drive (" + platform::CurrentFolder().substr(0, 2) +
                  ") to recieve  \n       file.\n    Please free up some diskspace and try again.",
              TextOf(4, 112, nullptr));
}

TEST_F(TransferError, RepliesStandWithoutTheirCodeAndOnceWhole) {
    const char* reply = "550 No such file.";
    EXPECT_EQ("An error occured while trying to set the remote directory to file.\n (No such file. )",
              TextOf(5, 0, reply));
    EXPECT_EQ("An error occured while trying to create the remote directory\n    <file>\n\n    (550 No such file.)",
              TextOf(6, 0, reply));
    EXPECT_EQ("An error occured while trying to transfer\n    <file>\n\n    (No such file.)", TextOf(7, 0, reply));
    EXPECT_EQ("A network error occured while tranasfering\n    <file>\n\n    (No such file.)", TextOf(8, 0, reply));
}

TEST_F(TransferError, ReservedNamesAreListedWithOnlyAnOkButton) {
    const std::string text = TextOf(10, 0, nullptr, "con.txt");
    EXPECT_NE(std::string::npos, text.find("<con.txt>"));
    EXPECT_NE(std::string::npos, text.find("Files beginning with:"));
    EXPECT_EQ(BoxButtons::Ok, view.Boxes().front().buttons);
}

TEST_F(TransferError, BoxHasItsCaptionIconAndButtons) {
    view.AnswerNext(BoxAnswer::Retry);
    TextOf(7, 0, "550 x");
    ASSERT_EQ(1u, view.Boxes().size());
    EXPECT_EQ("Zarn Transfer Error", view.Boxes().front().caption);
    EXPECT_EQ(BoxIcon::Exclamation, view.Boxes().front().icon);
    EXPECT_EQ(BoxButtons::AbortRetryIgnore, view.Boxes().front().buttons);
}

TEST_F(TransferError, AnswerIsTheButtonChosen) {
    for (const BoxAnswer chosen : {BoxAnswer::Abort, BoxAnswer::Retry, BoxAnswer::Ignore}) {
        view.Clear();
        view.AnswerNext(chosen);
        EXPECT_EQ(chosen, TransferDlgError("file", 7, 0, "550 x"));
    }
}

TEST_F(TransferError, NothingIsShownWithoutAReply) {
    for (const char* reply : {"", "55", "550", "550 ", "5500 x", "abc def", "550x long enough"}) {
        EXPECT_EQ("(nothing)", TextOf(7, 0, reply)) << reply;
        EXPECT_EQ(BoxAnswer::None, answer);
    }
    EXPECT_EQ("(nothing)", TextOf(7, 0, nullptr));
    EXPECT_NE("(nothing)", TextOf(7, 0, "550-x"));
}

TEST_F(TransferError, ErrorZeroIsTheLastSystemErrorAndNoneShowsNothing) {
    platform::SetLastSystemError(112);
    EXPECT_NE(std::string::npos, TextOf(3, 0, nullptr).find(platform::SystemErrorText(112)));
    view.Clear();
    platform::SetLastSystemError(0);
    EXPECT_EQ(BoxAnswer::None, TransferDlgError("file", 3, 0, nullptr));
    EXPECT_TRUE(view.Boxes().empty());
}

TEST_F(TransferError, UnknownOptionsShowNothing) {
    for (const int option : {-1, 0, 11, 1000}) EXPECT_EQ("(nothing)", TextOf(option, 5, "550 x")) << option;
}

TEST_F(TransferError, NamesAreNeverFormatsAndShowNoControlCharacters) {
    EXPECT_NE(std::string::npos, TextOf(7, 0, "550 x", "%n%s\x1B").find("<%n%s?>"));
    EXPECT_NE(std::string::npos, TextOf(7, 0, "550 100%s%n").find("(100%s%n)"));
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
