#include "config/host_types.h"
#include "ftp/errors/server_error.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "integration/real_server.h"
#include "listing/listing_driver.h"

namespace {

std::uint32_t KindOf(const DiskEntry& entry) {
    if (entry.IsFolder()) return kKindFolder;
    return entry.IsLink() ? kKindLink : kKindFile;
}

class Listing : public RealServer {
  protected:
    void SetUp() override {
        RealServer::SetUp();
        Connect();
    }

    // Other tests write below this folder.
    static bool Changes(const DiskEntry& entry) { return entry.path.starts_with("/incoming"); }

    void ExpectEntryOf(const DiskEntry& disk) {
        const LVobject* entry = Listed(disk.Name());
        ASSERT_NE(entry, nullptr) << disk.path;
        EXPECT_EQ(entry->type, KindOf(disk)) << disk.path;
        EXPECT_EQ(entry->mode.view(), disk.mode) << disk.path;
        const std::string arrow = disk.IsLink() ? " -> " + disk.target : "";
        EXPECT_EQ(entry->name.view(), disk.Name() + arrow);
        if (Changes(disk)) return;
        EXPECT_EQ(entry->time, ListedTime(disk.modified)) << disk.path;
        // What a folder's own size means is the server's affair.
        if (disk.IsFolder()) return;
        EXPECT_EQ(entry->size, disk.size) << disk.path;
    }

    void ExpectFolderAsOnDisk(const std::string& folder) {
        ASSERT_EQ(Open(folder), FTP_COMPLETE) << folder;
        const auto disk = DiskFolder(folder);
        EXPECT_EQ(list.entries.size(), disk.size()) << folder;
        for (const DiskEntry* entry : disk) ExpectEntryOf(*entry);
        EXPECT_EQ(site->pszCurrentDir.view(), folder);
    }
};
FOR_EVERY_SERVER(Listing);

TEST_P(Listing, EveryFolderOfTheTreeAgreesWithTheDisk) {
    ExpectFolderAsOnDisk("/");
    for (const DiskEntry& entry : DiskTree())
        if (entry.IsFolder() && !Changes(entry)) ExpectFolderAsOnDisk(entry.path);
    EXPECT_TRUE(console.Boxes().empty());
    EXPECT_FALSE(console.HasLine("could not be read"));
    EXPECT_TRUE(view.ServerErrors().empty());
}

TEST_P(Listing, NodeOfAFolderOfFiveHundredCountsThem) {
    ASSERT_EQ(Open("/pub/many"), FTP_COMPLETE);
    const auto disk = DiskFolder("/pub/many");
    std::uint64_t bytes = 0;
    for (const DiskEntry* entry : disk) bytes += entry->size;
    const TVobject* node = NodeOf("/pub/many");
    EXPECT_EQ(disk.size(), 500u);
    EXPECT_EQ(node->files, disk.size());
    EXPECT_EQ(node->bytes, bytes);
    EXPECT_EQ(node->folders + node->links, 0u);
    EXPECT_EQ(list.begins.size(), 1u);
    EXPECT_EQ(list.ends, (std::vector<int>{FTP_COMPLETE}));
}

TEST_P(Listing, LinksAreCountedAsLinks) {
    ASSERT_EQ(Open("/pub/links"), FTP_COMPLETE);
    const TVobject* node = NodeOf("/pub/links");
    EXPECT_EQ(node->links, DiskFolder("/pub/links").size());
    EXPECT_EQ(node->files + node->folders, 0u);
}

TEST_P(Listing, FolderBehindALinkShowsItsTarget) {
    ASSERT_EQ(Open("/pub/links/to-a-folder"), FTP_COMPLETE);
    for (const DiskEntry* entry : DiskFolder("/pub/source")) ExpectEntryOf(*entry);
    EXPECT_EQ(list.entries.size(), DiskFolder("/pub/source").size());
}

TEST_P(Listing, EmptyFolderIsAnEmptyList) {
    ASSERT_EQ(Open("/pub/source"), FTP_COMPLETE);
    ASSERT_FALSE(list.entries.empty());
    ASSERT_EQ(Open("/pub/empty-folder"), FTP_COMPLETE);
    EXPECT_TRUE(list.entries.empty());
    EXPECT_FALSE(console.HasLine("could not be read"));
}

TEST_P(Listing, UnixHostTypeListsTheSame) {
    site->dwCurType = HOST_TYPE_UNIX;
    ExpectFolderAsOnDisk("/pub/names");
    site->dwCurType = HOST_TYPE_WINDOWS_NT;
    ExpectFolderAsOnDisk("/pub/source");
}

TEST_P(Listing, MissingFolderIsToldAndLeavesListAndSessionAsTheyWere) {
    ASSERT_EQ(Open("/docs"), FTP_COMPLETE);
    const auto before = list.Names();
    EXPECT_EQ(Open("/docs/no-such-folder"), 0);
    EXPECT_EQ(list.Names(), before);
    ASSERT_EQ(view.ServerErrors().size(), 1u);
    EXPECT_EQ(view.ServerErrors()[0].operation, kOperationChangeDirectory);
    EXPECT_TRUE(view.ServerErrors()[0].reply.starts_with("550")) << view.ServerErrors()[0].reply;
    EXPECT_STREQ(site->pszCurrentDir.get(), "/docs");
    ExpectFolderAsOnDisk("/docs/history");
    EXPECT_EQ(view.PostedDisconnects(), 0);
}

}  // namespace
