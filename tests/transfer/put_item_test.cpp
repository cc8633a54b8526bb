#include "transfer/put_item.h"

#include "config/file_types.h"
#include "config/mode_map_store.h"
#include "ftp/errors/server_error.h"
#include "ftp/worker/blocking_call.h"
#include "ftp/worker/result_codes.h"
#include "platform/files.h"
#include "platform/system.h"
#include "transfer/transfer_fixture.h"
#ifndef _WIN32
#include "host/fault_injection.h"
#endif

namespace {

class PutFile : public TransferTest {
  protected:
    PutFile() {
        gZarn.SENDUNIQUE = 0;
        harness.server.AddFolder("/up");
        local.Write("a.txt", "hello\r\n");
    }
    TransferNode LocalNode(const std::string& name, std::uint32_t type = kNodeFile) {
        TransferNode item;
        item.pszLocalName = OwnedText::Copy(name);
        item.pszLocation = OwnedText::Copy(local.Path());
        item.pszDestination = OwnedText::Copy("/up");
        item.NodeType = type;
        return item;
    }
    bool Put(const std::string& name) {
        node = LocalNode(name);
        outcome = PutItem(job, node);
        return outcome.code == FTP_COMPLETE;
    }
    std::string Stored(const std::string& name) { return harness.server.FileBytes("/up/" + name); }
    static std::string ManyBytes(std::size_t count) {
        std::string bytes;
        for (std::size_t i = 0; i < count; ++i) bytes += static_cast<char>(i * 7);
        return bytes;
    }
    // The file's last state counts as failed once, and as done too.
    void ExpectFailed() {
        EXPECT_EQ(1, job.counters.failures);
        EXPECT_EQ(0, view.bars.back());
        EXPECT_NE(FTP_COMPLETE, outcome.code);
        EXPECT_TRUE(harness.console.HasLine("'" + std::string(node.pszLocalName.c_str()) + "' was not sent."));
    }
    TransferNode node;
    bool GoesOn() const { return GoesOnWithout(job, outcome); }
    ItemOutcome outcome;
};

TEST_F(PutFile, FileIsSentByteForByte) {
    const std::string bytes = ManyBytes(100'000);
    local.Write("big.bin", bytes);
    ASSERT_TRUE(Put("big.bin"));
    EXPECT_EQ(FTP_COMPLETE, outcome.code);
    EXPECT_EQ(bytes, Stored("big.bin"));
    EXPECT_EQ(1, job.counters.files);
    EXPECT_EQ(0, job.counters.failures);
    EXPECT_EQ(nullptr, node.pszRemoteName.get());
    ASSERT_FALSE(harness.view.Progress().empty());
    EXPECT_EQ(bytes.size(), harness.view.Progress().back().done);
}

TEST_F(PutFile, DialogShowsNameSourceDestinationBytesModeAndCount) {
    node = LocalNode("a.txt");
    node.iSize = 7;
    ASSERT_TRUE(DlgPutFile(&node, abort));
    EXPECT_EQ((Names{"Transfering: a.txt"}), view.items);
    EXPECT_EQ((Names{local.Path()}), view.sources);
    EXPECT_EQ((Names{"Test site : /up"}), view.destinations);
    ASSERT_FALSE(view.bytes.empty());
    EXPECT_EQ("0 of 7", view.bytes.front());
    EXPECT_EQ("I", view.modes);
    EXPECT_EQ("1 Files Transfered", view.counters.back());
}

TEST_F(PutFile, UploadEndsWithAnEmptyBar) {
    ASSERT_TRUE(Put("a.txt"));
    EXPECT_EQ(0, view.bars.back());
}

TEST_F(PutFile, FailedUploadCountsBothAsDoneAndAsFailed) {
    harness.server.On("STOR", {Say("553 not here\r\n")});
    EXPECT_FALSE(Put("a.txt"));
    ExpectFailed();
    EXPECT_EQ(1, job.counters.files);
    EXPECT_EQ("1 Files Transfered", view.counters.back());
}

TEST_F(PutFile, UpperCaseSendsReadmeAsREADMEAndRecordsTheRemoteName) {
    gZarn.mode.caseConversion = 1;
    local.Write("readme", "text");
    ASSERT_TRUE(Put("readme"));
    EXPECT_TRUE(Sent("STOR README"));
    EXPECT_STREQ("README", node.pszRemoteName.get());
    EXPECT_EQ("text", Stored("README"));
}

TEST_F(PutFile, LowerCaseSendsNamesInLowerCase) {
    gZarn.mode.caseConversion = 2;
    local.Write("ReadMe.TXT", "text");
    ASSERT_TRUE(Put("ReadMe.TXT"));
    EXPECT_TRUE(Sent("STOR readme.txt"));
}

TEST_F(PutFile, PromptBeginsWithSiteAndFileName) {
    gZarn.PROMPT = 1;
    std::string prefill;
    static std::string* seen = nullptr;
    seen = &prefill;
    gSessionView.askText = [](const TextQuestion& question, std::string& answer) {
        *seen = question.caption + "|" + question.prompt + "|" + answer;
        return true;
    };
    ASSERT_TRUE(Put("a.txt"));
    EXPECT_EQ("Send Local File|Enter remote file name for a.txt:|Test site : a.txt", prefill);
    // Left as it was, it names the file itself.
    EXPECT_TRUE(Sent("STOR a.txt"));
    EXPECT_EQ(nullptr, node.pszRemoteName.get());
}

TEST_F(PutFile, AnswerToThePromptIsTheRemoteName) {
    gZarn.PROMPT = 1;
    harness.view.AnswerNext("other 100%s.txt");
    ASSERT_TRUE(Put("a.txt"));
    EXPECT_TRUE(Sent("STOR other 100%s.txt"));
    EXPECT_STREQ("other 100%s.txt", node.pszRemoteName.get());
}

TEST_F(PutFile, AnswerWithTheSitesNameInFrontIsTheRestOfIt) {
    gZarn.PROMPT = 1;
    harness.view.AnswerNext("Test site : b.txt");
    ASSERT_TRUE(Put("a.txt"));
    EXPECT_TRUE(Sent("STOR b.txt"));
}

TEST_F(PutFile, EmptyAnswerKeepsTheName) {
    gZarn.PROMPT = 1;
    harness.view.AnswerNext("");
    ASSERT_TRUE(Put("a.txt"));
    EXPECT_TRUE(Sent("STOR a.txt"));
}

TEST_F(PutFile, CancelledPromptEndsTheTransferAndSendsNothing) {
    gZarn.PROMPT = 1;
    EXPECT_FALSE(Put("a.txt"));
    EXPECT_TRUE(abort);
    EXPECT_TRUE(harness.server.Commands().empty());
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_EQ(0, job.counters.files);
}

TEST_F(PutFile, CaseConversionAsksForNoName) {
    gZarn.PROMPT = 1;
    gZarn.mode.caseConversion = 2;
    ASSERT_TRUE(Put("a.txt"));
    EXPECT_TRUE(harness.view.Questions().empty());
}

TEST_F(PutFile, ModeGoesByTheTypeOfTheLocalNameWhereThatIsWanted) {
    FTobject type;
    type.pszType = OwnedText::Copy(".zzlines");
    type.TransferMode[0] = 'L';
    ASSERT_TRUE(RegSaveFileType({&type, kModeChanged}));
    RememberExtension(".zzlines");
    gZarn.mode.useModeMapping = 1;
    gZarn.mode.caseConversion = 1;
    local.Write("a.zzlines", "x");
    ASSERT_TRUE(Put("a.txt"));
    ASSERT_TRUE(Put("a.zzlines"));
    EXPECT_EQ("IL", view.modes);
    EXPECT_TRUE(Sent("TYPE L 8"));
    gZarn.mode.useModeMapping = 0;
    ASSERT_TRUE(Put("a.zzlines"));
    EXPECT_EQ("ILI", view.modes);
}

TEST_F(PutFile, FolderIsChangedOnlyWhenItDiffers) {
    ASSERT_TRUE(Put("a.txt"));
    EXPECT_TRUE(Sent("CWD /up"));
    harness.server.ForgetCommands();
    ASSERT_TRUE(Put("a.txt"));
    EXPECT_EQ(0, harness.server.CountCommands("CWD"));
}

TEST_F(PutFile, MissingFolderIsMade) {
    node = LocalNode("a.txt");
    node.pszDestination = OwnedText::Copy("/new");
    ASSERT_TRUE(DlgPutFile(&node, abort));
    EXPECT_EQ("hello\r\n", harness.server.FileBytes("/new/a.txt"));
}

TEST_F(PutFile, FolderThatCannotBeEnteredIsToldAndNothingIsSent) {
    harness.server.On("CWD", {Say("550 Permission denied\r\n")});
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Put("a.txt"));
    EXPECT_EQ(kFileUnavailable, outcome.code);
    EXPECT_TRUE(harness.console.HasBox("An error occured while trying to set the remote directory to /up."));
    EXPECT_TRUE(harness.console.HasBox("(Permission denied )"));
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_EQ(0, job.counters.files);
    EXPECT_FALSE(abort);
}

TEST_F(PutFile, FolderThatIsMadeButCannotBeEnteredTakesNoFileElsewhere) {
    harness.server.On("CWD", {Say("550 No such file or directory\r\n")});
    EXPECT_FALSE(Put("a.txt"));
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
    EXPECT_EQ(1, job.counters.failures);
}

TEST_F(PutFile, RetryEntersTheFolderAgain) {
    harness.server.Once("CWD", {Say("550 Permission denied\r\n")});
    harness.console.AnswerNext(BoxAnswer::Retry);
    EXPECT_TRUE(Put("a.txt"));
    EXPECT_EQ(2, harness.server.CountCommands("CWD"));
}

TEST_F(PutFile, MissingFieldsOrAbortAreRefused) {
    EXPECT_FALSE(DlgPutFile(nullptr, abort));
    for (const int missing : {0, 1, 2}) {
        node = LocalNode(missing == 0 ? "" : "a.txt");
        if (missing == 1) node.pszLocation.reset();
        if (missing == 2) node.pszDestination.reset();
        EXPECT_FALSE(DlgPutFile(&node, abort)) << missing;
        EXPECT_EQ(FTP_ERROR, node.iRetCode);
    }
    SetTransferAbort(true);
    EXPECT_FALSE(Put("a.txt"));
    EXPECT_TRUE(harness.server.Commands().empty());
}

TEST_F(PutFile, NodeWithoutATypeIsAFolder) {
    node = LocalNode("sub", 0);
    ASSERT_TRUE(DlgPutFile(&node, abort));
    EXPECT_TRUE(harness.server.Exists("/up/sub"));
    EXPECT_EQ((Names{"Creating Directory: sub "}), view.items);
}

TEST_F(PutFile, NameWithALineEndIsRefusedAndTheTransferMayGoOn) {
    for (const char* name : {"a\rb", "a\nDELE x", "a\r\nDELE x"}) {
        harness.console.Clear();
        EXPECT_FALSE(Put(name));
        EXPECT_TRUE(GoesOn());
        EXPECT_TRUE(harness.console.HasBox("cannot be sent to a server."));
        EXPECT_EQ(BoxButtons::Ok, harness.console.Boxes()[0].buttons);
    }
    EXPECT_FALSE(abort);
    EXPECT_TRUE(harness.server.Commands().empty());
    EXPECT_EQ(3, job.counters.failures);
    EXPECT_EQ(0, job.counters.files);
}

TEST_F(PutFile, LineEndInThePromptsAnswerIsRefused) {
    gZarn.PROMPT = 1;
    harness.view.AnswerNext("x\r\nDELE a.txt");
    EXPECT_FALSE(Put("a.txt"));
    EXPECT_TRUE(harness.server.Commands().empty());
    EXPECT_TRUE(harness.console.HasBox("cannot be sent to a server."));
}

TEST_F(PutFile, FourGigabytesAreRefusedBeforeAnythingIsSent) {
    const std::string path = local.PathOf("huge.bin");
    const platform::FileHandle file =
        platform::OpenFile(path.c_str(), {platform::FileAccess::Write, platform::FileDisposition::CreateAlways});
    ASSERT_TRUE(platform::SeekTo(file, 0xFFFFFFFF));
    ASSERT_TRUE(platform::WriteFile(file, std::string_view("x")));
    platform::CloseFile(file);
    EXPECT_FALSE(Put("huge.bin"));
    EXPECT_TRUE(harness.console.HasBox("'huge.bin' has 4,294,967,296 bytes."));
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
    EXPECT_EQ(0, harness.server.CountCommands("PORT"));
    ExpectFailed();
    EXPECT_TRUE(GoesOn());
    EXPECT_FALSE(abort);
}

TEST_F(PutFile, RefusalIsShownWithTheServersWordsAndIgnoreGoesOn) {
    harness.server.On("STOR", {Say("553 not here\r\n")});
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Put("a.txt"));
    ASSERT_EQ(1u, harness.console.Boxes().size());
    EXPECT_EQ("An error occured while trying to transfer\n    <a.txt>\n\n    (not here)",
              harness.console.Boxes()[0].text);
    EXPECT_TRUE(GoesOn());
    EXPECT_FALSE(abort);
    ExpectFailed();
}

TEST_F(PutFile, AbortInTheBoxEndsTheWholeTransfer) {
    harness.server.On("STOR", {Say("553 not here\r\n")});
    harness.console.AnswerNext(BoxAnswer::Abort);
    EXPECT_FALSE(Put("a.txt"));
    EXPECT_TRUE(abort);
    EXPECT_FALSE(GoesOn());
}

TEST_F(PutFile, RetrySendsAgainAndCountsNoFailure) {
    harness.server.Once("STOR", {Say("450 busy\r\n")});
    harness.console.AnswerNext(BoxAnswer::Retry);
    EXPECT_TRUE(Put("a.txt"));
    EXPECT_EQ("hello\r\n", Stored("a.txt"));
    EXPECT_EQ(0, job.counters.failures);
    EXPECT_EQ(1, job.counters.files);
}

TEST_F(PutFile, RefusedUniqueStoreIsAFailureLikeAnyOther) {
    gZarn.SENDUNIQUE = 1;
    harness.server.On("STOU", {Say("502 Command not implemented\r\n")});
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Put("a.txt"));
    EXPECT_TRUE(harness.console.HasBox("(Command not implemented)"));
    ExpectFailed();
}

TEST_F(PutFile, FullDiskInTheMiddleIsToldAndTheSessionStaysInStep) {
    local.Write("big.bin", ManyBytes(6'000'000));
    harness.server.On("STOR", {Say("150 ok\r\n"), OpenData(), ResetData(), Say("552 disk full\r\n")});
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Put("big.bin"));
    EXPECT_TRUE(harness.console.HasBox("(disk full)"));
    ExpectFailed();
    harness.server.Forget("STOR");
    EXPECT_TRUE(Put("a.txt"));
    EXPECT_EQ("hello\r\n", Stored("a.txt"));
}

TEST_F(PutFile, BrokenDataConnectionIsNoSuccessWhateverTheServerSays) {
    local.Write("big.bin", ManyBytes(6'000'000));
    harness.server.On("STOR", {Say("150 ok\r\n"), OpenData(), ResetData(), Say("226 done\r\n")});
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Put("big.bin"));
    EXPECT_TRUE(harness.console.HasBox("The connection was lost while sending\n    <big.bin>."));
    ExpectFailed();
    EXPECT_TRUE(GoesOn());
}

TEST_F(PutFile, ServerThatHangsUpEndsTheTransferAndIsToldOnce) {
    harness.server.On("STOR", {CloseControl()});
    EXPECT_FALSE(Put("a.txt"));
    EXPECT_TRUE(abort);
    EXPECT_FALSE(GoesOn());
    EXPECT_EQ(1u, harness.console.Boxes().size());
    EXPECT_TRUE(harness.console.HasBox("The FTP Server has aborted your connection"));
    EXPECT_EQ(1, harness.view.PostedDisconnects());
}

TEST_F(PutFile, MissingLocalFileIsToldOnce) {
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Put("missing.txt"));
    EXPECT_EQ(1u, harness.console.Boxes().size());
    EXPECT_TRUE(harness.console.HasBox("Unable to open the local file <missing.txt>."));
    EXPECT_TRUE(GoesOn());
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
    harness.console.AnswerNext(BoxAnswer::Abort);
    EXPECT_FALSE(Put("missing.txt"));
    EXPECT_TRUE(abort);
}

#ifndef _WIN32
TEST_F(PutFile, UnreadableLocalFileIsToldWithTheSystemsWords) {
    harness.console.AnswerNext(BoxAnswer::Ignore);
    ASSERT_TRUE(Put("a.txt"));
    {
        const fault_injection::Scope scope(fault_injection::Call::ReadFile, 1, platform::kErrorAccessDenied);
        EXPECT_FALSE(Put("a.txt"));
    }
    EXPECT_TRUE(harness.console.HasBox("An error occured while trying to transfer\n    <a.txt>"));
    EXPECT_TRUE(harness.console.HasBox(platform::SystemErrorText(platform::kErrorAccessDenied)));
    ExpectFailed();
    EXPECT_TRUE(Put("a.txt"));
}
#endif

class PutDir : public PutFile {
  protected:
    bool Make(const std::string& name, const char* parent = "/up") {
        node = LocalNode(name, kNodeFolder);
        node.pszDestination = OwnedText::Copy(parent);
        return DlgPutDir(&node, abort);
    }
};

TEST_F(PutDir, FolderIsMadeEnteredAndCounted) {
    ASSERT_TRUE(Make("sub"));
    EXPECT_EQ(FTP_COMPLETE, node.iRetCode);
    EXPECT_TRUE(Sent("MKD /up/sub"));
    EXPECT_STREQ("/up/sub", site->pszCurrentDir.get());
    EXPECT_EQ((std::vector<int>{0, 250, 500, 1000}), view.bars);
    EXPECT_EQ("1 Folders Created", view.counters.back());
}

TEST_F(PutDir, FolderThatExistsIsEntered) {
    harness.server.AddFolder("/up/sub");
    ASSERT_TRUE(Make("sub"));
    EXPECT_EQ(0, harness.server.CountCommands("MKD"));
    EXPECT_EQ(1, job.counters.folders);
}

TEST_F(PutDir, RootAsParentDoublesNoSeparator) {
    ASSERT_TRUE(Make("top", "/"));
    EXPECT_TRUE(Sent("MKD /top"));
    EXPECT_STREQ("/top", site->pszCurrentDir.get());
}

TEST_F(PutDir, ServerThatSaysMissingInOtherWordsGetsTheFolderMadeToo) {
    harness.server.Once("CWD", {Say("550 Failed to change directory.\r\n")});
    ASSERT_TRUE(Make("sub"));
    EXPECT_TRUE(harness.server.Exists("/up/sub"));
    EXPECT_TRUE(harness.console.Boxes().empty());
    EXPECT_TRUE(harness.view.ServerErrors().empty());
}

TEST_F(PutDir, RefusedFolderIsToldOnceAndCounted) {
    harness.server.On("MKD", {Say("550 Permission denied\r\n")});
    EXPECT_FALSE(Make("sub"));
    ASSERT_EQ(1u, harness.view.ServerErrors().size());
    EXPECT_EQ(kOperationMakeDirectory, harness.view.ServerErrors()[0].operation);
    EXPECT_TRUE(harness.console.Boxes().empty());
    EXPECT_EQ(kFileUnavailable, node.iRetCode);
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_EQ(0, job.counters.folders);
    EXPECT_EQ(0, view.bars.back());
}

TEST_F(PutDir, RefusalAfterOtherWordsIsToldAndRetryTriesAgain) {
    harness.server.On("CWD", {Say("550 Failed to change directory.\r\n")});
    harness.server.On("MKD", {Say("550 Create directory operation failed.\r\n")});
    harness.console.AnswerNext(BoxAnswer::Retry);
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Make("sub"));
    EXPECT_EQ(2u, harness.console.Boxes().size());
    EXPECT_TRUE(harness.console.HasBox("An error occured while trying to create the remote directory\n    </up/sub>"));
    EXPECT_TRUE(harness.console.HasBox("(550 Create directory operation failed.)"));
    EXPECT_EQ(1, job.counters.failures);
}

TEST_F(PutDir, RemoteNameWinsOverTheLocalOne) {
    node = LocalNode("sub", kNodeFolder);
    node.pszRemoteName = OwnedText::Copy("other");
    ASSERT_TRUE(DlgPutDir(&node, abort));
    EXPECT_TRUE(Sent("MKD /up/other"));
}

TEST_F(PutDir, CaseConversionLeavesFoldersAlone) {
    gZarn.mode.caseConversion = 1;
    ASSERT_TRUE(Make("sub"));
    EXPECT_TRUE(harness.server.Exists("/up/sub"));
}

TEST_F(PutDir, NameWithALineEndIsRefused) {
    EXPECT_FALSE(Make("x\r\nDELE y"));
    EXPECT_TRUE(harness.console.HasBox("cannot be sent to a server."));
    EXPECT_TRUE(harness.server.Commands().empty());
}

TEST_F(PutDir, MissingFieldsOrAbortAreRefused) {
    EXPECT_FALSE(DlgPutDir(nullptr, abort));
    EXPECT_FALSE(Make(""));
    SetTransferAbort(true);
    EXPECT_FALSE(Make("sub"));
    EXPECT_EQ(FTP_ERROR, node.iRetCode);
    EXPECT_TRUE(harness.server.Commands().empty());
}

}  // namespace
