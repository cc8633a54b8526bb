#include "listing/item_kind.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

std::vector<std::uint32_t> KindsWith(bool (*question)(std::uint32_t)) {
    std::vector<std::uint32_t> kinds;
    for (std::uint32_t kind = kKindUnclassified; kind <= kKindLocalFile + 1; ++kind) {
        if (question(kind)) kinds.push_back(kind);
    }
    return kinds;
}

using Kinds = std::vector<std::uint32_t>;

TEST(ItemKind, FoldersAreRootsAndFoldersOfBothSides) {
    EXPECT_EQ(KindsWith(IsRemoteFolderKind), (Kinds{kKindSiteRoot, kKindFolder}));
    EXPECT_EQ(KindsWith(IsLocalFolderKind), (Kinds{kKindLocalRoot, kKindLocalFolder}));
    EXPECT_EQ(KindsWith(IsFolderKind), (Kinds{kKindSiteRoot, kKindFolder, kKindLocalRoot, kKindLocalFolder}));
}

TEST(ItemKind, RootsHaveNoFolderAboveThem) {
    EXPECT_EQ(KindsWith(IsRootKind), (Kinds{kKindSiteRoot, kKindLocalRoot}));
}

TEST(ItemKind, TheComputerIsALocalNodeAndNoFolder) {
    EXPECT_EQ(KindsWith(IsLocalNodeKind), (Kinds{kKindLocalComputer, kKindLocalRoot, kKindLocalFolder}));
}

TEST(ItemKind, LinksDevicesAndDrivesAreNotTransferred) {
    EXPECT_EQ(KindsWith(IsTransferableKind),
              (Kinds{kKindSiteRoot, kKindFolder, kKindFile, kKindLocalFolder, kKindLocalFile}));
}

}  // namespace
