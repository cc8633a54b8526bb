#include "listing/local_listing.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "config/file_types.h"
#include "config/host_types.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "listing/nt_parser.h"
#include "support/local_folder.h"
#include "support/recording_listing_view.h"
#include "support/recording_view.h"

namespace {

class LocalListing : public testing::Test {
  protected:
    ~LocalListing() override {
        list.entries.clear();
        FreeFileTypes();
    }

    static platform::FileInfo Info(const std::string& name, std::uint64_t size, bool isFolder) {
        platform::FileInfo info;
        info.name = name;
        info.size = size;
        info.isFolder = isFolder;
        EXPECT_TRUE(CalendarToFileTime({.year = 2021, .month = 3, .day = 5, .hour = 14, .minute = 7, .second = 31},
                                       info.writeTime));
        return info;
    }
    const LVobject* Find(const std::string& name) const {
        const auto found = std::find_if(list.entries.begin(), list.entries.end(),
                                        [&](const LVobjectPtr& entry) { return entry->name.view() == name; });
        return found != list.entries.end() ? found->get() : nullptr;
    }
    // A node of the tree that lists `path`.
    TVobject* FolderNode(const std::string& path) {
        computer.reset(AllocateTVobject("Computer", kKindLocalComputer));
        return AddChildNode(computer.get(), path, kKindLocalRoot);
    }

    RecordingView view;
    RecordingListingView list;
    std::unique_ptr<TVobject, void (*)(TVobject*)> computer{nullptr, Zarn_FreeTVobject};
};

// A listing line of a DOS server with the same name, size and time gives the same record.
void ExpectSameAsLine(const LVobject& entry, const char* line) {
    LVobjectPtr parsed(AllocateLVobject(nullptr));
    ASSERT_TRUE(BuildItemFromNTStr(line, parsed.get(), HOST_TYPE_LOCAL));
    EXPECT_EQ(parsed->name.view(), entry.name.view());
    EXPECT_EQ(parsed->mode.view(), entry.mode.view());
    EXPECT_EQ(parsed->owner.view(), entry.owner.view());
    EXPECT_EQ(parsed->group.view(), entry.group.view());
    EXPECT_EQ(parsed->dateText.view(), entry.dateText.view());
    EXPECT_EQ(parsed->type, entry.type);
    EXPECT_EQ(parsed->links, entry.links);
    EXPECT_EQ(parsed->size, entry.size);
    EXPECT_EQ(static_cast<bool>(parsed->sizeText), static_cast<bool>(entry.sizeText));
    EXPECT_EQ(parsed->link, entry.link);
    EXPECT_EQ(parsed->node, entry.node);
}

TEST_F(LocalListing, AFileHasTheFieldsOfAListedOne) {
    const LVobjectPtr entry = MakeLocalEntry(Info("notes.txt", 4711, false));
    ASSERT_TRUE(entry);
    ExpectSameAsLine(*entry, "03-05-21  02:07PM       4711 notes.txt");
    EXPECT_EQ(entry->dateText.view(), "Mar 5  2:07PM");
    EXPECT_EQ(entry->fileType, FileTypeOf("notes.txt", false));
}

TEST_F(LocalListing, AFolderHasTheFieldsOfAListedOne) {
    const LVobjectPtr entry = MakeLocalEntry(Info("work", 4096, true));
    ASSERT_TRUE(entry);
    ExpectSameAsLine(*entry, "03-05-21  02:07PM       <DIR> work");
    EXPECT_EQ(entry->fileType, FileTypeOf("work", true));
}

TEST_F(LocalListing, SecondsAndCenturyAreKept) {
    const platform::FileInfo info = Info("a", 1, false);
    EXPECT_EQ(MakeLocalEntry(info)->time, info.writeTime);
}

TEST_F(LocalListing, AFolderNamedAsTheFolderMarkKeepsItsName) {
    const LVobjectPtr entry = MakeLocalEntry(Info("<DIR>", 0, true));
    EXPECT_EQ(entry->name.view(), "<DIR>");
    EXPECT_EQ(entry->type, kKindLocalFolder);
}

TEST_F(LocalListing, BlanksInANameAreKept) {
    EXPECT_EQ(MakeLocalEntry(Info(" a  b ", 1, false))->name.view(), " a  b ");
}

TEST_F(LocalListing, ASizeOf4GiBAndMoreIsCut) {
    EXPECT_EQ(MakeLocalEntry(Info("a", 0xFFFFFFFEu, false))->size, 0xFFFFFFFEu);
    EXPECT_EQ(MakeLocalEntry(Info("a", 0x100000000u, false))->size, 0xFFFFFFFFu);
}

TEST_F(LocalListing, ATimeThatNoCalendarHasIsKeptAndShownAsNow) {
    platform::FileInfo info = Info("a", 1, false);
    info.writeTime = ~std::uint64_t{0};
    const LVobjectPtr entry = MakeLocalEntry(info);
    EXPECT_EQ(entry->time, info.writeTime);
    EXPECT_FALSE(entry->dateText.empty());
}

TEST_F(LocalListing, AFolderIsHandedOverWithItsCounts) {
    const LocalFolder local;
    local.Write("a.txt", "12345");
    local.Write("b.bin", "123");
    local.MakeFolder("inner");
    TVobject* node = FolderNode(local.Path());
    ASSERT_TRUE(ListLocalNode(node));
    ASSERT_EQ(list.entries.size(), 3U);
    EXPECT_EQ(list.folder, node);
    EXPECT_EQ(list.begins, std::vector<bool>{true});
    EXPECT_EQ(list.ends, std::vector<int>{FTP_COMPLETE});
    ASSERT_NE(Find("a.txt"), nullptr);
    EXPECT_EQ(Find("a.txt")->size, 5U);
    EXPECT_EQ(Find("a.txt")->type, kKindLocalFile);
    ASSERT_NE(Find("inner"), nullptr);
    EXPECT_EQ(Find("inner")->type, kKindLocalFolder);
    EXPECT_EQ(node->files, 2U);
    EXPECT_EQ(node->folders, 1U);
}

TEST_F(LocalListing, TheListedFolderBecomesTheCurrentOne) {
    const LocalFolder local;
    local.MakeFolder("inner");
    TVobject* node = FolderNode(local.Path());
    TVobject* inner = AddChildNode(node, "inner", kKindLocalFolder);
    ASSERT_TRUE(ListLocalNode(inner));
    EXPECT_EQ(platform::CurrentFolder(), local.PathOf("inner"));
}

TEST_F(LocalListing, AFolderThatCannotBeReadIsShownAndNothingBegins) {
    const LocalFolder local;
    TVobject* node = FolderNode(local.PathOf("missing"));
    EXPECT_FALSE(ListLocalNode(node));
    EXPECT_TRUE(view.HasBox("missing"));
    EXPECT_TRUE(list.begins.empty());
    EXPECT_TRUE(list.ends.empty());
}

TEST_F(LocalListing, TheComputerListsItsDrives) {
    computer.reset(AllocateTVobject("Computer", kKindLocalComputer));
    ASSERT_TRUE(ListLocalNode(computer.get()));
    EXPECT_EQ(list.Names(), platform::DriveNames());
    ASSERT_FALSE(list.entries.empty());
    EXPECT_EQ(list.entries.front()->type, kKindLocalRoot);
    EXPECT_EQ(list.entries.front()->mode.view(), "d---------");
    EXPECT_EQ(computer->folders, list.entries.size());
}

TEST_F(LocalListing, AStopEndsTheHandOver) {
    const LocalFolder local;
    local.Write("a", "1");
    local.Write("b", "1");
    TVobject* node = FolderNode(local.Path());
    const ListingView shown = gListingView;
    gListingView.begin = [](TVobject*, bool) { gSession.transferAbort = true; };
    ASSERT_TRUE(ListLocalNode(node));
    gListingView = shown;
    SetTransferAbort(false);
    EXPECT_EQ(list.entries.size(), 1U);
}

TEST_F(LocalListing, PathsOfNodes) {
    TVobject* node = FolderNode("top");
    TVobject* inner = AddChildNode(node, "inner", kKindLocalFolder);
    EXPECT_EQ(LocalNodePath(nullptr), "");
    EXPECT_EQ(LocalNodePath(computer.get()), "");
    EXPECT_EQ(LocalNodePath(node), "top");
    EXPECT_EQ(LocalNodePath(inner), std::string("top") + platform::kPathSeparator + "inner");
}

}  // namespace
