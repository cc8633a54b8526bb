#include <utility>

#include "ftp/worker/blocking_call.h"
#include "platform/files.h"
#include "platform/system.h"
#include "support/bounded_wait.h"
#include "transfer/drop_fixture.h"
#include "transfer/local_tree_transfer.h"
#ifndef _WIN32
#include "host/fault_injection.h"
#endif

namespace {

class DropFailures : public DropTransfer {};

TEST_F(DropFailures, TargetThatCannotBeEnteredIsToldAndNothingIsSent) {
    harness.server.On("CWD", {Say("550 Permission denied\r\n")});
    target = "/closed";
    local.Write("a.txt", "aaa");
    EXPECT_EQ(-1, Drop({"a.txt"}));
    EXPECT_TRUE(harness.console.HasBox("An error occured while trying to set the remote directory to /closed."));
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
    EXPECT_EQ(1, view.closed);
}

TEST_F(DropFailures, ServerThatIsNotReadyClosesTheDialog) {
    local.Write("a.txt", "aaa");
    harness.server.On("NOOP", {CloseControl()});
    site->lastCommandTicks -= 5000;
    EXPECT_EQ(-1, Drop({"a.txt"}));
    EXPECT_EQ(1, view.closed);
    EXPECT_EQ(0, view.shown);
}

TEST_F(DropFailures, ItemFromElsewhereIsToldAndEndsTheDrop) {
    local.Write("one/a.txt", "aaa");
    local.Write("two/b.txt", "bbb");
    local.Write("one/c.txt", "ccc");
    EXPECT_EQ(1, Drop({"one/a.txt", "two/b.txt", "one/c.txt"}));
    EXPECT_TRUE(harness.console.HasBox("is not inside '" + local.PathOf("one") + "' and was skipped."));
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_EQ(1, harness.server.CountCommands("STOR"));
}

TEST_F(DropFailures, FailedFileEndsTheDropAndCountsTwice) {
    local.Write("a.txt", "aaa");
    local.Write("b.txt", "bbb");
    harness.server.Once("STOR", {Say("553 not here\r\n")});
    EXPECT_EQ(1, Drop({"a.txt", "b.txt"}));
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_EQ(1, job.counters.files);
    EXPECT_EQ(1, harness.server.CountCommands("STOR"));
    EXPECT_TRUE(view.listed.empty());
}

TEST_F(DropFailures, IgnoredFileIsCountedAndTheRestGoesOn) {
    local.Write("dir/a.txt", "aaa");
    local.Write("dir/b.txt", "bbb");
    harness.server.Once("STOR", {Say("553 not here\r\n")});
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_EQ(3, Drop({"dir"}));
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_FALSE(harness.server.Exists("/up/dir/a.txt"));
    EXPECT_EQ("bbb", Stored("dir/b.txt"));
    EXPECT_TRUE(harness.console.HasLine("1 of 3 items could not be transferred."));
    EXPECT_FALSE(abort);
}

// Nothing is chosen in a box that nobody sees: the failure ends its folder, and with that everything.
TEST_F(DropFailures, FailureBelowADroppedFolderSetsTheAbortFlag) {
    local.Write("dir/a.txt", "aaa");
    local.Write("dir/b.txt", "bbb");
    local.Write("z.txt", "zzz");
    harness.server.Once("STOR", {Say("553 not here\r\n")});
    gFoundationView.showMessageBox = FoundationView().showMessageBox;
    EXPECT_EQ(2, Drop({"dir", "z.txt"}));
    EXPECT_TRUE(abort);
    EXPECT_EQ(1, harness.server.CountCommands("STOR"));
}

TEST_F(DropFailures, FileFailureEndsItsFolderWithoutTheAbortFlag) {
    local.Write("dir/a.txt", "aaa");
    local.Write("dir/b.txt", "bbb");
    harness.server.AddFolder("/up/dir");
    harness.server.Once("STOR", {Say("553 not here\r\n")});
    gFoundationView.showMessageBox = FoundationView().showMessageBox;
    job.listedFolder = "/up";
    EXPECT_FALSE(TransferLocalTree(local.PathOf("dir").c_str(), local.Path().c_str(), "/up", abort));
    EXPECT_FALSE(abort);
    EXPECT_EQ(1, harness.server.CountCommands("STOR"));
}

TEST_F(DropFailures, FailedSubFolderSetsTheAbortFlag) {
    local.Write("dir/sub/a.txt", "aaa");
    local.Write("dir/z.txt", "zzz");
    harness.server.AddFolder("/up/dir");
    harness.server.On("MKD", {Say("550 Permission denied\r\n")});
    EXPECT_FALSE(TransferLocalTree(local.PathOf("dir").c_str(), local.Path().c_str(), "/up", abort));
    EXPECT_TRUE(abort);
    EXPECT_EQ(1u, harness.view.ServerErrors().size());
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
}

TEST_F(DropFailures, RefusedTopFolderEndsTheDropAndPutsTheRemoteFolderBack) {
    local.Write("dir/a.txt", "aaa");
    harness.server.On("MKD", {Say("550 Permission denied\r\n")});
    EXPECT_EQ(0, Drop({"dir"}));
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
    EXPECT_STREQ("/up", site->pszCurrentDir.get());
    EXPECT_EQ(1, view.closed);
}

TEST_F(DropFailures, FullDiskInTheMiddleOfATreeEndsItCleanly) {
    local.Write("dir/a.txt", "aaa");
    local.Write("dir/sub/b.txt", "bbb");
    local.Write("dir/sub/c.txt", "ccc");
    harness.server.Once("STOR", {Answer()});
    harness.server.On("STOR", {Say("150 ok\r\n"), OpenData(), ReadData(), CloseData(), Say("552 disk full\r\n")});
    harness.console.AnswerNext(BoxAnswer::Abort);
    EXPECT_EQ(4, Drop({"dir"}));
    EXPECT_TRUE(abort);
    EXPECT_EQ("aaa", Stored("dir/a.txt"));
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_TRUE(harness.console.HasBox("(disk full)"));
    EXPECT_EQ(1u, harness.console.Boxes().size());
    EXPECT_STREQ("/up", site->pszCurrentDir.get());
    EXPECT_EQ("CWD /up", harness.server.Commands().back());
    EXPECT_EQ(1, view.closed);
}

TEST_F(DropFailures, ServerThatHangsUpInTheMiddleOfATreeIsToldOnceAndEndsIt) {
    for (const char* verb : {"STOR", "MKD", "PORT"}) {
        SessionHarness fresh;
        gZarn.SENDUNIQUE = 0;
        fresh.server.AddFolder("/up");
        Site* const before = std::exchange(site, fresh.ConnectedSite());
        char reply[kReplySize] = "";
        DoCWD(site, "/up", reply, true);
        SetTransferAbort(false);
        view.closed = 0;
        local.Write("dir/a.txt", "aaa");
        local.Write("dir/sub/b.txt", "bbb");
        fresh.server.Once(verb, {Answer()});
        fresh.server.On(verb, {CloseControl()});
        Drop({"dir"});
        site = before;
        EXPECT_TRUE(abort) << verb;
        EXPECT_EQ(1, view.closed) << verb;
        EXPECT_EQ(1u, fresh.console.Boxes().size()) << verb;
        EXPECT_TRUE(fresh.console.HasBox("The FTP Server has aborted your connection")) << verb;
        EXPECT_EQ(1, job.counters.failures) << verb;
        EXPECT_EQ(2, fresh.server.CountCommands(verb)) << verb;
    }
}

TEST_F(DropFailures, ServerThatHangsUpInANewFolderEndsTheDrop) {
    local.Write("dir/a.txt", "aaa");
    harness.server.Once("CWD", {Answer()});
    harness.server.On("CWD", {CloseControl()});
    EXPECT_EQ(0, Drop({"dir"}));
    EXPECT_TRUE(abort);
    EXPECT_TRUE(harness.console.HasBox("The FTP Server has aborted your connection"));
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
    EXPECT_EQ(1, job.counters.failures);
}

TEST_F(DropFailures, RefusedUniqueStoreOfATreeEndsWithItsFirstFile) {
    gZarn.SENDUNIQUE = 1;
    local.Write("dir/a.txt", "aaa");
    local.Write("dir/b.txt", "bbb");
    harness.server.On("STOU", {Say("500 What?\r\n")});
    Drop({"dir"});
    EXPECT_EQ(1, harness.server.CountCommands("STOU"));
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_STREQ("/up", site->pszCurrentDir.get());
}

TEST_F(DropFailures, AbortInTheMiddleStopsWithinAStep) {
    local.Write("dir/a.txt", "aaa");
    // More than the sockets take in.
    constexpr std::size_t kMany = 20'000'000;
    local.Write("dir/b.txt", std::string(kMany, 'b'));
    local.Write("dir/c.txt", "ccc");
    harness.server.Once("STOR", {Answer()});
    harness.server.On("STOR", {Say("150 ok\r\n"), OpenData(), Hold(), CloseData(), Say("426 gone\r\n")});
    SetTransferAbort(false);
    OtherThread user([this] {
        test_support::WaitUntil([this] {
            const auto progress = harness.view.Progress();
            return !progress.empty() && progress.back().total == kMany;
        });
        AbortAsTheUserDoes();
        harness.server.Release();
    });
    NewJob(TransferStart::DropFiles);
    job.localPaths = {local.PathOf("dir")};
    Zarn_TransferDropFiles(gSession.transferAbort);
    user.Join();
    EXPECT_EQ(2, harness.server.CountCommands("STOR"));
    EXPECT_TRUE(harness.console.Boxes().empty());
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_STREQ("/up", site->pszCurrentDir.get());
    EXPECT_EQ("CWD /up", harness.server.Commands().back());
    EXPECT_EQ(1, view.closed);
    SetTransferAbort(false);
}

TEST_F(DropFailures, TooBigFileIsSkippedAfterTheMessageAndTheRestGoesOn) {
    local.Write("a.bin", "");
    const platform::FileHandle file = platform::OpenFile(local.PathOf("a.bin").c_str(), {platform::FileAccess::Write});
    ASSERT_TRUE(platform::SeekTo(file, 0x1'0000'0000));
    ASSERT_TRUE(platform::WriteFile(file, std::string_view("x")));
    platform::CloseFile(file);
    local.Write("b.txt", "bbb");
    EXPECT_EQ(2, Drop({"a.bin", "b.txt"}));
    EXPECT_EQ("bbb", Stored("b.txt"));
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_TRUE(harness.console.HasBox("Files of 4 GiB and more cannot be sent."));
    EXPECT_EQ(1, harness.server.CountCommands("STOR"));
}

TEST_F(DropFailures, MissingArgumentsAreRefused) {
    platform::FileInfo found;
    found.name = "a.txt";
    const std::string folder = local.Path();
    EXPECT_FALSE(TransferLocalFile(nullptr, folder.c_str(), "/up", &found, abort));
    EXPECT_FALSE(TransferLocalFile(folder.c_str(), "", "/up", &found, abort));
    EXPECT_FALSE(TransferLocalFile(folder.c_str(), folder.c_str(), nullptr, &found, abort));
    EXPECT_FALSE(TransferLocalFile(folder.c_str(), folder.c_str(), "/up", nullptr, abort));
    EXPECT_FALSE(TransferLocalTree("", folder.c_str(), "/up", abort));
    EXPECT_TRUE(harness.server.Commands().empty());
}

TEST_F(DropFailures, RemoteStartWithoutASeparatorTakesNothing) {
    local.Write("a.txt", "aaa");
    site->pszCurrentDir = OwnedText::Copy("somewhere");
    EXPECT_EQ(0, Drop({"a.txt"}));
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
}

#ifndef _WIN32
TEST_F(DropFailures, UnreadableFolderIsToldAndIgnoreGoesOn) {
    local.Write("dir/a.txt", "aaa");
    local.Write("z.txt", "zzz");
    harness.console.AnswerNext(BoxAnswer::Ignore);
    const fault_injection::Scope scope(fault_injection::Call::ListFolder, 1, platform::kErrorAccessDenied);
    EXPECT_EQ(2, Drop({"dir", "z.txt"}));
    EXPECT_TRUE(harness.console.HasBox("Unable to open the local folder\n    <" + local.PathOf("dir") + ">."));
    EXPECT_EQ("zzz", Stored("z.txt"));
    EXPECT_EQ(1, job.counters.failures);
}

TEST_F(DropFailures, UnreadableFolderIsReadAgainOnRetryAndEndsTheDropOnAbort) {
    local.Write("dir/a.txt", "aaa");
    {
        harness.console.AnswerNext(BoxAnswer::Retry);
        const fault_injection::Scope scope(fault_injection::Call::ListFolder, 1, platform::kErrorAccessDenied);
        EXPECT_EQ(2, Drop({"dir"}));
        EXPECT_FALSE(abort);
    }
    harness.console.AnswerNext(BoxAnswer::Abort);
    const fault_injection::Scope scope(fault_injection::Call::ListFolder, 1, platform::kErrorAccessDenied);
    EXPECT_EQ(1, Drop({"dir"}));
    EXPECT_TRUE(abort);
}
#endif

}  // namespace
