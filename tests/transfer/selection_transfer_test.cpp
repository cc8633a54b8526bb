#include "transfer/selection_transfer.h"

#include <memory>

#include "foundation/file_time.h"
#include "ftp/control/control_connection.h"
#include "ftp/worker/result_codes.h"
#include "listing/tree_node.h"
#include "platform/files.h"
#include "transfer/disk_space.h"
#include "transfer/transfer_fixture.h"
#include "transfer/tree_transfer.h"

namespace {

class SelectionTransfer : public TransferTest {
  protected:
    SelectionTransfer() {
        harness.server.AddFile("/pub/a.txt", "aaa");
        harness.server.AddFile("/pub/b.txt", "bbb");
        harness.server.AddFile("/pub/dir/c.txt", "ccc");
        harness.server.AddFile("/pub/dir/deep/d.txt", "ddd");
        harness.server.AddFolder("/pub/empty");
        site->pszCurrentDir = OwnedText::Copy("/pub");
        harness.server.SetHome("/pub");
        char reply[kReplySize] = "";
        command(site, reply, "CWD /pub");
        harness.server.ForgetCommands();
    }
    static std::string File(const std::string& name, const std::string& size = "3") {
        return "-rw-r--r-- 1 u g " + size + " Jan 2 2001 " + name;
    }
    int ReceiveSelection() {
        job.remoteItems = ItemsOf(view.selection);
        return Zarn_TransferLVitems(abort);
    }
    static std::string Folder(const std::string& name) { return "drwxr-xr-x 2 u g 0 Jan 2 2001 " + name; }
};

TEST_F(SelectionTransfer, SelectedFilesAreReceivedInListOrder) {
    view.Select(File("b.txt"));
    view.Select(File("a.txt"));
    EXPECT_EQ(2, ReceiveSelection());
    EXPECT_EQ((Names{"a.txt", "b.txt"}), local.Contents());
    EXPECT_EQ("aaa", local.Read("a.txt"));
    EXPECT_EQ((Names{"Transfering: b.txt", "Transfering: a.txt"}), view.items);
    EXPECT_EQ(1, view.shown);
    EXPECT_EQ(1, view.closed);
    EXPECT_EQ(0, harness.server.CountCommands("CWD"));
}

TEST_F(SelectionTransfer, NothingSelectedClosesTheDialog) {
    EXPECT_EQ(-1, ReceiveSelection());
    EXPECT_EQ(1, view.closed);
    EXPECT_EQ(0, view.shown);
    EXPECT_TRUE(harness.server.Commands().empty());
}

TEST_F(SelectionTransfer, ServerThatIsNotReadyClosesTheDialog) {
    view.Select(File("a.txt"));
    harness.server.On("NOOP", {CloseControl()});
    site->lastCommandTicks -= 5000;
    EXPECT_EQ(-1, ReceiveSelection());
    EXPECT_EQ(1, view.closed);
    EXPECT_EQ(0, view.shown);
    EXPECT_TRUE(harness.console.HasBox("The FTP Server has aborted your connection"));
}

TEST_F(SelectionTransfer, LinksDevicesAndPipesArePassedOver) {
    view.Select("lrwxrwxrwx 1 u g 3 Jan 2 2001 l -> a.txt");
    view.Select("crw-rw-rw- 1 u g 4,0 Jan 2 2001 tty");
    view.Select("prw-rw-rw- 1 u g 0 Jan 2 2001 pipe");
    view.Select(File("a.txt"));
    EXPECT_EQ(1, ReceiveSelection());
    EXPECT_EQ(1, harness.server.CountCommands("RETR"));
}

TEST_F(SelectionTransfer, FolderComesWithEverythingBelowDepthFirst) {
    view.Select(Folder("dir"));
    EXPECT_EQ(4, ReceiveSelection());
    EXPECT_EQ((Names{"dir/", "dir/c.txt", "dir/deep/", "dir/deep/d.txt"}), local.Contents());
    EXPECT_EQ("ddd", local.Read("dir/deep/d.txt"));
    EXPECT_EQ("2 Files Transfered,  2 Folders Created", view.counters.back());
}

TEST_F(SelectionTransfer, BothSidesAreBackWhereTheyStood) {
    view.Select(Folder("dir"));
    ReceiveSelection();
    EXPECT_EQ(local.Path(), platform::CurrentFolder());
    EXPECT_STREQ("/pub", site->pszCurrentDir.get());
    EXPECT_EQ("CWD /pub", harness.server.Commands().back());
}

TEST_F(SelectionTransfer, TargetOfADropReceivesAndIsLeftAgain) {
    local.MakeFolder("target");
    job.targetFolder = local.PathOf("target");
    view.Select(File("a.txt"));
    view.Select(Folder("dir"));
    EXPECT_EQ(5, ReceiveSelection());
    EXPECT_EQ((Names{"target/", "target/a.txt", "target/dir/", "target/dir/c.txt", "target/dir/deep/",
                     "target/dir/deep/d.txt"}),
              local.Contents());
    EXPECT_EQ(local.Path(), platform::CurrentFolder());
    EXPECT_EQ(local.PathOf("target"), view.destinations.front());
}

TEST_F(SelectionTransfer, TargetThatIsGoneIsToldAndNothingIsReceived) {
    job.targetFolder = local.PathOf("gone");
    view.Select(File("a.txt"));
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_EQ(-1, ReceiveSelection());
    EXPECT_TRUE(harness.console.HasBox("Unable to set local directory <" + local.PathOf("gone") + ">."));
    EXPECT_TRUE(local.Contents().empty());
    EXPECT_EQ(0, harness.server.CountCommands("RETR"));
    EXPECT_EQ(local.Path(), platform::CurrentFolder());
    EXPECT_EQ(1, view.closed);
}

TEST_F(SelectionTransfer, FailedItemsAreCountedOnceAndTheRestGoesOn) {
    harness.console.AnswerNext(BoxAnswer::Ignore);
    view.Select(File("missing.txt"));
    view.Select(File("a.txt"));
    EXPECT_EQ(1, ReceiveSelection());
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_TRUE(harness.console.HasLine("1 of 2 items could not be transferred."));
    EXPECT_EQ((Names{"a.txt"}), local.Contents());
}

TEST_F(SelectionTransfer, AbortEndsTheSelection) {
    harness.console.AnswerNext(BoxAnswer::Abort);
    view.Select(File("missing.txt"));
    view.Select(File("a.txt"));
    EXPECT_EQ(0, ReceiveSelection());
    EXPECT_TRUE(local.Contents().empty());
    EXPECT_EQ(1, harness.server.CountCommands("RETR"));
}

TEST_F(SelectionTransfer, TwoRemoteNamesThatBecomeOneLocalNameAreBothKept) {
    harness.server.AddFile("/pub/x?y", "first");
    harness.server.AddFile("/pub/x*y", "second");
    view.answers = {ReplaceAnswer::YesToAll, ReplaceAnswer::YesToAll};
    view.Select(File("x?y"));
    view.Select(File("x*y"));
    EXPECT_EQ(2, ReceiveSelection());
    EXPECT_EQ("first", local.Read("x~y"));
    EXPECT_EQ("second", local.Read("x~y (2)"));
}

TEST_F(SelectionTransfer, FilesCalledAlikeInTwoFoldersDoNotMeet) {
    harness.server.AddFile("/pub/dir/a.txt", "the other");
    view.Select(File("a.txt"));
    view.Select(Folder("dir"));
    ReceiveSelection();
    EXPECT_EQ("aaa", local.Read("a.txt"));
    EXPECT_EQ("the other", local.Read("dir/a.txt"));
}

TEST_F(SelectionTransfer, QuestionKnowsTheListingsSizeAndTime) {
    local.Write("a.txt", "mine");
    view.Select(File("a.txt", "3"));
    ReceiveSelection();
    ASSERT_EQ(1u, view.questions.size());
    EXPECT_EQ(3u, view.questions[0].newSize);
    CalendarTime time;
    FileTimeToCalendar(view.questions[0].newTime, time);
    EXPECT_EQ(2001, time.year);
}

// After a listing that failed, the list still shows the folder before while the session is in the new one.
TEST_F(SelectionTransfer, FilesComeFromTheFolderThatTheListShows) {
    harness.server.AddFile("/other/a.txt", "wrong one");
    std::unique_ptr<TVobject, void (*)(TVobject*)> siteNode(AllocateTVobject("Test site", kKindSite),
                                                            Zarn_FreeTVobject);
    siteNode->pSite = site;
    TVobject* pub = AddChildNode(AddChildNode(siteNode.get(), "/", kKindSiteRoot), "pub", kKindFolder);
    char reply[kReplySize] = "";
    ASSERT_EQ(FTP_COMPLETE, command(site, reply, "CWD /other"));
    site->pszCurrentDir = OwnedText::Copy("/other");
    view.Select(File("a.txt"), pub);
    EXPECT_EQ(1, ReceiveSelection());
    EXPECT_EQ("aaa", local.Read("a.txt"));
    EXPECT_STREQ("/other", site->pszCurrentDir.get());
    siteNode->pSite = nullptr;
}

TEST_F(SelectionTransfer, FileTooLargeForTheDriveIsSkippedAfterTheMessageAndTheRestGoesOn) {
    SetDiskSpaceSource([](const char*, platform::DiskSpace& space) {
        space.freeBytes = 1000;
        return true;
    });
    view.Select(File("a.txt", "4294967295"));
    view.Select(File("b.txt"));
    EXPECT_EQ(1, ReceiveSelection());
    SetDiskSpaceSource(nullptr);
    EXPECT_EQ((Names{"b.txt"}), local.Contents());
    EXPECT_TRUE(harness.console.HasBox("a.txt is larger in size (4294967295)"));
}

class TreeTransfer : public SelectionTransfer {
  protected:
    bool Transfer(const char* location, const char* name) {
        node = NodeFor(location, name, kNodeFolder);
        return TransferRemoteTree(&node, local.Path().c_str(), location, abort);
    }
    void ListAs(const std::string& bytes) { harness.server.SetListing("/pub/dir", bytes); }
    TransferNode node;
};

TEST_F(TreeTransfer, WalkIsDepthFirstInTheServersOrder) {
    ListAs(Folder("deep") + "\r\n" + File("c.txt") + "\r\n");
    EXPECT_TRUE(Transfer("/pub", "dir"));
    EXPECT_EQ(
        (Names{"Creating Directory: dir ", "Creating Directory: deep ", "Transfering: d.txt", "Transfering: c.txt"}),
        view.items);
    EXPECT_EQ((Names{"dir/", "dir/c.txt", "dir/deep/", "dir/deep/d.txt"}), local.Contents());
}

TEST_F(TreeTransfer, DeviceFileInATreeIsSkippedSilently) {
    ListAs("crw-rw-rw- 1 u g 4,0 Jan 2 2001 tty\r\nprw-r--r-- 1 u g 0 Jan 2 2001 pipe\r\n" + File("c.txt") + "\r\n");
    EXPECT_TRUE(Transfer("/pub", "dir"));
    EXPECT_EQ((Names{"dir/", "dir/c.txt"}), local.Contents());
    EXPECT_EQ(0, job.counters.failures);
    EXPECT_TRUE(harness.console.Boxes().empty());
}

TEST_F(TreeTransfer, LinksAreSkippedWhileTheyAreNotResolved) {
    ListAs("lrwxrwxrwx 1 u g 3 Jan 2 2001 l -> /pub/empty\r\n");
    EXPECT_TRUE(Transfer("/pub", "dir"));
    EXPECT_EQ((Names{"dir/"}), local.Contents());
    EXPECT_FALSE(Sent("CWD /pub/dir//l"));
}

TEST_F(TreeTransfer, LinkToAFolderBringsItsContentsUnderTheLinksName) {
    gZarn.RESOLVELINKS = 1;
    harness.server.AddFile("/pub/dir/l/inner.txt", "inner");  // what the server shows behind the link
    ListAs("lrwxrwxrwx 1 u g 3 Jan 2 2001 l -> /pub/elsewhere\r\n");
    EXPECT_TRUE(Transfer("/pub", "dir"));
    EXPECT_TRUE(Sent("CWD /pub/dir//l"));
    EXPECT_EQ((Names{"dir/", "dir/l/", "dir/l/inner.txt"}), local.Contents());
}

TEST_F(TreeTransfer, LinkToAFileIsFetchedUnderTheLinksName) {
    gZarn.RESOLVELINKS = 1;
    harness.server.AddFile("/pub/dir/l", "behind the link");
    ListAs("lrwxrwxrwx 1 u g 3 Jan 2 2001 l -> ../a.txt\r\n");
    EXPECT_TRUE(Transfer("/pub", "dir"));
    EXPECT_TRUE(Sent("RETR l"));
    EXPECT_EQ("behind the link", local.Read("dir/l"));
}

TEST_F(TreeTransfer, OwnAndParentFolderAreNotWalked) {
    ListAs(Folder(".") + "\r\n" + Folder("..") + "\r\n" + File("c.txt") + "\r\n");
    EXPECT_TRUE(Transfer("/pub", "dir"));
    EXPECT_EQ((Names{"dir/", "dir/c.txt"}), local.Contents());
    EXPECT_EQ(1, harness.server.CountCommands("LIST"));
}

TEST_F(TreeTransfer, FolderNamesThatLeadElsewhereAreRefused) {
    ListAs(Folder("../../../escape") + "\r\n" + Folder("..\\up") + "\r\n" + File("c.txt") + "\r\n");
    harness.server.AddFolder("/pub/dir/..\\up");
    Transfer("/pub", "dir");
    EXPECT_EQ((Names{"dir/", "dir/..~up/", "dir/c.txt"}), local.Contents());
    EXPECT_TRUE(harness.console.HasLine("The name '../../../escape' cannot be used here"));
    EXPECT_EQ(1, job.counters.failures);
}

TEST_F(TreeTransfer, FileNamesThatLeadElsewhereStayInTheFolder) {
    harness.server.On("RETR", {Say("150 ok\r\n"), OpenData(), DataBytes("x"), CloseData(), Say("226 ok\r\n")});
    ListAs(File("../../up") + "\r\n" + File("C:\\x") + "\r\n");
    EXPECT_TRUE(Transfer("/pub", "dir"));
    EXPECT_EQ((Names{"dir/", "dir/..~..~up", "dir/C~~x"}), local.Contents());
}

TEST_F(TreeTransfer, UnreadableLinesArePassedOverAndCounted) {
    ListAs("rubbish\r\n" + File("c.txt") + "\r\n");
    EXPECT_TRUE(Transfer("/pub", "dir"));
    EXPECT_EQ((Names{"dir/", "dir/c.txt"}), local.Contents());
    EXPECT_TRUE(harness.console.HasLine("1 lines of the listing could not be read."));
}

TEST_F(TreeTransfer, FolderThatCannotBeListedCountsOneFailure) {
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Transfer("/pub", "missing"));
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_TRUE(harness.console.HasBox("set the remote directory to /pub/missing."));
    EXPECT_TRUE(local.Contents().empty());
    EXPECT_FALSE(abort);
}

TEST_F(TreeTransfer, LocalFolderThatCannotBeMadeEndsEverything) {
    local.Write("dir", "a file in the way");
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_FALSE(Transfer("/pub", "dir"));
    EXPECT_TRUE(abort);
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_EQ(0, harness.server.CountCommands("RETR"));
}

TEST_F(TreeTransfer, FailedFileLeavesTheRestOfTheTree) {
    ListAs(File("missing") + "\r\n" + File("c.txt") + "\r\n");
    harness.console.AnswerNext(BoxAnswer::Ignore);
    EXPECT_TRUE(Transfer("/pub", "dir"));
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_EQ((Names{"dir/", "dir/c.txt"}), local.Contents());
}

// The local paths become too long for the system.
TEST_F(TreeTransfer, FolderThatContainsItselfEndsWithoutHarm) {
    const std::string listing = Folder("again") + "\r\n";
    std::string path = "/pub/dir";
    for (int depth = 0; depth < 60; ++depth) {
        harness.server.SetListing(path, listing);
        path += "/again";
        harness.server.AddFolder(path);
    }
    Transfer("/pub", "dir");
    EXPECT_TRUE(abort);
    EXPECT_EQ(1u, harness.console.Boxes().size());
    EXPECT_GT(local.Contents().size(), 5u);
    EXPECT_LT(local.Contents().size(), 60u);
}

TEST_F(TreeTransfer, MissingFieldsOrAbortAreRefused) {
    EXPECT_FALSE(TransferRemoteTree(nullptr, "C:\\in", "/pub", abort));
    EXPECT_FALSE(Transfer("", "dir"));
    EXPECT_FALSE(Transfer("/pub", ""));
    SetTransferAbort(true);
    EXPECT_FALSE(Transfer("/pub", "dir"));
    EXPECT_TRUE(harness.server.Commands().empty());
}

class NodeTransfer : public SelectionTransfer {
  protected:
    NodeTransfer() : siteNode(AllocateTVobject("Test site", kKindSite), Zarn_FreeTVobject) {
        siteNode->pSite = site;
        root = AddChildNode(siteNode.get(), "/", kKindSiteRoot);
    }
    ~NodeTransfer() override { siteNode->pSite = nullptr; }
    int ReceiveNode(const TVobject* node) {
        NewJob(TransferStart::TreeSelection);
        job.remoteItems = ItemsOf(node);
        return Zarn_TransferTVitem(abort);
    }
    std::unique_ptr<TVobject, void (*)(TVobject*)> siteNode;
    TVobject* root;
};

TEST_F(NodeTransfer, SelectedFolderComesWithItsOwnName) {
    EXPECT_EQ(4, ReceiveNode(AddChildNode(AddChildNode(root, "pub", kKindFolder), "dir", kKindFolder)));
    EXPECT_EQ((Names{"dir/", "dir/c.txt", "dir/deep/", "dir/deep/d.txt"}), local.Contents());
    EXPECT_EQ(1, view.closed);
}

TEST_F(NodeTransfer, FolderBelowTheRootHasNoDoubledSeparator) {
    ReceiveNode(AddChildNode(root, "pub", kKindFolder));
    EXPECT_FALSE(Sent("CWD //pub"));
    EXPECT_EQ("ccc", local.Read("pub/dir/c.txt"));
}

TEST_F(NodeTransfer, ContentsOfARootGoStraightIntoTheLocalFolder) {
    EXPECT_EQ(8, ReceiveNode(root));
    EXPECT_EQ("aaa", local.Read("pub/a.txt"));
    EXPECT_TRUE(local.Exists("pub/empty"));
}

TEST_F(NodeTransfer, OtherNodesAreNotTransferred) {
    EXPECT_EQ(-1, ReceiveNode(siteNode.get()));
    EXPECT_EQ(-1, ReceiveNode(nullptr));
    EXPECT_EQ(2, view.closed);
    EXPECT_TRUE(harness.server.Commands().empty());
}

}  // namespace
