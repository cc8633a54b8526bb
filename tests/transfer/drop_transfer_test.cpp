#ifndef _WIN32
#include <unistd.h>
#endif

#include "foundation/trace.h"
#include "platform/files.h"
#include "transfer/drop_fixture.h"
#include "transfer/local_tree_transfer.h"

namespace {

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
    target = "/else/where";
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
    target = "/up";
    local.Write("a.txt", "aaa");
    Drop({"a.txt"});
    EXPECT_EQ((Names{"a.txt"}), ListedNames());
}

TEST_F(DropTransfer, NothingDroppedClosesTheDialog) {
    EXPECT_EQ(-1, Drop({}));
    EXPECT_EQ(1, view.closed);
    EXPECT_EQ(0, view.shown);
    EXPECT_TRUE(harness.server.Commands().empty());
}

TEST_F(DropTransfer, PathThatCannotBeFoundIsPassedOver) {
    local.Write("a.txt", "aaa");
    EXPECT_EQ(1, Drop({"missing", "a.txt"}));
    EXPECT_EQ("aaa", Stored("a.txt"));
    EXPECT_EQ(0, job.counters.failures);
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

TEST_F(DropTransfer, FilesNamedOnStandardInputAllLandInTheCurrentFolder) {
    local.Write("a.txt", "aaa");
    local.Write("one/b.txt", "bbb");
    local.Write("two/c.txt", "ccc");
    NewJob(TransferStart::StandardInput);
    job.localPaths = {"a.txt", local.PathOf("one/b.txt"), "two"};
    gTrace.debug = true;
    EXPECT_EQ(4, Zarn_TransferStdInFiles(abort));
    EXPECT_EQ("aaa", Stored("a.txt"));
    EXPECT_EQ("bbb", Stored("b.txt"));
    EXPECT_EQ("ccc", Stored("two/c.txt"));
    EXPECT_TRUE(harness.console.HasLine("Transfering 3 StdIn Files"));
    EXPECT_EQ(1, view.closed);
}

TEST_F(DropTransfer, NothingNamedOnStandardInputSendsNothing) {
    NewJob(TransferStart::StandardInput);
    EXPECT_EQ(-1, Zarn_TransferStdInFiles(abort));
    EXPECT_EQ(1, view.closed);
}

TEST_F(DropTransfer, SizeOfANodeIsItsLowHalfLessTheHighOne) {
    local.Write("a.txt", "aaa");
    platform::FileInfo found;
    found.name = "a.txt";
    found.size = 0x1'4000'0000;
    const std::string folder = local.Path();
    EXPECT_TRUE(TransferLocalFile(folder.c_str(), folder.c_str(), "/up", &found, abort));
    EXPECT_EQ("0 of 1073741823", view.bytes.front());
}

#ifndef _WIN32
TEST_F(DropTransfer, LinkedFolderThatLeadsBackIsPassedOver) {
    local.Write("dir/a.txt", "aaa");
    ASSERT_EQ(0, symlink(local.Path().c_str(), local.PathOf("dir/loop").c_str()));
    ASSERT_EQ(0, symlink(local.PathOf("dir/a.txt").c_str(), local.PathOf("dir/link.txt").c_str()));
    EXPECT_EQ(3, Drop({"dir"}));
    EXPECT_FALSE(harness.server.Exists("/up/dir/loop"));
    EXPECT_EQ("aaa", Stored("dir/link.txt"));
    EXPECT_TRUE(
        harness.console.HasLine("'" + local.PathOf("dir/loop") + "' is a link to another folder and was skipped."));
    unlink(local.PathOf("dir/loop").c_str());
}

TEST_F(DropTransfer, NameWithALineEndIsLeftOutAndTheRestGoesOn) {
    local.Write("dir/a\r\nDELE b.txt", "x");
    local.Write("dir/b.txt", "bbb");
    EXPECT_EQ(2, Drop({"dir"}));
    EXPECT_EQ("bbb", Stored("dir/b.txt"));
    EXPECT_EQ(0, harness.server.CountCommands("DELE"));
    EXPECT_EQ(1, job.counters.failures);
    EXPECT_TRUE(harness.console.HasBox("cannot be sent to a server."));
}
#endif

}  // namespace
