#include "transfer/get_item.h"

#include "ftp/worker/result_codes.h"
#include "platform/files.h"
#include "platform/system.h"
#include "transfer/transfer_fixture.h"
#ifndef _WIN32
#include "host/fault_injection.h"
#endif

namespace {

class GetFile : public TransferTest {
  protected:
    GetFile() { harness.server.AddFile("/pub/a.txt", "hello\r\n"); }
    bool Get(TransferNode& item) { return DlgGetFile(&item, abort); }
    bool Get(const char* name) {
        node = NodeFor("/pub", name);
        return Get(node);
    }
    TransferNode node;
};

TEST_F(GetFile, FileIsReceivedByteForByte) {
    std::string bytes;
    for (int i = 0; i < 100'000; ++i) bytes += static_cast<char>(i * 7);
    harness.server.AddFile("/pub/big.bin", bytes);
    ASSERT_TRUE(Get("big.bin"));
    EXPECT_EQ(FTP_COMPLETE, node.iRetCode);
    EXPECT_EQ(bytes, local.Read("big.bin"));
    EXPECT_EQ((Names{"big.bin"}), local.Contents());
    EXPECT_EQ(1, job.counters.files);
    EXPECT_EQ(0, job.counters.failures);
}

TEST_F(GetFile, DialogShowsNameSourceDestinationBytesModeAndCount) {
    node = NodeFor("/pub", "a.txt");
    node.iSize = 7;
    ASSERT_TRUE(Get(node));
    EXPECT_EQ((Names{"Transfering: a.txt"}), view.items);
    EXPECT_EQ((Names{"Test site : /pub"}), view.sources);
    EXPECT_EQ((Names{local.Path()}), view.destinations);
    ASSERT_FALSE(view.bytes.empty());
    EXPECT_EQ("0 of 7", view.bytes.front());
    EXPECT_EQ("I", view.modes);
    EXPECT_EQ(0, view.bars.front());
    EXPECT_EQ(1000, view.bars.back());
    EXPECT_EQ("1 Files Transfered", view.counters.back());
}

TEST_F(GetFile, FolderIsChangedOnlyWhenItDiffers) {
    ASSERT_TRUE(Get("a.txt"));
    EXPECT_TRUE(Sent("CWD /pub"));
    harness.server.ForgetCommands();
    harness.server.AddFile("/pub/b.txt", "b");
    ASSERT_TRUE(Get("b.txt"));
    EXPECT_EQ(0, harness.server.CountCommands("CWD"));
}

TEST_F(GetFile, ReservedNameGivesItsCodeAndABoxWithOnlyAnOkButton) {
    harness.server.AddFile("/pub/con.txt", "x");
    EXPECT_FALSE(Get("con.txt"));
    EXPECT_EQ(kReservedName, node.iRetCode);
    ASSERT_EQ(1u, harness.console.Boxes().size());
    EXPECT_EQ(BoxButtons::Ok, harness.console.Boxes()[0].buttons);
    EXPECT_TRUE(harness.console.HasBox("are reserved."));
    EXPECT_TRUE(local.Contents().empty());
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_EQ(0, harness.server.CountCommands("RETR"));
}

TEST_F(GetFile, OtherDeviceNamesAreMadeSafe) {
    harness.server.AddFile("/pub/com1.txt", "x");
    ASSERT_TRUE(Get("com1.txt"));
    EXPECT_EQ((Names{"~com1.txt"}), local.Contents());
    EXPECT_STREQ("~com1.txt", node.pszLocalName.get());
    EXPECT_TRUE(harness.console.HasLine("The name 'com1.txt' cannot be used here"));
}

TEST_F(GetFile, NothingIsWrittenOutsideTheFolderWhateverTheServerCallsIt) {
    for (const char* name :
         {"..\\..\\x", "C:x", "a:b", "%n%s", "name. . ", "\\\\server\\share", "caf\xE9", "tab\there"}) {
        harness.server.On("RETR", {Say("150 ok\r\n"), OpenData(), DataBytes("x"), CloseData(), Say("226 ok\r\n")});
        const std::size_t before = local.Contents().size();
        harness.server.ForgetCommands();
        EXPECT_TRUE(Get(name)) << name;
        EXPECT_EQ(before + 1, local.Contents().size()) << name;
        EXPECT_TRUE(Sent(std::string("RETR ") + name)) << name;
    }
    const Names contents = local.Contents();
    for (const char* name : {"..~..~x", "C~x", "a~b", "%n%s", "name", "~~server~share", "tab~here"}) {
        EXPECT_NE(contents.end(), std::find(contents.begin(), contents.end(), name)) << name;
    }
}

TEST_F(GetFile, NameOf300CharactersIsStoredShortened) {
    const std::string name = std::string(296, 'n') + ".txt";
    harness.server.AddFile("/pub/" + name, "long");
    ASSERT_TRUE(Get(name.c_str()));
    ASSERT_EQ(1u, local.Contents().size());
    const std::string stored = local.Contents()[0];
    EXPECT_EQ(".txt", stored.substr(stored.size() - 4));
    EXPECT_EQ("long", local.Read(stored));
}

TEST_F(GetFile, CaseConversionNamesTheLocalFileOnly) {
    gZarn.mode.caseConversion = 1;
    ASSERT_TRUE(Get("a.txt"));
    EXPECT_EQ((Names{"A.TXT"}), local.Contents());
    EXPECT_STREQ("A.TXT", node.pszLocalName.get());
    EXPECT_TRUE(Sent("RETR a.txt"));
}

TEST_F(GetFile, UnchangedNameLeavesTheLocalNameUnset) {
    ASSERT_TRUE(Get("a.txt"));
    EXPECT_EQ(nullptr, node.pszLocalName.get());
}

TEST_F(GetFile, PromptAsksForTheLocalNameAndBeginsWithSiteAndFileName) {
    gZarn.PROMPT = 1;
    static std::string seen;
    gSessionView.askText = [](const TextQuestion& question, std::string& answer) {
        seen = question.caption + "|" + question.prompt + "|" + answer;
        return true;
    };
    ASSERT_TRUE(Get("a.txt"));
    EXPECT_EQ("Receive Remote File|Enter local file name for a.txt:|Test site : a.txt", seen);
    EXPECT_EQ((Names{"a.txt"}), local.Contents());
    EXPECT_EQ(nullptr, node.pszLocalName.get());
}

TEST_F(GetFile, AnswerToThePromptIsTheLocalNameMadeSafe) {
    gZarn.PROMPT = 1;
    harness.view.AnswerNext("..\\other.txt");
    ASSERT_TRUE(Get("a.txt"));
    EXPECT_EQ((Names{"..~other.txt"}), local.Contents());
    EXPECT_STREQ("..~other.txt", node.pszLocalName.get());
    EXPECT_TRUE(Sent("RETR a.txt"));
}

TEST_F(GetFile, ReservedAnswerToThePromptIsRefused) {
    gZarn.PROMPT = 1;
    harness.view.AnswerNext("NUL.txt");
    EXPECT_FALSE(Get("a.txt"));
    EXPECT_EQ(kReservedName, node.iRetCode);
    EXPECT_TRUE(local.Contents().empty());
}

TEST_F(GetFile, CancelledPromptEndsTheTransfer) {
    gZarn.PROMPT = 1;
    EXPECT_FALSE(Get("a.txt"));
    EXPECT_TRUE(abort);
    EXPECT_EQ(0, harness.server.CountCommands("RETR"));
    EXPECT_TRUE(local.Contents().empty());
}

TEST_F(GetFile, CaseConversionAsksForNoName) {
    gZarn.PROMPT = 1;
    gZarn.mode.caseConversion = 2;
    ASSERT_TRUE(Get("a.txt"));
    EXPECT_TRUE(harness.view.Questions().empty());
}

TEST_F(GetFile, FileBearsTheTimeOfTheListing) {
    constexpr FileTime kMinute = 600'000'000;
    for (const FileTime time : {FileTime{125911584000000000} + 754 * kMinute,  // 1 January 2000, 12:34
                                FileTime{132379488000000000}}) {               // a summer's day in 2020, midnight
        view.answers = {ReplaceAnswer::Yes};
        node = NodeFor("/pub", "a.txt");
        node.time = time;
        ASSERT_TRUE(Get(node));
        platform::FileInfo info;
        ASSERT_TRUE(platform::GetFileInfo(local.PathOf("a.txt").c_str(), info));
        EXPECT_EQ(time, info.writeTime);
        job.receivedFiles.clear();
    }
}

TEST_F(GetFile, FileWithoutAListedTimeBearsTheTimeOfItsArrival) {
    ASSERT_TRUE(Get("a.txt"));
    platform::FileInfo info;
    ASSERT_TRUE(platform::GetFileInfo(local.PathOf("a.txt").c_str(), info));
    EXPECT_GT(info.writeTime, FileTime{132379488000000000});
}

TEST_F(GetFile, MissingFieldsAndOtherKindsAreRefused) {
    EXPECT_FALSE(DlgGetFile(nullptr, abort));
    node = NodeFor("/pub", "");
    EXPECT_FALSE(Get(node));
    EXPECT_EQ(FTP_ERROR, node.iRetCode);
    node = NodeFor("", "a.txt");
    EXPECT_FALSE(Get(node));
    node = NodeFor("/pub", "a.txt");
    node.pszDestination.reset();
    EXPECT_FALSE(Get(node));
    node = NodeFor("/pub", "a.txt", kNodeFolder);
    EXPECT_FALSE(Get(node));
    EXPECT_EQ(FTP_ERROR, node.iRetCode);
    EXPECT_TRUE(harness.server.Commands().empty());
}

TEST_F(GetFile, AbortBeforehandDoesNothing) {
    SetTransferAbort(true);
    EXPECT_FALSE(Get("a.txt"));
    EXPECT_EQ(FTP_ERROR, node.iRetCode);
    EXPECT_EQ(0, job.counters.failures);
    EXPECT_TRUE(harness.server.Commands().empty());
}

TEST_F(GetFile, RefusalIsShownWithTheServersWordsAndLeavesNothing) {
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Get("missing.txt"));
    ASSERT_EQ(1u, harness.console.Boxes().size());
    EXPECT_EQ(0u, harness.console.Boxes()[0].text.find("An error occured while trying to transfer\n    <missing.txt>"));
    EXPECT_TRUE(local.Contents().empty());
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_EQ(0, job.counters.files);
    EXPECT_EQ(0, view.bars.back());
    EXPECT_FALSE(abort);
    EXPECT_TRUE(Get("a.txt"));
}

TEST_F(GetFile, RefusalLeavesTheFileThatStoodThere) {
    local.Write("missing.txt", "mine");
    view.answers = {ReplaceAnswer::Yes};
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Get("missing.txt"));
    EXPECT_EQ("mine", local.Read("missing.txt"));
    EXPECT_EQ((Names{"missing.txt"}), local.Contents());
}

TEST_F(GetFile, RetryTriesAgainWithoutAskingForTheOldFileOnceMore) {
    local.Write("a.txt", "mine");
    view.answers = {ReplaceAnswer::Yes};
    harness.server.Once("RETR", {Say("450 busy\r\n")});
    harness.console.AnswerNext(BoxAnswer::Retry);
    EXPECT_TRUE(Get("a.txt"));
    EXPECT_EQ(2, harness.server.CountCommands("RETR"));
    EXPECT_EQ(1u, view.questions.size());
    EXPECT_EQ("hello\r\n", local.Read("a.txt"));
    EXPECT_EQ(0, job.counters.failures);
}

TEST_F(GetFile, AbortInTheBoxEndsTheWholeTransfer) {
    harness.console.AnswerNext(BoxAnswer::Abort);
    EXPECT_FALSE(Get("missing.txt"));
    EXPECT_TRUE(abort);
}

TEST_F(GetFile, FolderThatCannotBeEnteredIsShownAndItsResultKept) {
    harness.console.AnswerNext(BoxAnswer::Ignore);
    node = NodeFor("/missing", "a.txt");
    EXPECT_FALSE(Get(node));
    EXPECT_EQ(kFileUnavailable, node.iRetCode);
    EXPECT_TRUE(harness.console.HasBox("An error occured while trying to set the remote directory to /missing."));
    EXPECT_EQ(0, harness.server.CountCommands("RETR"));
}

TEST_F(GetFile, ConnectionThatBreaksInTheMiddleIsToldAndKeepsNoHalfFile) {
#ifdef _WIN32
    GTEST_SKIP() << "under Wine the reset of a server in this process may arrive as an ordinary end";
#endif
    local.Write("a.txt", "mine");
    view.answers = {ReplaceAnswer::Yes};
    harness.server.On("RETR", {Say("150 ok\r\n"), OpenData(), DataBytes("hel"), ResetData(), Say("226 done\r\n")});
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Get("a.txt"));
    EXPECT_TRUE(harness.console.HasBox("The connection was lost while receiving\n    <a.txt>."));
    EXPECT_EQ("mine", local.Read("a.txt"));
    EXPECT_EQ((Names{"a.txt"}), local.Contents());
    EXPECT_TRUE(harness.console.HasLine("'a.txt' was not received; no local file was changed."));
}

TEST_F(GetFile, FailureAfterTheDataCountsAsAFailure) {
    harness.server.On("RETR", {Say("150 ok\r\n"), OpenData(), DataBytes("hello"), CloseData(), Say("426 not so\r\n")});
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Get("a.txt"));
    EXPECT_TRUE(harness.console.HasBox("(not so)"));
    EXPECT_TRUE(local.Contents().empty());
}

TEST_F(GetFile, ServerThatHangsUpEndsTheTransferAndIsToldOnce) {
    harness.server.On("RETR", {CloseControl()});
    EXPECT_FALSE(Get("a.txt"));
    EXPECT_TRUE(abort);
    EXPECT_EQ(1u, harness.console.Boxes().size());
    EXPECT_TRUE(harness.console.HasBox("The FTP Server has aborted your connection"));
    EXPECT_EQ(1, harness.view.PostedDisconnects());
    EXPECT_TRUE(local.Contents().empty());
}

TEST_F(GetFile, KeptFileCountsNeitherAsDoneNorAsFailed) {
    local.Write("a.txt", "mine");
    view.answers = {ReplaceAnswer::No};
    EXPECT_TRUE(Get("a.txt"));
    EXPECT_EQ("mine", local.Read("a.txt"));
    EXPECT_EQ(0, job.counters.files);
    EXPECT_EQ(0, job.counters.failures);
    EXPECT_TRUE(harness.console.HasLine("'a.txt' skipped; the local file was kept."));
    EXPECT_EQ(0, harness.server.CountCommands("RETR"));
}

TEST_F(GetFile, CancelInTheQuestionEndsTheTransfer) {
    local.Write("a.txt", "mine");
    view.answers = {ReplaceAnswer::Cancel};
    EXPECT_FALSE(Get("a.txt"));
    EXPECT_TRUE(abort);
    EXPECT_EQ("mine", local.Read("a.txt"));
}

TEST_F(GetFile, EmptyFileIsReceived) {
    harness.server.AddFile("/pub/empty", "");
    ASSERT_TRUE(Get("empty"));
    EXPECT_EQ((Names{"empty"}), local.Contents());
    EXPECT_EQ("", local.Read("empty"));
}

TEST_F(GetFile, MissingLocalFolderIsShownAsOneThatTakesNoFile) {
    harness.console.AnswerNext(BoxAnswer::Ignore);
    node = NodeFor("/pub", "a.txt");
    node.pszDestination = OwnedText::Copy(local.PathOf("missing"));
    EXPECT_FALSE(Get(node));
    EXPECT_TRUE(harness.console.HasBox("Unable to create a local file <a.txt>."));
    EXPECT_EQ(1, job.counters.failures);
}

#ifndef _WIN32
TEST_F(GetFile, FullDiskIsShownAndNothingIsLeft) {
    local.Write("a.txt", "mine");
    view.answers = {ReplaceAnswer::Yes};
    harness.console.AnswerNext(BoxAnswer::Ignore);
    const fault_injection::Scope scope(fault_injection::Call::WriteFile, 1, platform::kErrorDiskFull);
    EXPECT_FALSE(Get("a.txt"));
    EXPECT_TRUE(harness.console.HasBox("There is not enough free space on drive ("));
    EXPECT_EQ("mine", local.Read("a.txt"));
    EXPECT_EQ((Names{"a.txt"}), local.Contents());
}

TEST_F(GetFile, DeniedFileHasItsCode) {
    harness.console.AnswerNext(BoxAnswer::Ignore);
    const fault_injection::Scope scope(fault_injection::Call::OpenFile, 1, platform::kErrorAccessDenied);
    EXPECT_FALSE(Get("a.txt"));
    EXPECT_EQ(kLocalAccessDenied, node.iRetCode);
    EXPECT_TRUE(harness.console.HasBox("Unable to create a local file <a.txt>."));
}

// Every local call of a reception made to fail once: shown, nothing left behind, the old file there, the next file
// comes.
TEST_F(GetFile, EveryLocalFailureIsToldAndCostsNothing) {
    using fault_injection::Call;
    for (const Call call : {Call::OpenFile, Call::WriteFile, Call::MoveFile}) {
        for (int n = 1;; ++n) {
            local.Write("a.txt", "mine");
            NewJob(TransferStart::ListSelection);
            harness.console.Clear();
            view.answers = {ReplaceAnswer::Yes};
            harness.console.AnswerNext(BoxAnswer::Ignore);
            const bool received = [&] {
                const fault_injection::Scope scope(call, n, platform::kErrorAccessDenied);
                const bool done = Get("a.txt");
                return done && !scope.Fired();
            }();
            if (received) break;
            ASSERT_LT(n, 20);
            EXPECT_EQ((Names{"a.txt"}), local.Contents()) << n;
        }
        EXPECT_EQ("hello\r\n", local.Read("a.txt"));
    }
}
#endif

class CreateDir : public TransferTest {
  protected:
    bool Create(const char* name) {
        node = NodeFor("/pub", name, kNodeFolder);
        return DlgCreateDir(&node, abort);
    }
    TransferNode node;
};

TEST_F(CreateDir, FolderIsMadeAndShown) {
    ASSERT_TRUE(Create("sub"));
    EXPECT_EQ(FTP_COMPLETE, node.iRetCode);
    EXPECT_EQ((Names{"sub/"}), local.Contents());
    EXPECT_EQ((Names{"Creating Directory: sub "}), view.items);
    EXPECT_EQ((std::vector<int>{0, 250, 1000}), view.bars);
    EXPECT_EQ("A", view.modes);
    EXPECT_EQ(1, job.counters.folders);
    EXPECT_EQ("1 Folders Created", view.counters.back());
}

TEST_F(CreateDir, FolderThatExistsSucceeds) {
    ASSERT_TRUE(Create("sub"));
    ASSERT_TRUE(Create("sub"));
    EXPECT_EQ(2, job.counters.folders);
    EXPECT_TRUE(harness.console.Boxes().empty());
}

TEST_F(CreateDir, FileInItsPlaceEndsTheTransfer) {
    local.Write("sub", "a file");
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Create("sub"));
    EXPECT_TRUE(abort);
    EXPECT_EQ(FTP_ERROR, node.iRetCode);
    EXPECT_TRUE(harness.console.HasBox("An error occured while trying to create sub."));
    EXPECT_EQ("a file", local.Read("sub"));
    EXPECT_EQ(0, view.bars.back());
}

TEST_F(CreateDir, MissingParentIsShownAndRefused) {
    node = NodeFor("/pub", "sub", kNodeFolder);
    node.pszDestination = OwnedText::Copy(local.PathOf("missing"));
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(DlgCreateDir(&node, abort));
    EXPECT_EQ(FTP_ERROR, node.iRetCode);
    EXPECT_TRUE(harness.console.HasBox("Unable to set local directory <" + local.PathOf("missing") + ">."));
}

TEST_F(CreateDir, NamesAreMadeSafe) {
    ASSERT_TRUE(Create("..\\x"));
    ASSERT_TRUE(Create("nul"));
    EXPECT_EQ((Names{"..~x/", "~nul/"}), local.Contents());
}

TEST_F(CreateDir, DestinationBecomesTheCurrentFolderOnce) {
    ASSERT_TRUE(Create("sub"));
    node = NodeFor("/pub/sub", "deeper", kNodeFolder);
    node.pszDestination = OwnedText::Copy(local.PathOf("sub"));
    ASSERT_TRUE(DlgCreateDir(&node, abort));
    EXPECT_EQ(local.PathOf("sub"), platform::CurrentFolder());
    EXPECT_EQ(local.PathOf("sub"), job.currentLocalFolder);
    EXPECT_EQ((Names{"sub/", "sub/deeper/"}), local.Contents());
}

TEST_F(CreateDir, MissingFieldsOrAbortAreRefused) {
    EXPECT_FALSE(DlgCreateDir(nullptr, abort));
    EXPECT_FALSE(Create(""));
    SetTransferAbort(true);
    EXPECT_FALSE(Create("sub"));
    EXPECT_EQ(FTP_ERROR, node.iRetCode);
    EXPECT_TRUE(local.Contents().empty());
}

#ifndef _WIN32
TEST_F(CreateDir, DeniedFolderHasItsCodeAndRetryTriesAgain) {
    harness.console.AnswerNext(BoxAnswer::Retry);
    {
        const fault_injection::Scope scope(fault_injection::Call::CreateFolder, 1, platform::kErrorAccessDenied);
        EXPECT_TRUE(Create("sub"));
        EXPECT_EQ(1u, harness.console.Boxes().size());
    }
    harness.console.AnswerNext(BoxAnswer::Ignore);
    const fault_injection::Scope scope(fault_injection::Call::CreateFolder, 1, platform::kErrorAccessDenied);
    EXPECT_FALSE(Create("other"));
    EXPECT_EQ(kLocalAccessDenied, node.iRetCode);
    EXPECT_TRUE(abort);
}
#endif

}  // namespace
