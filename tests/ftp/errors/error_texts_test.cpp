#include "ftp/errors/error_texts.h"

#include <gtest/gtest.h>

#include "foundation/trace.h"
#include "ftp/errors/server_error.h"
#include "support/session_harness.h"

namespace {

TEST(GetWsaErrorText, KnowsTheTable) {
    EXPECT_STREQ(GetWsaErrorText(10061).c_str(), "Connection refused");
    EXPECT_STREQ(GetWsaErrorText(10063).c_str(), "Name too long");  // first row
    EXPECT_STREQ(GetWsaErrorText(11001).c_str(), "Host not found");
    EXPECT_STREQ(GetWsaErrorText(10059).c_str(), "Too many references");  // last row
}

TEST(GetWsaErrorText, AnUnknownErrorHasNone) {
    EXPECT_FALSE(GetWsaErrorText(10099));
    EXPECT_FALSE(GetWsaErrorText(0));
}

TEST(DbgPrintSocketError, NamesCallAndError) {
    SessionHarness h;
    gTrace.debug = true;
    DbgPrintSocketError("Caller", "connect", 0x1f, 10061);
    EXPECT_TRUE(
        h.console.HasLine("Caller() A Socket error has occured. connect(1f). Error is 10061:Connection refused."));
    DbgPrintSocketError("Caller", "connect", 0x1f, 10099);
    EXPECT_TRUE(h.console.HasLine("Error is 10099:Bad Error String."));
}

TEST(OperationSentence, EveryOperationHasItsOwn) {
    EXPECT_EQ(OperationSentence(650), 7288u);
    EXPECT_EQ(OperationSentence(652), 7194u);
    EXPECT_EQ(OperationSentence(654), 7289u);
    EXPECT_EQ(OperationSentence(655), 7284u);
    EXPECT_EQ(OperationSentence(660), 7284u);
    EXPECT_EQ(OperationSentence(656), 7193u);
    EXPECT_EQ(OperationSentence(657), 7287u);
    EXPECT_EQ(OperationSentence(659), 7283u);
    EXPECT_EQ(OperationSentence(661), 7285u);
    EXPECT_EQ(OperationSentence(662), 7204u);
    EXPECT_EQ(OperationSentence(651), 7278u);
    EXPECT_EQ(OperationSentence(999), 7278u);
}

TEST(SetSrvErrorDlgItems, SplitsAReply) {
    const ServerErrorFields fields = SetSrvErrorDlgItems(kOperationChangeDirectory, "550 gone: No such file.");
    EXPECT_EQ(fields.code, 550);
    EXPECT_EQ(fields.returned, " gone: No such file.");
    EXPECT_EQ(fields.definition, "Requested action not taken:  file unavailable (e.g.  file busy)");
    EXPECT_EQ(fields.task, "An error occured while trying to change the remote directory.");
}

TEST(SetSrvErrorDlgItems, ATextWithoutCodeIsShownWhole) {
    const ServerErrorFields fields = SetSrvErrorDlgItems(0, "Connection reset by peer");
    EXPECT_EQ(fields.code, 0);
    EXPECT_EQ(fields.returned, "Connection reset by peer");
    EXPECT_EQ(fields.definition, "");
    EXPECT_EQ(fields.task, "An error occured while excecuting a PORT command.");
}

TEST(SetSrvErrorDlgItems, ANewDirectoryIsNamed) {
    NameErrorSubject("/pub/new");
    const ServerErrorFields fields = SetSrvErrorDlgItems(kOperationMakeDirectory, "553 no");
    EXPECT_EQ(fields.task,
              "An error occured while trying to create the remote directory\n    </pub/new>\n\n    (553 no)");
}

TEST(ShowServerError, NothingWithoutOperationOrReply) {
    SessionHarness h;
    ShowServerError(0, "550 x");
    ShowServerError(kOperationList, nullptr);
    EXPECT_TRUE(h.view.ServerErrors().empty());
}

TEST(ShowServerError, TheFirstLineEndBecomesBlanks) {
    SessionHarness h;
    ShowServerError(kOperationList, "550 a\r\nb\r\n");
    ShowServerError(kOperationList, "550 a\rb");
    ASSERT_EQ(h.view.ServerErrors().size(), 2u);
    EXPECT_EQ(h.view.ServerErrors()[0].reply, "550 a  b\r\n");
    EXPECT_EQ(h.view.ServerErrors()[1].reply, "550 a b");
}

int gShown = 0;
void ShowAnother(int, const char*) {
    ++gShown;
    ShowServerError(kOperationList, "550 another");
}

TEST(ShowServerError, OnlyOneAtATime) {
    SessionHarness h;
    gShown = 0;
    gSessionView.showServerError = ShowAnother;
    ShowServerError(kOperationList, "550 first");
    EXPECT_EQ(gShown, 1);
    ShowServerError(kOperationList, "550 second");
    EXPECT_EQ(gShown, 2);
}

TEST(CommonDialogMessage, FollowsTheTable) {
    EXPECT_EQ(CommonDialogMessage(0), 0u);
    EXPECT_EQ(CommonDialogMessage(1), 7129u);
    EXPECT_EQ(CommonDialogMessage(11), 7139u);
    EXPECT_EQ(CommonDialogMessage(12), 7155u);
    EXPECT_EQ(CommonDialogMessage(4097), 7140u);
    EXPECT_EQ(CommonDialogMessage(4107), 7150u);
    EXPECT_EQ(CommonDialogMessage(8193), 7151u);
    EXPECT_EQ(CommonDialogMessage(12289), 7152u);
    EXPECT_EQ(CommonDialogMessage(12291), 7154u);
    EXPECT_EQ(CommonDialogMessage(65535), 7128u);
    EXPECT_EQ(CommonDialogMessage(777), 7155u);
}

TEST(ShowCommonDialogError, ShowsABoxOrNothing) {
    SessionHarness h;
    ShowCommonDialogError(0);
    EXPECT_TRUE(h.console.Boxes().empty());
    ShowCommonDialogError(4107);
    EXPECT_TRUE(h.console.HasBox("Printer not found"));
}

}  // namespace
