#include "transfer/item_steps.h"

#include "config/file_types.h"
#include "config/mode_map_store.h"
#include "foundation/message_ids.h"
#include "ftp/worker/result_codes.h"
#include "transfer/transfer_fixture.h"

namespace {

class NameQuestion : public TransferTest {
  protected:
    bool Ask() { return AskForName(job, MSG_SEND_LOCAL_FILE, MSG_ENTER_REMOTE_NAME, name); }
    std::string name = "a.txt";
};

TEST_F(NameQuestion, AnswerIsTheName) {
    harness.view.AnswerNext("other 100%s.txt");
    EXPECT_TRUE(Ask());
    EXPECT_EQ("other 100%s.txt", name);
    ASSERT_EQ(1u, harness.view.Questions().size());
    EXPECT_EQ("Send Local File", harness.view.Questions()[0].caption);
    EXPECT_EQ("Enter remote file name for a.txt:", harness.view.Questions()[0].prompt);
    EXPECT_EQ(519u, harness.view.Questions()[0].longest);
    EXPECT_FALSE(harness.view.Questions()[0].isSecret);
}

TEST_F(NameQuestion, SitesNameInFrontIsNoPartOfTheAnswer) {
    harness.view.AnswerNext("Test site : b.txt");
    EXPECT_TRUE(Ask());
    EXPECT_EQ("b.txt", name);
}

TEST_F(NameQuestion, EmptyAnswerKeepsTheName) {
    for (const char* answer : {"", "Test site : "}) {
        harness.view.AnswerNext(answer);
        EXPECT_TRUE(Ask());
        EXPECT_EQ("a.txt", name) << answer;
    }
}

TEST_F(NameQuestion, CancelEndsTheTransferAndKeepsTheName) {
    EXPECT_FALSE(Ask());
    EXPECT_EQ("a.txt", name);
    EXPECT_TRUE(job.Stopped());
}

class RemoteFolder : public TransferTest {
  protected:
    int Enter(const char* path = "/up") { return EnterRemoteFolder(job, "Test", path); }
    void RefuseOnce() { harness.server.Once("CWD", {Say("550 Permission denied\r\n")}); }
};

TEST_F(RemoteFolder, CurrentOneNeedsNoCommand) {
    EXPECT_EQ(FTP_COMPLETE, Enter("/"));
    EXPECT_TRUE(harness.server.Commands().empty());
}

TEST_F(RemoteFolder, FolderThatExistsIsEntered) {
    harness.server.AddFolder("/up");
    EXPECT_EQ(FTP_COMPLETE, Enter());
    EXPECT_STREQ("/up", site->pszCurrentDir.c_str());
    EXPECT_EQ(0, harness.server.CountCommands("MKD"));
}

TEST_F(RemoteFolder, MissingFolderIsMade) {
    EXPECT_EQ(FTP_COMPLETE, Enter());
    EXPECT_TRUE(harness.server.Exists("/up"));
    EXPECT_STREQ("/up", site->pszCurrentDir.c_str());
    EXPECT_TRUE(harness.console.Boxes().empty());
}

TEST_F(RemoteFolder, RefusalIsShownAndIgnoreReturnsIt) {
    RefuseOnce();
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_EQ(kFileUnavailable, Enter());
    ASSERT_EQ(1u, harness.console.Boxes().size());
    EXPECT_EQ("An error occured while trying to set the remote directory to /up.\n (Permission denied )",
              harness.console.Boxes()[0].text);
    EXPECT_FALSE(job.Stopped());
    EXPECT_EQ(0, harness.server.CountCommands("MKD"));
}

TEST_F(RemoteFolder, RetryEntersAgain) {
    harness.server.AddFolder("/up");
    RefuseOnce();
    RefuseOnce();
    harness.console.AnswerNext(BoxAnswer::Retry);
    harness.console.AnswerNext(BoxAnswer::Retry);
    EXPECT_EQ(FTP_COMPLETE, Enter());
    EXPECT_EQ(3, harness.server.CountCommands("CWD"));
}

TEST_F(RemoteFolder, AbortEndsTheTransfer) {
    RefuseOnce();
    harness.console.AnswerNext(BoxAnswer::Abort);
    EXPECT_EQ(kFileUnavailable, Enter());
    EXPECT_TRUE(job.Stopped());
}

TEST_F(RemoteFolder, FolderThatIsMadeButCannotBeEnteredIsAFailure) {
    harness.server.On("CWD", {Say("550 No such file or directory\r\n")});
    EXPECT_EQ(FTP_ERROR, Enter());
    EXPECT_TRUE(harness.server.Exists("/up"));
    EXPECT_EQ(1u, harness.view.ServerErrors().size()) << "shown where it happened";
    EXPECT_TRUE(harness.console.Boxes().empty());
}

TEST_F(RemoteFolder, StoppedTransferShowsNothing) {
    RefuseOnce();
    SetTransferAbort(true);
    EXPECT_NE(FTP_COMPLETE, Enter());
    EXPECT_TRUE(harness.console.Boxes().empty());
}

TEST_F(RemoteFolder, LostConnectionEndsTheTransferAndIsShownOnce) {
    harness.server.On("CWD", {CloseControl()});
    EXPECT_NE(FTP_COMPLETE, Enter());
    EXPECT_TRUE(job.Stopped());
    EXPECT_EQ(1u, harness.console.Boxes().size());
    EXPECT_TRUE(harness.console.HasBox("The FTP Server has aborted your connection"));
}

class TimeOutBox : public TransferTest {
  protected:
    TimeOutBox() { gZarn.port.timeout = 7; }
    BoxAnswer Tell(BoxAnswer answer) {
        harness.console.Clear();
        harness.console.AnswerNext(answer);
        SetTransferAbort(false);
        SetTransferTimedOut();
        return TellTimeOut(job, "a%s\x1B.txt");
    }
};

TEST_F(TimeOutBox, TellsTheSecondsAndTheName) {
    Tell(BoxAnswer::Abort);
    ASSERT_EQ(1u, harness.console.Boxes().size());
    const RecordedBox box = harness.console.Boxes()[0];
    EXPECT_EQ("The server did not answer for 7 seconds while transferring\n    <a%s?.txt>.\nThe transfer timed out.",
              box.text);
    EXPECT_EQ("Zarn Transfer Error", box.caption);
    EXPECT_EQ(BoxButtons::AbortRetryIgnore, box.buttons);
    EXPECT_EQ(BoxIcon::Exclamation, box.icon);
}

TEST_F(TimeOutBox, RetryAndIgnoreClearTheAbortFlag) {
    for (const BoxAnswer answer : {BoxAnswer::Retry, BoxAnswer::Ignore}) {
        EXPECT_EQ(answer, Tell(answer));
        EXPECT_FALSE(abort);
        EXPECT_FALSE(StoppedByTimeOut());
    }
    EXPECT_EQ(BoxAnswer::Abort, Tell(BoxAnswer::Abort));
    EXPECT_TRUE(abort);
}

TEST_F(TimeOutBox, WithoutAConnectionThereIsOnlyOk) {
    job.site = harness.MakeSite();
    EXPECT_EQ(BoxAnswer::Ok, Tell(BoxAnswer::Ok));
    EXPECT_EQ(BoxButtons::Ok, harness.console.Boxes()[0].buttons);
    EXPECT_TRUE(abort);
}

class NetworkFailure : public TransferTest {
  protected:
    BoxAnswer Tell(const char* reply) {
        ItemOutcome outcome;
        outcome.reply = reply;
        return TellNetworkFailure(job, {"Test", "a.txt", MSG_BOX_FILE_NOT_COMPLETE}, outcome);
    }
};

TEST_F(NetworkFailure, RefusalIsShownWithTheServersWords) {
    harness.console.AnswerNext(BoxAnswer::Retry);
    EXPECT_EQ(BoxAnswer::Retry, Tell("553 not here"));
    EXPECT_TRUE(harness.console.HasBox("(not here)"));
}

TEST_F(NetworkFailure, WithoutARefusalTheConnectionWasLost) {
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_EQ(BoxAnswer::Ignore, Tell("226 done"));
    EXPECT_TRUE(harness.console.HasBox("The connection was lost while receiving\n    <a.txt>."));
    EXPECT_EQ(BoxButtons::AbortRetryIgnore, harness.console.Boxes()[0].buttons);
}

TEST_F(NetworkFailure, TimeOutIsShownAsOne) {
    SetTransferTimedOut();
    Tell("426 gone");
    EXPECT_TRUE(harness.console.HasBox("The transfer timed out."));
}

TEST_F(NetworkFailure, NothingIsShownAfterTheUsersAbort) {
    job.Stop();
    EXPECT_EQ(BoxAnswer::None, Tell("426 gone"));
    EXPECT_TRUE(harness.console.Boxes().empty());
}

class ItemSteps : public TransferTest {
  protected:
    static ItemOutcome OutcomeOf(int code) {
        ItemOutcome outcome;
        outcome.code = code;
        return outcome;
    }
};

TEST_F(ItemSteps, OnlyRetryWantsAnotherTryAndOnlyAbortStops) {
    EXPECT_FALSE(WantsRetry(job, BoxAnswer::None));
    EXPECT_FALSE(WantsRetry(job, BoxAnswer::Ignore));
    EXPECT_TRUE(WantsRetry(job, BoxAnswer::Retry));
    EXPECT_FALSE(job.Stopped());
    EXPECT_FALSE(WantsRetry(job, BoxAnswer::Abort));
    EXPECT_TRUE(job.Stopped());
}

TEST_F(ItemSteps, FailedItemHasItsCodeAndAnEmptyBar) {
    EXPECT_EQ(kLocalAccessDenied, FailItem(kLocalAccessDenied).code);
    ASSERT_FALSE(view.bars.empty());
    EXPECT_EQ(0, view.bars.back());
}

TEST_F(ItemSteps, CountsAreShown) {
    CountFile(job);
    CountFile(job);
    CountFolder(job);
    EXPECT_EQ("2 Files Transfered,  1 Folders Created", view.counters.back());
}

TEST_F(ItemSteps, EntryPointGivesTheNodeItsCode) {
    TransferNode node;
    const auto succeed = [](TransferJob&, TransferNode&) { return OutcomeOf(FTP_COMPLETE); };
    const auto refuse = [](TransferJob&, TransferNode&) { return OutcomeOf(kFileUnavailable); };
    EXPECT_TRUE(RunForNode(&node, abort, succeed));
    EXPECT_EQ(FTP_COMPLETE, node.iRetCode);
    EXPECT_FALSE(RunForNode(&node, abort, refuse));
    EXPECT_EQ(kFileUnavailable, node.iRetCode);
    EXPECT_FALSE(RunForNode(nullptr, abort, succeed));
    SetTransferAbort(true);
    EXPECT_FALSE(RunForNode(&node, abort, succeed));
    EXPECT_EQ(FTP_ERROR, node.iRetCode);
}

TEST_F(ItemSteps, ModeIsTheDefaultUnlessTypesDecide) {
    FTobject type;
    type.pszType = OwnedText::Copy(".zzsteps");
    type.TransferMode[0] = 'L';
    ASSERT_TRUE(RegSaveFileType({&type, kModeChanged}));
    RememberExtension(".zzsteps");
    gZarn.mode.mode = 'I';
    gZarn.mode.useModeMapping = 0;
    EXPECT_EQ('I', ModeFor("a.zzsteps"));
    gZarn.mode.useModeMapping = 1;
    EXPECT_EQ('L', ModeFor("a.zzsteps"));
}

TEST_F(ItemSteps, SiteWithoutARecordHasNoName) {
    EXPECT_STREQ("Test site", SiteName(job));
    job.site = nullptr;
    EXPECT_STREQ("", SiteName(job));
}

}  // namespace
