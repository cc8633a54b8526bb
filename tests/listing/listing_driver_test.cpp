#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <memory>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "ftp/data/dump_file.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/worker.h"
#include "listing/listing_driver.h"
#include "platform/files.h"
#include "support/bounded_wait.h"
#include "support/recording_listing_view.h"
#include "support/session_harness.h"

namespace {

class ListingDriver : public testing::Test {
  protected:
    ListingDriver() {
        site = harness.ConnectedSite();
        siteNode.reset(AllocateTVobject("Test site", kKindSite));
        siteNode->pSite = site;
        root = AddChildNode(siteNode.get(), "/", kKindSiteRoot);
        pub = AddChildNode(root, "pub", kKindFolder);
        harness.server.AddFile("/pub/a.txt", "hello");
        harness.server.AddFolder("/pub/sub");
    }
    ~ListingDriver() override { siteNode->pSite = nullptr; }  // the harness owns it

    bool DumpFileIsGone() {
        platform::FileInfo info;
        return !platform::GetFileInfo(ListingDumpFile(), info);
    }
    using Names = std::vector<std::string>;

    SessionHarness harness;
    RecordingListingView list;
    Site* site;
    std::unique_ptr<TVobject, void (*)(TVobject*)> siteNode{nullptr, Zarn_FreeTVobject};
    TVobject* root;
    TVobject* pub;
};

TEST_F(ListingDriver, ChangeOfFolderChangesListsAndShows) {
    EXPECT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ((Names{"a.txt", "sub"}), list.Names());
    EXPECT_STREQ("/pub", site->pszCurrentDir.get());
    EXPECT_EQ(1, harness.server.CountCommands("CWD"));
    EXPECT_EQ(1, harness.server.CountCommands("LIST"));
    EXPECT_EQ((std::vector<int>{FTP_COMPLETE}), list.ends);
    for (const LVobjectPtr& entry : list.entries) EXPECT_EQ(pub, entry->node);
}

TEST_F(ListingDriver, FolderThatIsCurrentIsListedWithoutAChange) {
    EXPECT_EQ(FTP_COMPLETE, LV_ChangeDir(root));
    EXPECT_EQ(0, harness.server.CountCommands("CWD"));
    EXPECT_EQ((Names{"pub"}), list.Names());
}

TEST_F(ListingDriver, FlagsAndStatusAreClearedAtTheEnd) {
    gSession.connecting = true;
    LV_ChangeDir(pub);
    EXPECT_FALSE(gSession.busy);
    EXPECT_FALSE(gSession.connecting);
    EXPECT_FALSE(gSession.parsing);
    const std::vector<std::string> texts = harness.view.StatusTexts();
    ASSERT_FALSE(texts.empty());
    EXPECT_EQ(CatalogueText(MSG_CHANGING_FOLDER), texts.front());
    EXPECT_NE(texts.end(), std::find(texts.begin(), texts.end(), CatalogueText(MSG_PARSING_LIST)));
    EXPECT_EQ("", texts.back());
}

TEST_F(ListingDriver, BusyFlagStandsUntilTheWorkerEnds) {
    list.afterBatch = [] { EXPECT_TRUE(gSession.busy); };
    static std::atomic<bool> busyAfterwards;
    busyAfterwards = false;
    ASSERT_TRUE(StartWorker("test", [this] {
        LV_ChangeDir(pub);
        busyAfterwards = gSession.busy.load();
    }));
    EXPECT_TRUE(test_support::WaitUntil([] { return !WorkerRunning() && !gSession.busy; }));
    EXPECT_TRUE(busyAfterwards);
    EXPECT_EQ((Names{"a.txt", "sub"}), list.Names());
}

TEST_F(ListingDriver, NodeCountsWhatItsListingHolds) {
    harness.server.SetListing("/pub",
                              "total 12\r\n"
                              "drwxr-xr-x 2 a b 0 Jan 2 2001 d1\r\ndrwxr-xr-x 2 a b 0 Jan 2 2001 d2\r\n"
                              "-rw-r--r-- 1 a b 1 Jan 2 2001 f1\r\n-rw-r--r-- 1 a b 2 Jan 2 2001 f2\r\n"
                              "-rw-r--r-- 1 a b 3 Jan 2 2001 f3\r\nlrwxrwxrwx 1 a b 10 Jan 2 2001 l -> m\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ(2u, pub->folders);
    EXPECT_EQ(3u, pub->files);
    EXPECT_EQ(1u, pub->links);
    EXPECT_EQ(16u, pub->bytes);
    EXPECT_EQ(6u, list.entries.size());
}

TEST_F(ListingDriver, LinksStayLinks) {
    harness.server.SetListing("/pub", "lrwxrwxrwx 1 a b 10 Jan 2 2001 l -> m\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    ASSERT_EQ(1u, list.entries.size());
    EXPECT_EQ(static_cast<std::uint32_t>(kKindLink), list.entries[0]->type);
}

TEST_F(ListingDriver, OwnAndParentFolderAndNamelessEntriesAreDropped) {
    harness.server.SetListing("/pub",
                              "drwxr-xr-x 2 a b 0 Jan 2 2001 .\r\ndrwxr-xr-x 2 a b 0 Jan 2 2001 ..\r\n"
                              "-rw-r--r-- 1 a b 1 Jan 2 2001\r\n-rw-r--r-- 1 a b 1 Jan 2 2001 ...\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ((Names{"..."}), list.Names());
}

TEST_F(ListingDriver, UnreadableLinesAreCountedInOneConsoleLine) {
    harness.server.SetListing("/pub", "rubbish\r\n-rw-r--r-- 1 a b 1 Jan 2 2001 good\r\nmore rubbish\r\ntotal 12\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ((Names{"good"}), list.Names());
    EXPECT_EQ(1, harness.console.CountLines("3 lines of the listing could not be read."));
}

TEST_F(ListingDriver, ListingOfRubbishOnlyIsAnEmptyFolderAndSaysSo) {
    harness.server.SetListing("/pub", "\x01\x02\xFF\r\n%s%n\r\n");
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_TRUE(list.entries.empty());
    EXPECT_TRUE(harness.console.HasLine("2 lines of the listing could not be read."));
}

TEST_F(ListingDriver, EntriesComeInOrderInBatchesTheFirstOfThemSmall) {
    std::string bytes;
    for (int i = 0; i < 5000; ++i) bytes += "-rw-r--r-- 1 a b 1 Jan 2 2001 f" + std::to_string(i) + "\r\n";
    harness.server.SetListing("/pub", bytes);
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    ASSERT_EQ(5000u, list.entries.size());
    for (std::size_t i = 0; i < 5000; ++i) {
        ASSERT_EQ("f" + std::to_string(i), list.entries[i]->name.get());
    }
    ASSERT_EQ(4u, list.batches.size());
    EXPECT_LT(list.batches[0], kListingBatch);
    EXPECT_EQ(kListingBatch, list.batches[1]);
}

TEST_F(ListingDriver, AbortStopsAfterTheCurrentLine) {
    std::string bytes;
    for (int i = 0; i < 50000; ++i) bytes += "-rw-r--r-- 1 a b 1 Jan 2 2001 f" + std::to_string(i) + "\r\n";
    harness.server.SetListing("/pub", bytes);
    list.afterBatch = [] { SetTransferAbort(true); };
    EXPECT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_LT(list.entries.size(), kListingBatch);
    EXPECT_EQ(1u, list.ends.size());
    EXPECT_TRUE(DumpFileIsGone());
}

TEST_F(ListingDriver, RefusedListingLeavesTheListAsItWas) {
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(root));
    harness.server.On("LIST", {Say("550 no listing\r\n")});
    EXPECT_NE(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ((Names{"pub"}), list.Names());
    EXPECT_EQ(1u, list.begins.size());
    ASSERT_EQ(1u, harness.view.ServerErrors().size());
    EXPECT_TRUE(harness.console.HasLine("DoDirList returned 0"));
    EXPECT_FALSE(gSession.busy);
    EXPECT_TRUE(DumpFileIsGone());
}

TEST_F(ListingDriver, ListingCutOffInTheMiddleLeavesTheListAsItWasAndSaysSo) {
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(root));
    harness.server.On("LIST", {Say("150 here it comes\r\n"), OpenData(), DataBytes("-rw-r--r-- 1 a b 1 Jan 2 2001 ha"),
                               ResetData(), Say("426 lost\r\n")});
    EXPECT_NE(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ((Names{"pub"}), list.Names());
    EXPECT_EQ(1u, harness.view.ServerErrors().size());
    EXPECT_TRUE(harness.console.HasLine("DoDirList returned"));
    harness.server.Forget("LIST");
    EXPECT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ((Names{"a.txt", "sub"}), list.Names());
}

TEST_F(ListingDriver, ServerThatHangsUpDuringAListingIsDisconnectedAndTold) {
    harness.server.On("LIST", {CloseControl()});
    EXPECT_NE(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_TRUE(harness.console.HasBox("The FTP Server has aborted your connection"));
    EXPECT_EQ(1, harness.view.PostedDisconnects());
    EXPECT_TRUE(list.begins.empty());
}

TEST_F(ListingDriver, RefusedChangeOfFolderListsNothing) {
    TVobject* missing = AddChildNode(root, "missing", kKindFolder);
    EXPECT_EQ(0, LV_ChangeDir(missing));
    EXPECT_EQ(0, harness.server.CountCommands("LIST"));
    EXPECT_STREQ("/", site->pszCurrentDir.get());
    EXPECT_EQ(1u, harness.view.ServerErrors().size());
    const std::vector<std::string> texts = harness.view.StatusTexts();
    EXPECT_NE(texts.end(), std::find(texts.begin(), texts.end(), CatalogueText(MSG_CONNECTION_FAILED)));
    EXPECT_EQ("", texts.back());
    EXPECT_FALSE(gSession.busy);
}

TEST_F(ListingDriver, MissingNodeOrNameIsRefused) {
    EXPECT_EQ(0, LV_ChangeDir(nullptr));
    TVobject* nameless = AddChildNode(root, "", kKindFolder);
    EXPECT_EQ(0, LV_ChangeDir(nameless));
    EXPECT_EQ(FTP_ERROR, LV_ListDirectory(nullptr));
    EXPECT_EQ(FTP_ERROR, LV_ListDirectory(nameless));
    EXPECT_EQ(FTP_ERROR, LV_ParseObjects(nullptr));
    EXPECT_TRUE(harness.server.Commands().empty());
}

TEST_F(ListingDriver, SiteThatIsNotConnectedIsNotListed) {
    site->bConnected = 0;
    EXPECT_EQ(FTP_NOTCONNECTED, LV_ListDirectory(pub));
    site->bConnected = 1;
    site->pszCurrentDir.reset();
    EXPECT_EQ(FTP_ERROR, LV_ListDirectory(pub));
}

TEST_F(ListingDriver, PendingAbortRefusesToParse) {
    gSession.transferAbort = true;
    EXPECT_EQ(FTP_ERROR, LV_ParseObjects(pub));
    EXPECT_TRUE(list.begins.empty());
}

TEST_F(ListingDriver, RootOfAWindowsNtServerKeepsItsChildren) {
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(root));
    site->dwCurType = 7002;
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(root));
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ((std::vector<bool>{true, false, true}), list.begins);
}

TEST_F(ListingDriver, NtServerThatSendsUnixLinesIsParsedAsUnix) {
    site->dwCurType = 7002;
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_EQ((Names{"a.txt", "sub"}), list.Names());
}

TEST_F(ListingDriver, DumpFileIsDeletedAfterReading) {
    ASSERT_EQ(FTP_COMPLETE, LV_ChangeDir(pub));
    EXPECT_TRUE(DumpFileIsGone());
}

TEST_F(ListingDriver, PreSelectChangesOnlyWhenTheFolderDiffers) {
    EXPECT_TRUE(TV_PreSelect(root));
    EXPECT_EQ(0, harness.server.CountCommands("CWD"));
    EXPECT_TRUE(TV_PreSelect(pub));
    EXPECT_EQ(1, harness.server.CountCommands("CWD"));
    EXPECT_STREQ("/pub", site->pszCurrentDir.get());
    EXPECT_FALSE(TV_PreSelect(nullptr));
}

TEST_F(ListingDriver, PreSelectClosesAConnectionThatIsGone) {
    harness.server.On("CWD", {CloseControl()});
    EXPECT_FALSE(TV_PreSelect(pub));
    EXPECT_EQ(1, harness.view.PostedDisconnects());
}

TEST_F(ListingDriver, PreSelectKeepsAConnectionThatRefused) {
    harness.server.On("CWD", {Say("550 no such folder\r\n")});
    EXPECT_FALSE(TV_PreSelect(pub));
    EXPECT_EQ(0, harness.view.PostedDisconnects());
    EXPECT_STREQ("/", site->pszCurrentDir.get());
}

}  // namespace
