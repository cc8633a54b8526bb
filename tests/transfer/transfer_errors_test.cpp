#include "transfer/transfer_errors.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "platform/files.h"
#include "platform/system.h"
#include "support/recording_view.h"

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

}  // namespace
