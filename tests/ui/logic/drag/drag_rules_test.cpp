// What may be dropped where, and when the tree scrolls or opens a node during a drag.
#include "ui/drag/drag_rules.h"

#include <gtest/gtest.h>

#include "listing/directory_entry.h"

namespace {

constexpr DragLoad kRemoteFiles{false, true, 2};
constexpr DragLoad kLocalFiles{true, false, 2};

TEST(DropEffect, RemoteEntriesAreReceivedInLocalDrivesAndFolders) {
    EXPECT_EQ(DropEffectFor(kRemoteFiles, {kKindLocalRoot, false}), DropEffect::Receive);
    EXPECT_EQ(DropEffectFor(kRemoteFiles, {kKindLocalFolder, false}), DropEffect::Receive);
}

TEST(DropEffect, RemoteEntriesCannotBeDroppedElsewhere) {
    for (const std::uint32_t kind :
         {kKindUnclassified, kKindAddSite, kKindSite, kKindSiteRoot, kKindFolder, kKindLocalComputer}) {
        EXPECT_EQ(DropEffectFor(kRemoteFiles, {kind, true}), DropEffect::None) << kind;
    }
}

TEST(DropEffect, LocalEntriesAreSentToFoldersOfAConnectedSite) {
    EXPECT_EQ(DropEffectFor(kLocalFiles, {kKindSite, true}), DropEffect::Send);
    EXPECT_EQ(DropEffectFor(kLocalFiles, {kKindSiteRoot, true}), DropEffect::Send);
    EXPECT_EQ(DropEffectFor(kLocalFiles, {kKindFolder, true}), DropEffect::Send);
}

TEST(DropEffect, LocalEntriesCannotBeDroppedElsewhere) {
    for (const std::uint32_t kind :
         {kKindUnclassified, kKindAddSite, kKindLocalComputer, kKindLocalRoot, kKindLocalFolder}) {
        EXPECT_EQ(DropEffectFor(kLocalFiles, {kind, true}), DropEffect::None) << kind;
    }
}

TEST(DropEffect, WithoutAConnectionTheUserIsTold) {
    EXPECT_EQ(DropEffectFor(kLocalFiles, {kKindSite, false}), DropEffect::NotConnected);
    EXPECT_EQ(DropEffectFor(kLocalFiles, {kKindFolder, false}), DropEffect::NotConnected);
    EXPECT_EQ(DropEffectFor({false, false, 1}, {kKindLocalFolder, false}), DropEffect::NotConnected);
}

TEST(DropEffect, NothingThatCanBeTransferredCannotBeDropped) {
    EXPECT_EQ(DropEffectFor({false, true, 0}, {kKindLocalFolder, false}), DropEffect::None);
    EXPECT_EQ(DropEffectFor({true, false, 0}, {kKindFolder, true}), DropEffect::None);
}

TEST(DragScroll, ThePaneScrollsNearItsEdgesOnly) {
    EXPECT_EQ(DragScroll(100, 100, 400, 16), -1);
    EXPECT_EQ(DragScroll(90, 100, 400, 16), -1);
    EXPECT_EQ(DragScroll(83, 100, 400, 16), 0);
    EXPECT_EQ(DragScroll(116, 100, 400, 16), 0);
    EXPECT_EQ(DragScroll(383, 100, 400, 16), 0);
    EXPECT_EQ(DragScroll(384, 100, 400, 16), 1);
    EXPECT_EQ(DragScroll(415, 100, 400, 16), 1);
    EXPECT_EQ(DragScroll(416, 100, 400, 16), 0);
}

TEST(OpensUnderPointer, AClosedNodeWithAButtonAfterARest) {
    EXPECT_TRUE(OpensUnderPointer(kOpenAfter, false, true));
    EXPECT_FALSE(OpensUnderPointer(kOpenAfter - 1, false, true));
    EXPECT_FALSE(OpensUnderPointer(kOpenAfter, true, true));
    EXPECT_FALSE(OpensUnderPointer(kOpenAfter, false, false));
}

}  // namespace
