#include <gtest/gtest.h>

#include "foundation/date_text.h"
#include "foundation/display_name.h"
#include "listing/directory_entry.h"
#include "support/recording_view.h"

namespace {

LVobjectTemplate FullTemplate() {
    LVobjectTemplate filling;
    filling.name = "New_Folder";
    filling.mode = "d---------";
    filling.owner = "joe";
    filling.group = "group";
    filling.links = 1;
    filling.size = 5000000;
    filling.stampTime = true;
    return filling;
}

TEST(DirectoryEntry, WithoutATemplateEverythingIsZero) {
    const LVobjectPtr entry(AllocateLVobject(nullptr));
    ASSERT_NE(nullptr, entry);
    EXPECT_EQ(nullptr, entry->name.get());
    EXPECT_EQ(nullptr, entry->sizeText.get());
    EXPECT_EQ(0u, entry->type);
    EXPECT_EQ(0u, entry->time);
    EXPECT_EQ(nullptr, entry->link);
    EXPECT_EQ(nullptr, entry->node);
}

TEST(DirectoryEntry, TemplateIsCopiedWithItsSizeTextAndTheTimeStamped) {
    const LVobjectTemplate filling = FullTemplate();
    const LVobjectPtr entry(AllocateLVobject(&filling));
    ASSERT_NE(nullptr, entry);
    EXPECT_STREQ("New_Folder", entry->name.get());
    EXPECT_STREQ("d---------", entry->mode.get());
    EXPECT_STREQ("joe", entry->owner.get());
    EXPECT_STREQ("group", entry->group.get());
    EXPECT_EQ(1u, entry->links);
    EXPECT_EQ(5000000u, entry->size);
    EXPECT_STREQ("4,882KB", entry->sizeText.get());
    EXPECT_NE(0u, entry->time);
    EXPECT_STREQ(Zarn_GetFileTimeString(&entry->time).get(), entry->dateText.get());
}

TEST(DirectoryEntry, TemplateWithAnEmptyOwnerLeavesItNull) {
    LVobjectTemplate filling = FullTemplate();
    filling.owner = "";
    const LVobjectPtr entry(AllocateLVobject(&filling));
    EXPECT_EQ(nullptr, entry->owner.get());
}

TEST(DirectoryEntry, TemplateWithoutStampLeavesTimeZeroAndNoDateText) {
    LVobjectTemplate filling = FullTemplate();
    filling.stampTime = false;
    const LVobjectPtr entry(AllocateLVobject(&filling));
    EXPECT_EQ(0u, entry->time);
    EXPECT_EQ(nullptr, entry->dateText.get());
}

#ifndef _WIN32
LVobject* LinkTo(LVobject* target) {
    auto* entry = AllocateLVobject(nullptr);
    entry->type = kKindLink;
    entry->name = OwnedText::Copy("link");
    entry->link = new SymLinkItem();
    entry->link->pszLinkPath = OwnedText::Copy("/target");
    entry->link->object = target;
    return entry;
}

// Only the sanitizers of the native build see what is not freed.
TEST(DirectoryEntry, FreeingALinkToALinkFreesTheWholeChain) {
    LVobject* const file = AllocateLVobject(nullptr);
    file->name = OwnedText::Copy("file");
    Zarn_FreeLVobject(LinkTo(LinkTo(LinkTo(file))));
}
#endif

TEST(DirectoryEntry, FreeingNothingLeavesOthersAlone) {
    const LVobjectTemplate filling = FullTemplate();
    const LVobjectPtr entry(AllocateLVobject(&filling));
    Zarn_FreeLVobject(nullptr);
    Zarn_FreeSymLinkItem(nullptr);
    EXPECT_STREQ(filling.name, entry->name.get());
}

TEST(DirectoryEntry, ClearingLeavesSizeTextTypeAndNodeAlone) {
    const LVobjectTemplate filling = FullTemplate();
    const LVobjectPtr entry(AllocateLVobject(&filling));
    entry->type = kKindFolder;
    ClearLVobject(entry.get());
    EXPECT_EQ(nullptr, entry->name.get());
    EXPECT_EQ(nullptr, entry->mode.get());
    EXPECT_EQ(nullptr, entry->owner.get());
    EXPECT_EQ(nullptr, entry->group.get());
    EXPECT_EQ(nullptr, entry->dateText.get());
    EXPECT_EQ(0u, entry->links);
    EXPECT_EQ(0u, entry->size);
    EXPECT_EQ(0u, entry->time);
    EXPECT_EQ(nullptr, entry->fileType);
    EXPECT_STREQ("4,882KB", entry->sizeText.get());
    EXPECT_EQ(static_cast<std::uint32_t>(kKindFolder), entry->type);
}

TEST(ColumnSizeText, KilobytesAreCutAndAtLeastOne) {
    const struct {
        std::uint32_t size;
        const char* text;
    } rows[] = {{0, "0KB"},
                {1, "1KB"},
                {1023, "1KB"},
                {1024, "1KB"},
                {1025, "1KB"},
                {2047, "1KB"},
                {2048, "2KB"},
                {1023999, "999KB"},
                {1024000, "1,000KB"},
                {5000000, "4,882KB"},
                {4294967295u, "4,194,303KB"}};
    for (const auto& row : rows) EXPECT_STREQ(row.text, Zarn_GetColumnSizeText(row.size).get()) << row.size;
}

LVobjectPtr Named(const char* name, std::uint32_t type) {
    LVobjectPtr entry(AllocateLVobject(nullptr));
    entry->name = OwnedText::Copy(name);
    entry->type = type;
    return entry;
}

TEST(EntryName, OnlyALinkLosesItsTarget) {
    EXPECT_EQ("bin", EntryName(*Named("bin -> usr/bin", kKindLink)).substr(0, 3));
    EXPECT_EQ("bin -> usr/bin", std::string(EntryName(*Named("bin -> usr/bin", kKindFile))));
}

TEST(EntryName, LastArrowCountsAndOneInFirstPlaceDoesNot) {
    const LVobjectPtr two = Named("a -> b -> c", kKindLink);
    EXPECT_EQ("a -> b", EntryName(*two));
    const LVobjectPtr first = Named(" -> c", kKindLink);
    EXPECT_EQ(" -> c", EntryName(*first));
    const LVobjectPtr none = Named("plain", kKindLink);
    EXPECT_EQ("plain", EntryName(*none));
}

TEST(ShownName, ControlCharactersBecomeHarmless) {
    EXPECT_EQ("red?[31m", ShownName("red\x1B[31m"));
    EXPECT_EQ("a?b?", ShownName("a\tb\x7F"));
    EXPECT_EQ("%n%s", ShownName("%n%s"));
}

TEST(ShownName, Utf8StaysAndOtherBytesAreReadInTheSystemsPage) {
    EXPECT_EQ(
        "Gr\xC3\xBC\xC3\x9F"
        "e",
        ShownName("Gr\xC3\xBC\xC3\x9F"
                  "e"));
    EXPECT_EQ(DisplayName("caf\xE9"), ShownName("caf\xE9"));
    EXPECT_NE("caf\xE9", ShownName("caf\xE9"));
}

TEST(FolderKinds, RootsAndFoldersOfBothSides) {
    for (const std::uint32_t kind : {3u, 4u, 10u, 11u}) EXPECT_TRUE(IsFolderKind(kind)) << kind;
    for (const std::uint32_t kind : {0u, 1u, 2u, 5u, 6u, 7u, 8u, 9u, 12u}) EXPECT_FALSE(IsFolderKind(kind)) << kind;
}

}  // namespace
