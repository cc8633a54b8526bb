#include <gtest/gtest.h>

#include <fstream>

#include "ftp/data/dump_file.h"
#include "ftp/worker/result_codes.h"
#include "listing/listed_site.h"
#include "listing/symlinks.h"

namespace {

LVobjectPtr Link(const char* name) {
    LVobjectTemplate filling;
    filling.name = name;
    filling.mode = "lrwxrwxrwx";
    filling.owner = "own";
    filling.group = "grp";
    filling.links = 1;
    filling.size = 7;
    LVobjectPtr entry(AllocateLVobject(&filling));
    entry->type = kKindLink;
    return entry;
}

// --- Names and targets. ---

struct Split {
    bool found = false;
    std::string name, target;
};
Split SplitOf(std::string_view text) {
    Split split;
    split.found = SplitLinkText(text, split.name, split.target);
    return split;
}

TEST(LinkText, NameStandsBeforeTheArrowAndTheTargetBehindIt) {
    const Split split = SplitOf("bin -> usr/bin");
    EXPECT_TRUE(split.found);
    EXPECT_EQ("bin", split.name);
    EXPECT_EQ("usr/bin", split.target);
}

TEST(LinkText, LastArrowCounts) {
    const Split split = SplitOf("a -> b -> c");
    EXPECT_EQ("a -> b", split.name);
    EXPECT_EQ("c", split.target);
}

TEST(LinkText, ArrowAtTheVeryStartOfTheRestEndsTheSearch) {
    EXPECT_FALSE(SplitOf(" -> c").found);
    const Split split = SplitOf("a ->  -> c");
    EXPECT_EQ("a", split.name);
    EXPECT_EQ(" -> c", split.target);
}

TEST(LinkText, TextWithoutArrowIsNoLink) {
    EXPECT_FALSE(SplitOf("plain").found);
    EXPECT_FALSE(SplitOf("").found);
    EXPECT_FALSE(SplitOf("a->b").found);
}

TEST(LinkText, NameIsCutTo263Characters) {
    EXPECT_EQ(std::string(263, 'n'), SplitOf(std::string(300, 'n') + " -> t").name);
    EXPECT_EQ(std::string(263, 'n'), SplitOf(std::string(263, 'n') + " -> t").name);
}

TEST(LinkText, PercentSignsInANameAreNothingSpecial) {
    EXPECT_EQ("%s%n", SplitOf("%s%n -> t").name);
}

TEST(LinkTargetPath, AbsoluteTargetStaysAsItIs) {
    EXPECT_EQ("/usr/lib", AbsoluteLinkTarget("/pub", "/usr/lib"));
}

TEST(LinkTargetPath, DotSlashIsBelowTheFolder) {
    EXPECT_EQ("/pub/x", AbsoluteLinkTarget("/pub", "./x"));
    EXPECT_EQ("//x", AbsoluteLinkTarget("/", "./x"));
}

TEST(LinkTargetPath, PlainTargetIsBelowTheFolder) {
    EXPECT_EQ("/pub/a/b", AbsoluteLinkTarget("/pub", "a/b"));
    EXPECT_EQ("//a", AbsoluteLinkTarget("/", "a"));
    EXPECT_EQ("/pub/..x", AbsoluteLinkTarget("/pub", "..x"));
}

TEST(LinkTargetPath, DotDotSlashOfAFolderIsBelowTheRootHoweverDeepTheFolderLies) {
    EXPECT_EQ("/x", AbsoluteLinkTarget("/pub/sub", "../x"));
    EXPECT_EQ("/x", AbsoluteLinkTarget("/pub", "../x"));
    EXPECT_EQ("/../x", AbsoluteLinkTarget("/pub/sub", "../../x"));
}

TEST(LinkTargetPath, DotDotSlashOfTheRootHasTwoSlashes) {
    EXPECT_EQ("//x", AbsoluteLinkTarget("/", "../x"));
}

TEST(LinkTargetPath, IsCutIntoFolderAndLastComponent) {
    std::string folder, name;
    SplitLinkPath("/usr/lib", folder, name);
    EXPECT_EQ("/usr", folder);
    EXPECT_EQ("lib", name);
    SplitLinkPath("/x", folder, name);
    EXPECT_EQ("/", folder);
    EXPECT_EQ("x", name);
    SplitLinkPath("//x", folder, name);
    EXPECT_EQ("/", folder);
    EXPECT_EQ("x", name);
    SplitLinkPath("/dir/", folder, name);
    EXPECT_EQ("/dir", folder);
    EXPECT_EQ("", name);
    SplitLinkPath("none", folder, name);
    EXPECT_EQ("", folder);
    EXPECT_EQ("none", name);
}

// --- What the answer to the change of folder says. ---

TEST(LinkTargetKind, SuccessIsAFolder) {
    EXPECT_EQ(LinkTarget::Folder, LinkTargetOf(2, "250 ok, not a directory"));
    EXPECT_EQ(LinkTarget::Folder, LinkTargetOf(257, ""));
}

TEST(LinkTargetKind, NotADirectoryAndNoSuchFileAreFilesInAnyCase) {
    EXPECT_EQ(LinkTarget::File, LinkTargetOf(550, "550 x: Not a Directory."));
    EXPECT_EQ(LinkTarget::File, LinkTargetOf(550, "550 x: NO SUCH FILE or directory"));
    // The earlier test wins.
    EXPECT_EQ(LinkTarget::File, LinkTargetOf(550, "550 access: no such file"));
}

TEST(LinkTargetKind, RefusedFolderIsAFolder) {
    for (const char* reply : {"550 Permission denied", "550 no permission", "550 Access forbidden", "550 denied"}) {
        EXPECT_EQ(LinkTarget::Folder, LinkTargetOf(550, reply)) << reply;
    }
}

TEST(LinkTargetKind, CannotPrintIsAnErrorUnlessAnEarlierTestHolds) {
    EXPECT_EQ(LinkTarget::Unknown, LinkTargetOf(5, "550 Cannot print"));
    EXPECT_EQ(LinkTarget::Folder, LinkTargetOf(5, "550 denied, cannot print"));
}

TEST(LinkTargetKind, AnythingElseIsAFile) {
    EXPECT_EQ(LinkTarget::File, LinkTargetOf(550, "550 Failed to change directory."));
    EXPECT_EQ(LinkTarget::File, LinkTargetOf(4, ""));
}

// --- The target's line. ---

class LinkFile : public testing::Test {
  protected:
    LinkFile() {
        file = Zarn_GetTmpFileName(nullptr);
        item.reset(new SymLinkItem());
        item->pszLinkPath = OwnedText::Copy("/usr/lib");
        item->pszLinkedName = OwnedText::Copy("lib");
        gSession.transferAbort = false;
    }
    ~LinkFile() override { platform::DeleteFilePath(file.get()); }
    bool Parse(const std::string& bytes, bool isFolder) {
        std::ofstream(file.get(), std::ios::binary) << bytes;
        return ParseLinkFromFile(file.get(), item.get(), isFolder);
    }
    OwnedText file;
    SymLinkItemPtr item;
};

TEST_F(LinkFile, FolderIsSoughtByItsLastComponent) {
    ASSERT_TRUE(Parse(
        "total 3\r\ndrwxr-xr-x 5 own grp 40 Jan 2 2001 bin\r\n 12 drwxr-xr-x 9 root sys 80 Jan 2 2001 lib\r\n", true));
    EXPECT_STREQ("lib", item->object->name.get());
    EXPECT_STREQ("root", item->object->owner.get());
    EXPECT_EQ(static_cast<std::uint32_t>(kKindFolder), item->object->type);
}

TEST_F(LinkFile, FileIsSoughtByThePathAsWritten) {
    EXPECT_TRUE(Parse("-rw-r--r-- 1 own grp 40 Jan 2 2001 /usr/lib\r\n", false));
    EXPECT_FALSE(Parse("-rw-r--r-- 1 own grp 40 Jan 2 2001 lib\r\n", false));
}

TEST_F(LinkFile, LinesWithoutTheNameAreNotEvenParsed) {
    EXPECT_TRUE(Parse("rubbish\r\ndrwxr-xr-x 9 root sys 80 Jan 2 2001 lib\r\n", true));
}

TEST_F(LinkFile, LineWithTheNameThatDoesNotParseIsAFailure) {
    EXPECT_FALSE(Parse("rubbish about lib\r\ndrwxr-xr-x 9 root sys 80 Jan 2 2001 lib\r\n", true));
}

TEST_F(LinkFile, LongerNamesArePassedOver) {
    EXPECT_TRUE(Parse("drwxr-xr-x 9 a b 80 Jan 2 2001 library\r\ndrwxr-xr-x 9 a b 80 Jan 2 2001 lib\r\n", true));
    EXPECT_STREQ("lib", item->object->name.get());
    EXPECT_FALSE(Parse("drwxr-xr-x 9 a b 80 Jan 2 2001 library\r\ndrwxr-xr-x 9 a b 80 Jan 2 2001 oldlib\r\n", true));
}

TEST_F(LinkFile, LinkThatBeginsLikeTheTargetIsTakenForIt) {
    ASSERT_TRUE(Parse("lrwxrwxrwx 1 a b 3 Jan 2 2001 lib64 -> lib\r\ndrwxr-xr-x 9 a b 80 Jan 2 2001 lib\r\n", true));
    EXPECT_STREQ("lib64 -> lib", item->object->name.get());
}

TEST_F(LinkFile, EmptyListingAndMissingFileAreFailures) {
    EXPECT_FALSE(Parse("", true));
    platform::DeleteFilePath(file.get());
    EXPECT_FALSE(ParseLinkFromFile(file.get(), item.get(), true));
    EXPECT_FALSE(ParseLinkFromFile(file.get(), nullptr, true));
}

TEST(LinkResult, EntryKeepsItsOwnNameAndTakesTheRestFromTheTarget) {
    LVobjectPtr entry = Link("lib -> /usr/lib");
    SymLinkItem item;
    LVobjectTemplate filling;
    filling.name = "lib";
    filling.mode = "drwxr-xr-x";
    filling.group = "sys";
    filling.links = 9;
    filling.size = 80;
    const LVobjectPtr target(AllocateLVobject(&filling));
    target->type = kKindFolder;
    target->time = 77;
    item.object = target.get();
    ASSERT_TRUE(ApplyLinkTarget(item, entry.get()));
    EXPECT_STREQ("lib", entry->name.get());
    EXPECT_STREQ("drwxr-xr-x", entry->mode.get());
    EXPECT_STREQ("own", entry->owner.get());  // the target has none
    EXPECT_STREQ("sys", entry->group.get());
    EXPECT_EQ(9u, entry->links);
    EXPECT_EQ(80u, entry->size);
    EXPECT_EQ(77u, entry->time);
    EXPECT_EQ(static_cast<std::uint32_t>(kKindFolder), entry->type);
    ASSERT_NE(nullptr, entry->fileType);
    EXPECT_TRUE(entry->fileType->isFolder);
}

TEST(LinkResult, WithoutATargetNothingChanges) {
    LVobjectPtr entry = Link("lib -> /usr/lib");
    SymLinkItem item;
    EXPECT_FALSE(ApplyLinkTarget(item, entry.get()));
    EXPECT_STREQ("lib -> /usr/lib", entry->name.get());
}

// --- On the server. ---

constexpr char kNoLink[] = "An error occured while trying to resolve the symbolic link";

class LinkListing : public testing::Test, protected ListedSite {
  protected:
    LinkListing() { gZarn.RESOLVELINKS = 1; }
    const LVobject* Entry(const std::string& name) {
        for (const LVobjectPtr& entry : list.entries)
            if (entry->name.view() == name) return entry.get();
        return nullptr;
    }
    using Names = std::vector<std::string>;
};

TEST_F(LinkListing, LibInTheRootIsShownAsTheFolderThatItsTargetsFolderLists) {
    server.AddFolder("/usr/lib");
    server.SetListing("/", "lrwxrwxrwx 1 a b 8 Jan 2 2001 lib -> /usr/lib\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(root));
    ASSERT_EQ((Names{"lib"}), list.Names());
    EXPECT_EQ(static_cast<std::uint32_t>(kKindFolder), list.entries[0]->type);
    EXPECT_STREQ("drwxr-xr-x", list.entries[0]->mode.get());
    EXPECT_EQ(nullptr, list.entries[0]->link);
    EXPECT_EQ(1, CountCommand("CWD /usr/lib"));
    EXPECT_EQ(1, CountCommand("CWD /usr"));
    EXPECT_EQ("CWD /", server.Commands().back());
    EXPECT_STREQ("/", site->pszCurrentDir.get());
    EXPECT_EQ(1u, root->links);
}

TEST_F(LinkListing, FolderBesideItsLinkIsFoundInTheListingOfTheRoot) {
    server.AddFolder("/lib64");
    server.SetListing("/", "lrwxrwxrwx 1 a b 8 Jan 2 2001 lib -> lib64\r\ndrwxr-xr-x 2 x y 9 Jan 2 2001 lib64\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(root));
    ASSERT_EQ((Names{"lib", "lib64"}), list.Names());
    EXPECT_EQ(static_cast<std::uint32_t>(kKindFolder), list.entries[0]->type);
    EXPECT_STREQ("x", list.entries[0]->owner.get());
}

TEST_F(LinkListing, FileTargetIsListedByItsPath) {
    server.SetListing("/pub", "lrwxrwxrwx 1 a b 8 Jan 2 2001 now -> old 100%s.txt\r\n");
    server.Once("LIST", {Answer()});
    NextListing("-rw-r--r-- 3 me us 4711 Jan 2 2001 old 100%s.txt\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    ASSERT_EQ((Names{"now"}), list.Names());
    EXPECT_EQ(static_cast<std::uint32_t>(kKindFile), list.entries[0]->type);
    EXPECT_EQ(4711u, list.entries[0]->size);
    EXPECT_EQ(3u, list.entries[0]->links);
    EXPECT_EQ(1, CountCommand("LIST old 100%s.txt"));
    EXPECT_STREQ("/pub", site->pszCurrentDir.get());
}

TEST_F(LinkListing, PermissionDeniedIsTakenForAFolder) {
    server.AddFolder("/pub/secret");
    server.SetListing("/pub",
                      "lrwxrwxrwx 1 a b 8 Jan 2 2001 s -> secret\r\ndrwx------ 2 root b 9 Jan 2 2001 secret\r\n");
    server.Once("CWD", {Answer()});  // into /pub
    server.Once("CWD", {Say("550 secret: Permission denied.\r\n")});
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    ASSERT_NE(nullptr, Entry("s"));
    EXPECT_EQ(static_cast<std::uint32_t>(kKindFolder), Entry("s")->type);
    EXPECT_STREQ("drwx------", Entry("s")->mode.get());
}

TEST_F(LinkListing, ChainOfFiveLinksStopsAfterFourHopsAndShowsTheFourthTargetAsALink) {
    std::string chain;
    for (int i = 0; i < 5; ++i)
        chain += "lrwxrwxrwx " + std::to_string(i + 1) + " a b 8 Jan 2 2001 l" + std::to_string(i) + " -> l" +
                 std::to_string(i + 1) + "\r\n";
    for (int i = 0; i <= 5; ++i) server.AddFolder("/pub/l" + std::to_string(i));
    server.SetListing("/pub", chain);
    LVobjectPtr entry = Link("l0 -> l1");
    ASSERT_EQ(FTP_COMPLETE, TV_PreSelect(pub) ? FTP_COMPLETE : FTP_ERROR);
    int result = 0;
    const SymLinkItemPtr item = Zarn_ResolveSymLink(site, "/pub", entry.get(), result);
    ASSERT_NE(nullptr, item);
    EXPECT_EQ(4u, item->hops);
    EXPECT_STREQ("l0 -> l1 : l1 -> l2 : l2 -> l3 : l3 -> l4", item->chain.get());
    ASSERT_NE(nullptr, item->object);
    EXPECT_STREQ("l4 -> l5", item->object->name.get());
    ASSERT_TRUE(ApplyLinkTarget(*item, entry.get()));
    EXPECT_STREQ("l0", entry->name.get());
    EXPECT_EQ(static_cast<std::uint32_t>(kKindLink), entry->type);
    EXPECT_EQ(5u, entry->links);
}

TEST_F(LinkListing, ChainOfTwoEndsAtTheFolder) {
    server.AddFolder("/pub/a");
    server.AddFolder("/pub/b");
    server.SetListing("/pub",
                      "lrwxrwxrwx 1 a b 1 Jan 2 2001 a -> b\r\ndrwxr-xr-x 2 x y 9 Jan 2 2001 b\r\n"
                      "lrwxrwxrwx 1 a b 1 Jan 2 2001 z -> a\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ((Names{"a", "b", "z"}), list.Names());
    for (const LVobjectPtr& entry : list.entries)
        EXPECT_EQ(static_cast<std::uint32_t>(kKindFolder), entry->type) << entry->name.get();
    EXPECT_EQ(1, CountCommand("CWD a"));
    EXPECT_EQ(2, CountCommand("CWD b"));
}

TEST_F(LinkListing, DotDotTargetOfADeepFolderIsLookedForBelowTheRoot) {
    server.AddFolder("/pub/x");
    server.AddFolder("/x");
    server.SetListing("/", "drwxr-xr-x 7 right one 9 Jan 2 2001 x\r\n");
    server.SetListing("/pub/sub", "lrwxrwxrwx 1 a b 1 Jan 2 2001 up -> ../x\r\n");
    TVobject* sub = AddChildNode(pub, "sub", kKindFolder);
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(sub));
    ASSERT_NE(nullptr, Entry("up"));
    EXPECT_STREQ("right", Entry("up")->owner.get());
    EXPECT_EQ(1, CountCommand("CWD ../x"));
    EXPECT_EQ(1, CountCommand("CWD /"));
    EXPECT_EQ(0, CountCommand("CWD /pub"));
    EXPECT_STREQ("/pub/sub", site->pszCurrentDir.get());
}

TEST_F(LinkListing, LinkThatLeadsNowhereIsDroppedAndTold) {
    server.SetListing("/pub", "lrwxrwxrwx 1 a b 1 Jan 2 2001 gone -> nowhere\r\n-rw-r--r-- 1 a b 1 Jan 2 2001 f\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ((Names{"f"}), list.Names());
    EXPECT_TRUE(harness.console.HasLine(std::string(kNoLink) + " (gone -> nowhere)."));
    EXPECT_TRUE(harness.console.HasLine("DoDirList returned 0"));
    EXPECT_STREQ("/pub", site->pszCurrentDir.get());
    EXPECT_EQ(1u, pub->links);
}

TEST_F(LinkListing, LinkToTheRootItselfHasNoLineAnywhereAndIsDropped) {
    server.SetListing("/pub", "lrwxrwxrwx 1 a b 1 Jan 2 2001 top -> /\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_TRUE(list.entries.empty());
    EXPECT_TRUE(harness.console.HasLine(kNoLink));
    EXPECT_EQ(0, CountCommand("CWD /"));
}

TEST_F(LinkListing, WithoutTheOptionLinksStayLinks) {
    gZarn.RESOLVELINKS = 0;
    server.SetListing("/pub", "lrwxrwxrwx 1 a b 1 Jan 2 2001 l -> m\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ((Names{"l -> m"}), list.Names());
    EXPECT_EQ(1, server.CountCommands("CWD"));
}

TEST_F(LinkListing, FolderIsLeftAgainWhenItsTargetsFolderIsRefused) {
    server.AddFolder("/pub/t");
    server.SetListing("/pub", "lrwxrwxrwx 1 a b 1 Jan 2 2001 l -> t\r\n");
    server.Once("CWD", {Answer()});
    server.Once("CWD", {Answer()});
    server.Once("CWD", {Say("550 no\r\n")});
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_TRUE(list.entries.empty());
    EXPECT_EQ(2, CountCommand("LIST") + CountCommand("CWD t"));
    EXPECT_EQ("CWD /pub", server.Commands().back());
    EXPECT_STREQ("/pub", site->pszCurrentDir.get());
}

TEST_F(LinkListing, WithoutTheWayBackTheCurrentFolderIsUnknownAndEnteredAnew) {
    server.AddFolder("/pub/t");
    server.SetListing("/pub",
                      "lrwxrwxrwx 1 a b 1 Jan 2 2001 l -> t\r\ndrwxr-xr-x 1 a b 1 Jan 2 2001 t\r\n"
                      "lrwxrwxrwx 1 a b 1 Jan 2 2001 m -> t\r\n");
    server.Once("CWD", {Answer()});
    server.Once("CWD", {Answer()});
    server.Once("CWD", {Answer()});
    server.Once("CWD", {Say("550 no way back\r\n")});
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_TRUE(site->pszCurrentDir.empty());
    EXPECT_NE(nullptr, Entry("l"));
    EXPECT_NE(nullptr, Entry("m -> t"));  // nobody knows from where to look for it
    server.ForgetCommands();
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ("CWD /pub", server.Commands().front());
    EXPECT_NE(nullptr, Entry("m"));
}

TEST_F(LinkListing, ServerThatIsLostIsToldOnceAndTheRestIsShownAsItStands) {
    std::string bytes;
    for (int i = 0; i < 50; ++i) bytes += "lrwxrwxrwx 1 a b 1 Jan 2 2001 l" + std::to_string(i) + " -> t\r\n";
    server.SetListing("/pub", bytes);
    server.Once("CWD", {Answer()});
    server.Once("CWD", {CloseControl()});
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ(49u, list.entries.size());
    EXPECT_EQ(1, harness.view.PostedDisconnects());
    EXPECT_EQ(1, harness.console.CountLines(kNoLink));
}

TEST_F(LinkListing, AbortWhileALinkIsFollowedEndsTheListing) {
    server.AddFolder("/pub/t");
    std::string bytes;
    for (int i = 0; i < 5; ++i) bytes += "lrwxrwxrwx 1 a b 1 Jan 2 2001 l" + std::to_string(i) + " -> t\r\n";
    server.SetListing("/pub", bytes + "drwxr-xr-x 1 a b 1 Jan 2 2001 t\r\n");
    server.Once("CWD", {Answer()});
    server.Once("CWD", {Hold(), Answer()});
    OtherThread stopper([this] {
        server.WaitUntilHeld();
        SetTransferAbort(true);
        server.Release();
    });
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    stopper.Join();
    EXPECT_TRUE(list.entries.empty());
    EXPECT_EQ(1u, list.ends.size());
    EXPECT_LE(server.CountCommands("CWD"), 3);
    // The server may be in any directory now: the next operation says where it wants to be.
    SetTransferAbort(false);
    server.ForgetCommands();
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ("CWD /pub", server.Commands().front());
    EXPECT_EQ(6u, list.entries.size());
}

TEST_F(LinkListing, NothingButALinkWithATargetIsFollowed) {
    int result = 0;
    LVobjectPtr entry = Link("plain");
    EXPECT_EQ(nullptr, Zarn_ResolveSymLink(site, "/pub", entry.get(), result));
    entry = Link("l -> t");
    entry->type = kKindFile;
    EXPECT_EQ(nullptr, Zarn_ResolveSymLink(site, "/pub", entry.get(), result));
    EXPECT_EQ(nullptr, Zarn_ResolveSymLink(site, "/pub", nullptr, result));
    EXPECT_EQ(nullptr, Zarn_ResolveSymLink(site, nullptr, entry.get(), result));
    EXPECT_TRUE(server.Commands().empty());
}

}  // namespace
