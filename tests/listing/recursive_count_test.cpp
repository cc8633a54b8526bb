#include <gtest/gtest.h>

#include "ftp/control/remote_commands.h"
#include "ftp/worker/result_codes.h"
#include "listing/listed_site.h"
#include "listing/recursive_count.h"

namespace {

struct Shown {
    void* dialog;
    std::uint64_t bytes;
    std::uint32_t files, folders;
};
std::vector<Shown> gShown;

class RecursiveCount : public testing::Test, protected ListedSite {
  protected:
    RecursiveCount() {
        gShown.clear();
        gListingView.showCountedBytes = [](void* shownIn, std::uint64_t count) {
            gShown.push_back({shownIn, count, 0, 0});
        };
        gListingView.showCountedEntries = [](void* shownIn, std::uint32_t fileCount, std::uint32_t folderCount) {
            gShown.push_back({shownIn, 0, fileCount, folderCount});
        };
    }
    int Count(const char* location) {
        return FtpRecurseDirContents(AllocateContents(location, aborted, folders, files, &dialog, bytes));
    }
    std::vector<std::string> Listed() const {
        std::vector<std::string> paths;
        for (const std::string& line : server.Commands())
            if (line.compare(0, 4, "CWD ") == 0) paths.push_back(line.substr(4));
        return paths;
    }
    using Names = std::vector<std::string>;

    std::atomic<bool> aborted{false};
    std::uint32_t folders = 0, files = 0;
    std::uint64_t bytes = 0;
    int dialog = 0;
    Names temporaryBefore = TemporaryFiles("DCO");
};

TEST_F(RecursiveCount, CountsFoldersFilesLinksAndBytesBelowAFolder) {
    server.SetListing("/pub",
                      "total 12\r\ndrwxr-xr-x 2 a b 512 Jan 2 2001 d1\r\ndrwxr-xr-x 2 a b 512 Jan 2 2001 d2\r\n"
                      "-rw-r--r-- 1 a b 100 Jan 2 2001 f1\r\nlrwxrwxrwx 1 a b 10 Jan 2 2001 l -> m\r\n");
    server.SetListing("/pub/d1", "-rw-r--r-- 1 a b 1000 Jan 2 2001 f2\r\n");
    server.SetListing("/pub/d2", "prw-r--r-- 1 a b 7 Jan 2 2001 pipe\r\n");
    EXPECT_EQ(FTP_COMPLETE, Count("/pub"));
    EXPECT_EQ(2u, folders);
    EXPECT_EQ(4u, files);                            // the link and the pipe are files
    EXPECT_EQ(512u + 512 + 100 + 10 + 1000, bytes);  // the pipe has no bytes
    EXPECT_EQ(temporaryBefore, TemporaryFiles("DCO"));
}

TEST_F(RecursiveCount, WalksDepthFirstInListingOrder) {
    server.AddFolder("/pub/a/deep");
    server.AddFolder("/pub/incoming");
    EXPECT_EQ(FTP_COMPLETE, Count("/pub"));
    EXPECT_EQ((Names{"/pub", "/pub/a", "/pub/a/deep", "/pub/incoming"}), Listed());
}

TEST_F(RecursiveCount, BelowTheRootPathsBeginWithOneSeparator) {
    server.AddFolder("/pub/incoming");
    EXPECT_EQ(FTP_COMPLETE, Count("/"));
    EXPECT_EQ((Names{"/pub", "/pub/incoming"}), Listed());
    EXPECT_EQ(2u, folders);
}

TEST_F(RecursiveCount, OwnAndParentFolderAreNotWalked) {
    server.SetListing("/pub", "drwxr-xr-x 2 a b 0 Jan 2 2001 .\r\ndrwxr-xr-x 2 a b 0 Jan 2 2001 ..\r\n");
    EXPECT_EQ(FTP_COMPLETE, Count("/pub"));
    EXPECT_EQ(0u, folders);
    EXPECT_EQ((Names{"/pub"}), Listed());
}

TEST_F(RecursiveCount, ServerTypeDecidesHowLinesAreRead) {
    site->dwCurType = 7002;
    server.SetListing("/pub",
                      "01-15-98  09:05PM       <DIR>          sub\r\n01-16-98  10:00AM                 1234 f\r\n");
    server.SetListing("/pub/sub", "01-16-98  10:00AM                 1000 g\r\n");
    EXPECT_EQ(FTP_COMPLETE, Count("/pub"));
    EXPECT_EQ(1u, folders);
    EXPECT_EQ(2u, files);
    EXPECT_EQ(2234u, bytes);
}

TEST_F(RecursiveCount, DialogIsShownBytesAndEntriesAtTheEndAtLeast) {
    server.AddFile("/pub/sub/a", "12345");
    EXPECT_EQ(FTP_COMPLETE, Count("/pub"));
    ASSERT_GE(gShown.size(), 2u);
    const Shown& last = gShown.back();
    EXPECT_EQ(&dialog, last.dialog);
    EXPECT_EQ(1u, last.files);
    EXPECT_EQ(1u, last.folders);
    EXPECT_EQ(bytes, gShown[gShown.size() - 2].bytes);
}

TEST_F(RecursiveCount, EmptyFolderShowsNothing) {
    server.AddFolder("/pub");
    EXPECT_EQ(FTP_COMPLETE, Count("/pub"));
    EXPECT_TRUE(gShown.empty());
}

TEST_F(RecursiveCount, LargeFolderIsShownNowAndThenOnly) {
    std::string lines;
    for (int i = 0; i < 20000; ++i) lines += "-rw-r--r-- 1 a b 1 Jan 2 2001 f" + std::to_string(i) + "\r\n";
    server.SetListing("/pub", lines);
    EXPECT_EQ(FTP_COMPLETE, Count("/pub"));
    EXPECT_EQ(20000u, files);
    EXPECT_LT(gShown.size(), 1000u);
}

TEST_F(RecursiveCount, PendingAbortCountsNothing) {
    aborted = true;
    EXPECT_EQ(FTP_ERROR, Count("/pub"));
    aborted = false;
    SetTransferAbort(true);
    EXPECT_EQ(FTP_ERROR, Count("/pub"));
    EXPECT_TRUE(server.Commands().empty());
}

TEST_F(RecursiveCount, IncompleteRecordIsRefused) {
    EXPECT_EQ(FTP_ERROR, FtpRecurseDirContents(nullptr));
    EXPECT_EQ(FTP_ERROR, FtpRecurseDirContents(new RecursiveContents()));
    RecursiveContents* nowhere = AllocateContents("/pub", aborted, folders, files, nullptr, bytes);
    nowhere->pszLocation.reset();
    EXPECT_EQ(FTP_ERROR, FtpRecurseDirContents(nowhere));
    Zarn_FreeContents(nullptr);
    EXPECT_TRUE(server.Commands().empty());
}

TEST_F(RecursiveCount, AbortWhileAFolderIsListedEndsTheWalk) {
    server.AddFolder("/pub/a");
    server.AddFolder("/pub/b");
    server.Once("LIST", {Answer()});
    server.Once("LIST", {Hold(), Answer()});
    OtherThread stopper([this] {
        server.WaitUntilHeld();
        aborted = true;
        server.Release();
    });
    EXPECT_EQ(FTP_ERROR, Count("/pub"));
    stopper.Join();
    EXPECT_EQ(1u, folders);
    EXPECT_EQ((Names{"/pub", "/pub/a"}), Listed());
    EXPECT_EQ(temporaryBefore, TemporaryFiles("DCO"));
}

TEST_F(RecursiveCount, FolderThatMayNotBeEnteredIsCountedAndTheWalkGoesOn) {
    server.SetListing("/pub",
                      "drwx------ 2 a b 0 Jan 2 2001 secret\r\ndrwxr-xr-x 2 a b 0 Jan 2 2001 sub\r\n"
                      "-rw-r--r-- 1 a b 5 Jan 2 2001 f\r\n");
    server.AddFile("/pub/sub/g", "12");
    EXPECT_EQ(FTP_COMPLETE, Count("/pub"));
    EXPECT_EQ(2u, folders);
    EXPECT_EQ(2u, files);
    EXPECT_EQ(7u, bytes);
    EXPECT_TRUE(harness.console.HasLine("DoDirList returned 0"));
    EXPECT_FALSE(aborted);
}

TEST_F(RecursiveCount, ResultIsThatOfTheLastFolderWalked) {
    server.SetListing("/pub", "drwxr-xr-x 2 a b 0 Jan 2 2001 sub\r\ndrwx------ 2 a b 0 Jan 2 2001 zsecret\r\n");
    server.AddFolder("/pub/sub");
    EXPECT_EQ(0, Count("/pub"));
    EXPECT_EQ(2u, folders);
}

TEST_F(RecursiveCount, ServerThatIsLostEndsTheWalkAndIsToldOnce) {
    for (const char* name : {"a", "b", "c", "d"}) server.AddFolder(std::string("/pub/") + name);
    server.Once("CWD", {Answer()});
    server.Once("CWD", {CloseControl()});
    EXPECT_NE(FTP_COMPLETE, Count("/pub"));
    EXPECT_TRUE(aborted);
    EXPECT_EQ(1u, folders);
    EXPECT_EQ(1, harness.view.PostedDisconnects());
    EXPECT_EQ(temporaryBefore, TemporaryFiles("DCO"));
}

TEST_F(RecursiveCount, FoldersWithoutEndEndAtTheLongestCommand) {
    const std::string name(100, 'd');
    server.On("CWD", {Say("250 as you like\r\n")});
    server.On("LIST", {Say("150 here it comes\r\n"), OpenData(),
                       DataBytes("drwxr-xr-x 2 a b 0 Jan 2 2001 " + name + "\r\n"), CloseData(), Say("226 done\r\n")});
    EXPECT_NE(FTP_COMPLETE, Count("/pub"));
    EXPECT_GE(folders, 19u);
    EXPECT_LE(folders, 21u);
    EXPECT_EQ(FTP_COMPLETE, DoNoop(site));
    EXPECT_EQ(temporaryBefore, TemporaryFiles("DCO"));
}

}  // namespace
