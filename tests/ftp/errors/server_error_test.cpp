#include "ftp/errors/server_error.h"

#include <gtest/gtest.h>

#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "support/session_harness.h"

namespace {

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

}  // namespace
