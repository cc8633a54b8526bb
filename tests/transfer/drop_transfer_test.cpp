#include "transfer/drop_transfer.h"

#ifndef _WIN32
#include <unistd.h>
#endif

#include "foundation/trace.h"
#include "ftp/blocking_call.h"
#include "ftp/remote_commands.h"
#include "ftp/result_codes.h"
#include "platform/files.h"
#include "platform/system.h"
#include "support/bounded_wait.h"
#include "transfer/local_tree_transfer.h"
#include "transfer/transfer_fixture.h"
#ifndef _WIN32
#include "host/fault_injection.h"
#endif

namespace {

class DropTransfer : public TransferTest {
  protected:
    DropTransfer() {
        gZarn.SENDUNIQUE = 0;
        harness.server.AddFolder("/up");
        char reply[kReplySize] = "";
        DoCWD(site, "/up", reply, true);
        harness.server.ForgetCommands();
    }
    int Drop(const Names& names) {
        view.dropped.clear();
        for (const std::string& name : names) view.dropped.push_back(local.PathOf(name));
        return Zarn_TransferDropFiles(abort);
    }
    std::string Stored(const std::string& name) { return harness.server.FileBytes("/up/" + name); }
    Names ListedNames() {
        Names names;
        for (const LVobjectPtr& entry : view.listed) names.emplace_back(entry->name.c_str());
        return names;
    }
};

TEST_F(DropTransfer, FileAndFolderOfOneFolderLandInTheCurrentRemoteFolder) {
    local.Write("a.txt", "aaa");
    local.Write("dir/b.txt", "bbb");
    EXPECT_EQ(3, Drop({"a.txt", "dir"}));
    EXPECT_EQ("aaa", Stored("a.txt"));
    EXPECT_EQ("bbb", Stored("dir/b.txt"));
    EXPECT_EQ("2 Files Transfered,  1 Folders Created", view.counters.back());
    EXPECT_EQ((Names{"a.txt", "dir"}), ListedNames());
    EXPECT_EQ(1, view.shown);
    EXPECT_EQ(1, view.closed);
    EXPECT_FALSE(abort);
    EXPECT_TRUE(harness.console.Boxes().empty());
}

TEST_F(DropTransfer, TreeIsSentEachFolderBeforeWhatItHolds) {
    local.Write("dir/a.txt", "aaa");
    local.Write("dir/deep/b.txt", "bbb");
    local.Write("dir/z.txt", "zzz");
    local.MakeFolder("dir/empty");
    EXPECT_EQ(6, Drop({"dir"}));
    EXPECT_EQ("aaa", Stored("dir/a.txt"));
    EXPECT_EQ("bbb", Stored("dir/deep/b.txt"));
    EXPECT_EQ("zzz", Stored("dir/z.txt"));
    EXPECT_TRUE(harness.server.Exists("/up/dir/empty"));
    EXPECT_EQ((Names{"Creating Directory: dir ", "Transfering: a.txt", "Creating Directory: deep ",
                     "Transfering: b.txt", "Creating Directory: empty ", "Transfering: z.txt"}),
              view.items);
    EXPECT_EQ("3 Files Transfered,  3 Folders Created", view.counters.back());
}

TEST_F(DropTransfer, OnlyWhatLandsInTheShownFolderJoinsTheList) {
    local.Write("dir/a.txt", "aaa");
    local.Write("b.txt", "bb");
    Drop({"dir", "b.txt"});
    ASSERT_EQ((Names{"dir", "b.txt"}), ListedNames());
    EXPECT_EQ(kKindFolder, view.listed[0]->type);
    EXPECT_STREQ("d---------", view.listed[0]->mode.get());
    EXPECT_EQ(kKindFile, view.listed[1]->type);
    EXPECT_EQ(2u, view.listed[1]->size);
    EXPECT_STREQ("user", view.listed[1]->owner.get());
    EXPECT_NE(nullptr, view.listed[1]->fileType);
    EXPECT_NE(0u, view.listed[1]->time);
}

TEST_F(DropTransfer, ListShowsTheNameThatTheServerChose) {
    gZarn.SENDUNIQUE = 1;
    local.Write("a.txt", "aaa");
    Drop({"a.txt"});
    Drop({"a.txt"});
    EXPECT_EQ((Names{"a.txt", "a.txt.1"}), ListedNames());
    EXPECT_EQ("aaa", Stored("a.txt.1"));
    harness.server.Once("STOU", {Say("150-FILE: up.7.0001\r\n150 Connecting to port 4711\r\n"), OpenData(), ReadData(),
                                 CloseData(), Say("226 ok\r\n")});
    Drop({"a.txt"});
    EXPECT_EQ("up.7.0001", ListedNames().back());
    harness.server.On("STOU", {Say("150 Ok to send.\r\n"), OpenData(), ReadData(), CloseData(), Say("226 ok\r\n")});
    Drop({"a.txt"});
    EXPECT_EQ("a.txt", ListedNames().back());
}

TEST_F(DropTransfer, BothSidesAreBackWhereTheyStood) {
    local.Write("dir/deep/a.txt", "aaa");
    Drop({"dir"});
    EXPECT_EQ("CWD /up", harness.server.Commands().back());
    EXPECT_STREQ("/up", site->pszCurrentDir.get());
    EXPECT_EQ(local.Path(), platform::CurrentFolder());
}

TEST_F(DropTransfer, TargetStandsInForTheCurrentFolderAndIsLeftAgain) {
    harness.server.AddFolder("/else/where");
    view.target = "/else/where";
    local.Write("a.txt", "aaa");
    local.Write("dir/b.txt", "bbb");
    EXPECT_EQ(3, Drop({"a.txt", "dir"}));
    EXPECT_EQ("aaa", harness.server.FileBytes("/else/where/a.txt"));
    EXPECT_EQ("bbb", harness.server.FileBytes("/else/where/dir/b.txt"));
    EXPECT_TRUE(view.listed.empty());
    EXPECT_STREQ("/up", site->pszCurrentDir.get());
    EXPECT_EQ("CWD /up", harness.server.Commands().back());
}

TEST_F(DropTransfer, TargetThatIsTheShownFolderJoinsTheList) {
    view.target = "/up";
    local.Write("a.txt", "aaa");
    Drop({"a.txt"});
    EXPECT_EQ((Names{"a.txt"}), ListedNames());
}

TEST_F(DropTransfer, TargetThatCannotBeEnteredIsToldAndNothingIsSent) {
    harness.server.On("CWD", {Say("550 Permission denied\r\n")});
    view.target = "/closed";
    local.Write("a.txt", "aaa");
    EXPECT_EQ(-1, Drop({"a.txt"}));
    EXPECT_TRUE(harness.console.HasBox("An error occured while trying to set the remote directory to /closed."));
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
    EXPECT_EQ(1, view.closed);
}

TEST_F(DropTransfer, NothingDroppedClosesTheDialog) {
    EXPECT_EQ(-1, Drop({}));
    EXPECT_EQ(1, view.closed);
    EXPECT_EQ(0, view.shown);
    EXPECT_TRUE(harness.server.Commands().empty());
}

TEST_F(DropTransfer, ServerThatIsNotReadyClosesTheDialog) {
    local.Write("a.txt", "aaa");
    harness.server.On("NOOP", {CloseControl()});
    site->lastCommandTicks -= 5000;
    EXPECT_EQ(-1, Drop({"a.txt"}));
    EXPECT_EQ(1, view.closed);
    EXPECT_EQ(0, view.shown);
}

TEST_F(DropTransfer, PathThatCannotBeFoundIsPassedOver) {
    local.Write("a.txt", "aaa");
    EXPECT_EQ(1, Drop({"missing", "a.txt"}));
    EXPECT_EQ("aaa", Stored("a.txt"));
    EXPECT_EQ(0, gTransfer.counters.failures);
    EXPECT_TRUE(harness.console.Boxes().empty());
}

TEST_F(DropTransfer, OwnAndParentFolderArePassedOver) {
    local.Write("dir/a.txt", "aaa");
    local.Write("b.txt", "bbb");
    EXPECT_EQ(1, Drop({"b.txt", "dir/.", "dir/.."}));
    EXPECT_EQ(0, harness.server.CountCommands("MKD"));
}

TEST_F(DropTransfer, FolderNamedWithASeparatorBehindItIsTheSameFolder) {
    local.Write("dir/a.txt", "aaa");
    EXPECT_EQ(2, Drop({"dir/"}));
    EXPECT_EQ("aaa", Stored("dir/a.txt"));
}

TEST_F(DropTransfer, FolderOfTheFirstItemServesForAll) {
    local.Write("a.txt", "aaa");
    local.Write("below/b.txt", "bbb");
    EXPECT_EQ(2, Drop({"a.txt", "below/b.txt"}));
    EXPECT_EQ("bbb", Stored("below/b.txt"));
}

TEST_F(DropTransfer, ItemFromElsewhereIsToldAndEndsTheDrop) {
    local.Write("one/a.txt", "aaa");
    local.Write("two/b.txt", "bbb");
    local.Write("one/c.txt", "ccc");
    EXPECT_EQ(1, Drop({"one/a.txt", "two/b.txt", "one/c.txt"}));
    EXPECT_TRUE(harness.console.HasBox("does not lie below '" + local.PathOf("one") + "' and is not sent."));
    EXPECT_EQ(1, gTransfer.counters.failures);
    EXPECT_EQ(1, harness.server.CountCommands("STOR"));
}

TEST_F(DropTransfer, NamesOutsideAsciiTravelAsUtf8) {
    local.Write("Größe/灯台 🗼.txt", "light");
    EXPECT_EQ(2, Drop({"Größe"}));
    EXPECT_EQ("light", Stored("Größe/灯台 🗼.txt"));
}

TEST_F(DropTransfer, PercentSignsInNamesAreOrdinaryCharacters) {
    local.Write("100% %s/50%n.txt", "x");
    EXPECT_EQ(2, Drop({"100% %s"}));
    EXPECT_EQ("x", Stored("100% %s/50%n.txt"));
}

TEST_F(DropTransfer, EmptyFileAndEmptyFolderAreSent) {
    local.Write("empty.txt", "");
    local.MakeFolder("nothing");
    EXPECT_EQ(2, Drop({"empty.txt", "nothing"}));
    EXPECT_TRUE(harness.server.Exists("/up/empty.txt"));
    EXPECT_TRUE(harness.server.Exists("/up/nothing"));
}

TEST_F(DropTransfer, FolderThatExistsOnTheServerIsFilled) {
    harness.server.AddFile("/up/dir/old.txt", "old");
    local.Write("dir/new.txt", "new");
    EXPECT_EQ(2, Drop({"dir"}));
    EXPECT_EQ("old", Stored("dir/old.txt"));
    EXPECT_EQ("new", Stored("dir/new.txt"));
    EXPECT_EQ(0, harness.server.CountCommands("MKD"));
}

// A dropped folder maps below the starting folder, so that case conversion touches its files only.
TEST_F(DropTransfer, CaseConversionChangesFilesNotFolders) {
    gZarn.mode.caseConversion = 1;
    local.Write("dir/a.txt", "aaa");
    EXPECT_EQ(2, Drop({"dir"}));
    EXPECT_EQ("aaa", Stored("dir/A.TXT"));
}

TEST_F(DropTransfer, FailedFileEndsTheDropAndCountsTwice) {
    local.Write("a.txt", "aaa");
    local.Write("b.txt", "bbb");
    harness.server.Once("STOR", {Say("553 not here\r\n")});
    EXPECT_EQ(1, Drop({"a.txt", "b.txt"}));
    EXPECT_EQ(1, gTransfer.counters.failures);
    EXPECT_EQ(1, gTransfer.counters.files);
    EXPECT_EQ(1, harness.server.CountCommands("STOR"));
    EXPECT_TRUE(view.listed.empty());
}

TEST_F(DropTransfer, IgnoredFileIsCountedAndTheRestGoesOn) {
    local.Write("dir/a.txt", "aaa");
    local.Write("dir/b.txt", "bbb");
    harness.server.Once("STOR", {Say("553 not here\r\n")});
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_EQ(3, Drop({"dir"}));
    EXPECT_EQ(1, gTransfer.counters.failures);
    EXPECT_FALSE(harness.server.Exists("/up/dir/a.txt"));
    EXPECT_EQ("bbb", Stored("dir/b.txt"));
    EXPECT_TRUE(harness.console.HasLine("1 of 3 items could not be transferred."));
    EXPECT_FALSE(abort);
}

// Nothing is chosen in a box that nobody sees: the failure ends its folder, and with that everything.
TEST_F(DropTransfer, FailureBelowADroppedFolderSetsTheAbortFlag) {
    local.Write("dir/a.txt", "aaa");
    local.Write("dir/b.txt", "bbb");
    local.Write("z.txt", "zzz");
    harness.server.Once("STOR", {Say("553 not here\r\n")});
    gFoundationView.showMessageBox = nullptr;
    EXPECT_EQ(2, Drop({"dir", "z.txt"}));
    EXPECT_TRUE(abort);
    EXPECT_EQ(1, harness.server.CountCommands("STOR"));
}

TEST_F(DropTransfer, FileFailureEndsItsFolderWithoutTheAbortFlag) {
    local.Write("dir/a.txt", "aaa");
    local.Write("dir/b.txt", "bbb");
    harness.server.AddFolder("/up/dir");
    harness.server.Once("STOR", {Say("553 not here\r\n")});
    gFoundationView.showMessageBox = nullptr;
    gTransfer.listedFolder = "/up";
    EXPECT_FALSE(TransferLocalTree(local.PathOf("dir").c_str(), local.Path().c_str(), "/up", abort));
    EXPECT_FALSE(abort);
    EXPECT_EQ(1, harness.server.CountCommands("STOR"));
}

TEST_F(DropTransfer, FailedSubFolderSetsTheAbortFlag) {
    local.Write("dir/sub/a.txt", "aaa");
    local.Write("dir/z.txt", "zzz");
    harness.server.AddFolder("/up/dir");
    harness.server.On("MKD", {Say("550 Permission denied\r\n")});
    EXPECT_FALSE(TransferLocalTree(local.PathOf("dir").c_str(), local.Path().c_str(), "/up", abort));
    EXPECT_TRUE(abort);
    EXPECT_EQ(1u, harness.view.ServerErrors().size());
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
}

TEST_F(DropTransfer, RefusedTopFolderEndsTheDropAndPutsTheRemoteFolderBack) {
    local.Write("dir/a.txt", "aaa");
    harness.server.On("MKD", {Say("550 Permission denied\r\n")});
    EXPECT_EQ(0, Drop({"dir"}));
    EXPECT_EQ(1, gTransfer.counters.failures);
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
    EXPECT_STREQ("/up", site->pszCurrentDir.get());
    EXPECT_EQ(1, view.closed);
}

TEST_F(DropTransfer, FullDiskInTheMiddleOfATreeEndsItCleanly) {
    local.Write("dir/a.txt", "aaa");
    local.Write("dir/sub/b.txt", "bbb");
    local.Write("dir/sub/c.txt", "ccc");
    harness.server.Once("STOR", {Answer()});
    harness.server.On("STOR", {Say("150 ok\r\n"), OpenData(), ReadData(), CloseData(), Say("552 disk full\r\n")});
    harness.console.AnswerNext(BoxAnswer::Abort);
    EXPECT_EQ(4, Drop({"dir"}));
    EXPECT_TRUE(abort);
    EXPECT_EQ("aaa", Stored("dir/a.txt"));
    EXPECT_EQ(1, gTransfer.counters.failures);
    EXPECT_TRUE(harness.console.HasBox("(disk full)"));
    EXPECT_EQ(1u, harness.console.Boxes().size());
    EXPECT_STREQ("/up", site->pszCurrentDir.get());
    EXPECT_EQ("CWD /up", harness.server.Commands().back());
    EXPECT_EQ(1, view.closed);
}

TEST_F(DropTransfer, ServerThatHangsUpInTheMiddleOfATreeIsToldOnceAndEndsIt) {
    for (const char* verb : {"STOR", "MKD", "PORT"}) {
        SessionHarness fresh;
        gZarn.SENDUNIQUE = 0;
        fresh.server.AddFolder("/up");
        Site* own = fresh.ConnectedSite();
        char reply[kReplySize] = "";
        DoCWD(own, "/up", reply, true);
        abort = false;
        view.closed = 0;
        local.Write("dir/a.txt", "aaa");
        local.Write("dir/sub/b.txt", "bbb");
        fresh.server.Once(verb, {Answer()});
        fresh.server.On(verb, {CloseControl()});
        Drop({"dir"});
        EXPECT_TRUE(abort) << verb;
        EXPECT_EQ(1, view.closed) << verb;
        EXPECT_EQ(1u, fresh.console.Boxes().size()) << verb;
        EXPECT_TRUE(fresh.console.HasBox("The FTP Server has aborted your connection")) << verb;
        EXPECT_EQ(1, gTransfer.counters.failures) << verb;
        EXPECT_EQ(2, fresh.server.CountCommands(verb)) << verb;
    }
}

TEST_F(DropTransfer, ServerThatHangsUpInANewFolderEndsTheDrop) {
    local.Write("dir/a.txt", "aaa");
    harness.server.Once("CWD", {Answer()});
    harness.server.On("CWD", {CloseControl()});
    EXPECT_EQ(0, Drop({"dir"}));
    EXPECT_TRUE(abort);
    EXPECT_TRUE(harness.console.HasBox("The FTP Server has aborted your connection"));
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
    EXPECT_EQ(1, gTransfer.counters.failures);
}

TEST_F(DropTransfer, RefusedUniqueStoreOfATreeEndsWithItsFirstFile) {
    gZarn.SENDUNIQUE = 1;
    local.Write("dir/a.txt", "aaa");
    local.Write("dir/b.txt", "bbb");
    harness.server.On("STOU", {Say("500 What?\r\n")});
    Drop({"dir"});
    EXPECT_EQ(1, harness.server.CountCommands("STOU"));
    EXPECT_EQ(1, gTransfer.counters.failures);
    EXPECT_STREQ("/up", site->pszCurrentDir.get());
}

TEST_F(DropTransfer, AbortInTheMiddleStopsWithinAStep) {
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
    view.dropped = {local.PathOf("dir")};
    Zarn_TransferDropFiles(gSession.transferAbort);
    user.Join();
    EXPECT_EQ(2, harness.server.CountCommands("STOR"));
    EXPECT_TRUE(harness.console.Boxes().empty());
    EXPECT_EQ(1, gTransfer.counters.failures);
    EXPECT_STREQ("/up", site->pszCurrentDir.get());
    EXPECT_EQ("CWD /up", harness.server.Commands().back());
    EXPECT_EQ(1, view.closed);
    SetTransferAbort(false);
}

TEST_F(DropTransfer, TooBigFileIsSkippedAfterTheMessageAndTheRestGoesOn) {
    local.Write("a.bin", "");
    const platform::FileHandle file = platform::OpenFile(local.PathOf("a.bin").c_str(), {platform::FileAccess::Write});
    ASSERT_TRUE(platform::SeekTo(file, 0x1'0000'0000));
    ASSERT_TRUE(platform::WriteFile(file, std::string_view("x")));
    platform::CloseFile(file);
    local.Write("b.txt", "bbb");
    EXPECT_EQ(2, Drop({"a.bin", "b.txt"}));
    EXPECT_EQ("bbb", Stored("b.txt"));
    EXPECT_EQ(1, gTransfer.counters.failures);
    EXPECT_TRUE(harness.console.HasBox("Files of 4 GiB and more cannot be sent."));
    EXPECT_EQ(1, harness.server.CountCommands("STOR"));
}

TEST_F(DropTransfer, FilesNamedOnStandardInputAllLandInTheCurrentFolder) {
    local.Write("a.txt", "aaa");
    local.Write("one/b.txt", "bbb");
    local.Write("two/c.txt", "ccc");
    view.named = {"a.txt", local.PathOf("one/b.txt"), "two"};
    gTrace.debug = true;
    EXPECT_EQ(4, Zarn_TransferStdInFiles(abort));
    EXPECT_EQ("aaa", Stored("a.txt"));
    EXPECT_EQ("bbb", Stored("b.txt"));
    EXPECT_EQ("ccc", Stored("two/c.txt"));
    EXPECT_TRUE(harness.console.HasLine("Transfering 3 StdIn Files"));
    EXPECT_EQ(1, view.closed);
}

TEST_F(DropTransfer, NothingNamedOnStandardInputSendsNothing) {
    EXPECT_EQ(-1, Zarn_TransferStdInFiles(abort));
    EXPECT_EQ(1, view.closed);
}

TEST_F(DropTransfer, MissingArgumentsAreRefused) {
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

TEST_F(DropTransfer, RemoteStartWithoutASeparatorTakesNothing) {
    local.Write("a.txt", "aaa");
    site->pszCurrentDir = OwnedText::Copy("somewhere");
    EXPECT_EQ(0, Drop({"a.txt"}));
    EXPECT_EQ(1, gTransfer.counters.failures);
    EXPECT_EQ(0, harness.server.CountCommands("STOR"));
}

#ifndef _WIN32
TEST_F(DropTransfer, LinkedFolderThatLeadsBackIsPassedOver) {
    local.Write("dir/a.txt", "aaa");
    ASSERT_EQ(0, symlink(local.Path().c_str(), local.PathOf("dir/loop").c_str()));
    ASSERT_EQ(0, symlink(local.PathOf("dir/a.txt").c_str(), local.PathOf("dir/link.txt").c_str()));
    EXPECT_EQ(3, Drop({"dir"}));
    EXPECT_FALSE(harness.server.Exists("/up/dir/loop"));
    EXPECT_EQ("aaa", Stored("dir/link.txt"));
    EXPECT_TRUE(harness.console.HasLine("'" + local.PathOf("dir/loop") + "' leads to another folder and is not sent."));
    unlink(local.PathOf("dir/loop").c_str());
}

TEST_F(DropTransfer, NameWithALineEndIsLeftOutAndTheRestGoesOn) {
    local.Write("dir/a\r\nDELE b.txt", "x");
    local.Write("dir/b.txt", "bbb");
    EXPECT_EQ(2, Drop({"dir"}));
    EXPECT_EQ("bbb", Stored("dir/b.txt"));
    EXPECT_EQ(0, harness.server.CountCommands("DELE"));
    EXPECT_EQ(1, gTransfer.counters.failures);
    EXPECT_TRUE(harness.console.HasBox("cannot be sent to a server."));
}

TEST_F(DropTransfer, UnreadableFolderIsToldAndIgnoreGoesOn) {
    local.Write("dir/a.txt", "aaa");
    local.Write("z.txt", "zzz");
    harness.console.AnswerNext(BoxAnswer::Ignore);
    const fault_injection::Scope scope(fault_injection::Call::ListFolder, 1, platform::kErrorAccessDenied);
    EXPECT_EQ(2, Drop({"dir", "z.txt"}));
    EXPECT_TRUE(harness.console.HasBox("Unable to open the local folder\n    <" + local.PathOf("dir") + ">."));
    EXPECT_EQ("zzz", Stored("z.txt"));
    EXPECT_EQ(1, gTransfer.counters.failures);
}

TEST_F(DropTransfer, UnreadableFolderIsReadAgainOnRetryAndEndsTheDropOnAbort) {
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
