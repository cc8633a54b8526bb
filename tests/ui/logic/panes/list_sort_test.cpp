#include "ui/panes/list_sort.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "config/settings.h"

namespace {

enum Column { kName, kType, kUmask, kLinks, kOwner, kGroup, kSize, kTimestamp };
constexpr std::uint32_t kUnix = kColumnsUnix;
constexpr std::uint32_t kWindows = kColumnsWindows;
// Column numbers of the Windows layout.
constexpr int kThird = 2;
constexpr int kFourth = 3;

LVobjectPtr Entry(const char* name, std::uint32_t type = kKindFile) {
    LVobjectPtr entry(AllocateLVobject(nullptr));
    entry->name = OwnedText::Copy(name);
    entry->type = type;
    return entry;
}

LVobjectPtr SizedEntry(const char* name, std::uint32_t size, std::uint32_t type = kKindFile) {
    LVobjectPtr entry = Entry(name, type);
    entry->size = size;
    return entry;
}

LVobjectPtr LinkedEntry(const char* name, std::uint32_t links, FileTime time) {
    LVobjectPtr entry = Entry(name);
    entry->links = links;
    entry->time = time;
    return entry;
}

LVobjectPtr ResolvedLink(const char* name, LVobjectPtr target) {
    LVobjectPtr entry = Entry(name, kKindLink);
    entry->link = new SymLinkItem();
    entry->link->object = target.release();
    return entry;
}

std::vector<LVobjectPtr> List(std::initializer_list<LVobjectPtr*> entries) {
    std::vector<LVobjectPtr> list;
    for (LVobjectPtr* entry : entries) list.push_back(std::move(*entry));
    return list;
}

std::string Names(const std::vector<LVobjectPtr>& entries) {
    std::string names;
    for (const LVobjectPtr& entry : entries) names += (names.empty() ? "" : " ") + std::string(entry->name.c_str());
    return names;
}

std::string Sorted(std::vector<LVobjectPtr>&& entries, int column, std::uint32_t layout, bool descending = false) {
    SortEntries(entries, column, layout, descending);
    return Names(entries);
}

TEST(ListSort, NamesIgnoreCaseAndTheFlagReversesThem) {
    LVobjectPtr b = Entry("b"), a = Entry("A"), c = Entry("C");
    EXPECT_EQ("A b C", Sorted(List({&b, &a, &c}), kName, kUnix));
    b = Entry("b"), a = Entry("A"), c = Entry("C");
    EXPECT_EQ("C b A", Sorted(List({&b, &a, &c}), kName, kUnix, true));
}

TEST(ListSort, NamesOutsideAsciiIgnoreCaseToo) {
    const LVobjectPtr upper = Entry(
        "\xC3\x9C"
        "bung");
    const LVobjectPtr lower = Entry(
        "\xC3\xBC"
        "bung");
    EXPECT_EQ(0, CompareEntries(*upper, *lower, kName, kUnix, false));
}

TEST(ListSort, TypeUmaskOwnerAndGroupAreTextsInTheirOwnColumns) {
    FTobject folder, text;
    folder.pszDescription = OwnedText::Copy("File Folder");
    text.pszDescription = OwnedText::Copy("txt File");
    const LVobjectPtr a = Entry("same"), b = Entry("same");
    a->fileType = &text;
    b->fileType = &folder;
    a->mode = OwnedText::Copy("drwx------");
    b->mode = OwnedText::Copy("-rw-------");
    a->owner = OwnedText::Copy("Root");
    b->owner = OwnedText::Copy("alice");
    a->group = OwnedText::Copy("adm");
    b->group = OwnedText::Copy("Wheel");
    EXPECT_GT(CompareEntries(*a, *b, kType, kUnix, false), 0);
    EXPECT_GT(CompareEntries(*a, *b, kUmask, kUnix, false), 0);
    EXPECT_GT(CompareEntries(*a, *b, kOwner, kUnix, false), 0);
    EXPECT_LT(CompareEntries(*a, *b, kGroup, kUnix, false), 0);
    EXPECT_EQ(0, CompareEntries(*a, *b, kName, kUnix, false));
}

TEST(ListSort, MissingTextsComeFirst) {
    const LVobjectPtr with = Entry("a"), without = Entry("b");
    with->owner = OwnedText::Copy("root");
    EXPECT_GT(CompareEntries(*with, *without, kOwner, kUnix, false), 0);
    EXPECT_EQ(0, CompareEntries(*with, *without, kType, kUnix, false));
}

TEST(ListSort, LinksAndSizesComeLargestFirstWhileTheFlagIsClear) {
    LVobjectPtr small = SizedEntry("small", 1), large = SizedEntry("large", 5000000),
                middle = SizedEntry("middle", 1024);
    EXPECT_EQ("large middle small", Sorted(List({&small, &large, &middle}), kSize, kUnix));
    small = SizedEntry("small", 1), large = SizedEntry("large", 5000000), middle = SizedEntry("middle", 1024);
    EXPECT_EQ("small middle large", Sorted(List({&small, &large, &middle}), kSize, kUnix, true));
    LVobjectPtr one = LinkedEntry("one", 1, 0), nine = LinkedEntry("nine", 9, 0);
    EXPECT_EQ("nine one", Sorted(List({&one, &nine}), kLinks, kUnix));
}

TEST(ListSort, SizesAreSigned32BitValues) {
    const LVobjectPtr most = SizedEntry("most", 0xFFFFFFFFu), one = SizedEntry("one", 1);
    EXPECT_GT(CompareEntries(*most, *one, kSize, kUnix, false), 0);
}

TEST(ListSort, DevicesPipesDrivesAndLocalFoldersCountAsEmptyBySize) {
    for (const std::uint32_t type : {kKindDevice, kKindPipe, kKindLocalRoot, kKindLocalFolder}) {
        const LVobjectPtr special = SizedEntry("special", 4096, type), empty = SizedEntry("empty", 0);
        EXPECT_EQ(0, CompareEntries(*special, *empty, kSize, kUnix, false)) << type;
    }
    const LVobjectPtr folder = SizedEntry("folder", 4096, kKindFolder), empty = SizedEntry("empty", 0);
    EXPECT_LT(CompareEntries(*folder, *empty, kSize, kUnix, false), 0);
}

TEST(ListSort, TimesComeOldestFirstWhileTheFlagIsClear) {
    LVobjectPtr late = LinkedEntry("late", 1, ~0ull), early = LinkedEntry("early", 1, 1);
    EXPECT_EQ("early late", Sorted(List({&late, &early}), kTimestamp, kUnix));
    late = LinkedEntry("late", 1, ~0ull), early = LinkedEntry("early", 1, 1);
    EXPECT_EQ("late early", Sorted(List({&early, &late}), kTimestamp, kUnix, true));
}

TEST(ListSort, AResolvedLinkSortsAsItsTarget) {
    const LVobjectPtr link = ResolvedLink("a-link", SizedEntry("zfolder", 4096, kKindFolder));
    const LVobjectPtr file = SizedEntry("m-file", 100);
    EXPECT_GT(CompareEntries(*link, *file, kName, kUnix, false), 0);
    EXPECT_LT(CompareEntries(*link, *file, kSize, kUnix, false), 0);
}

TEST(ListSort, AnUnresolvedLinkSortsAsItself) {
    const LVobjectPtr link = Entry("a-link -> z", kKindLink), file = Entry("m-file");
    EXPECT_LT(CompareEntries(*link, *file, kName, kUnix, false), 0);
}

TEST(ListSort, TheWindowsLayoutsThirdAndFourthColumnAreSizeAndTimestamp) {
    EXPECT_EQ(kName, EffectiveColumn(0, kWindows));
    EXPECT_EQ(kType, EffectiveColumn(1, kWindows));
    EXPECT_EQ(kSize, EffectiveColumn(kThird, kWindows));
    EXPECT_EQ(kTimestamp, EffectiveColumn(kFourth, kWindows));
    EXPECT_EQ(kUmask, EffectiveColumn(kThird, kUnix));
}

TEST(ListSort, ByOwnerAndByGroupLeaveTheWindowsLayoutAsItIs) {
    for (const int column : {static_cast<int>(kOwner), static_cast<int>(kGroup)}) {
        EXPECT_EQ(-1, EffectiveColumn(column, kWindows));
        LVobjectPtr b = Entry("b"), a = Entry("a");
        a->owner = OwnedText::Copy("alice");
        b->owner = OwnedText::Copy("root");
        EXPECT_EQ("b a", Sorted(List({&b, &a}), column, kWindows));
    }
}

TEST(ListSort, ColumnsThatNoLayoutHasCompareAsEqual) {
    const LVobjectPtr a = Entry("a"), b = Entry("b");
    EXPECT_EQ(0, CompareEntries(*a, *b, 8, kUnix, false));
    EXPECT_EQ(0, CompareEntries(*a, *b, -1, kUnix, false));
    EXPECT_EQ(0, CompareEntries(*a, *b, 4, kWindows, false));
}

TEST(ListSort, EqualEntriesKeepTheirOrderEitherWay) {
    for (const bool descending : {false, true}) {
        LVobjectPtr c = SizedEntry("c", 7), a = SizedEntry("a", 7), b = SizedEntry("b", 7);
        EXPECT_EQ("c a b", Sorted(List({&c, &a, &b}), kSize, kUnix, descending));
    }
}

TEST(ListSort, SortingAndComparingAgree) {
    std::mt19937 random(7);
    for (int column = 0; column < 8; ++column) {
        std::vector<LVobjectPtr> entries;
        for (int i = 0; i < 200; ++i) {
            LVobjectPtr entry = Entry(("n" + std::to_string(random() % 50)).c_str());
            entry->owner = OwnedText::Copy(random() % 2 != 0 ? "ROOT" : "alice");
            entry->size = static_cast<std::uint32_t>(random());
            entry->links = random() % 5;
            entry->time = random();
            entries.push_back(std::move(entry));
        }
        SortEntries(entries, column, kUnix, false);
        for (std::size_t i = 1; i < entries.size(); ++i) {
            EXPECT_LE(CompareEntries(*entries[i - 1], *entries[i], column, kUnix, false), 0) << column;
        }
    }
}

TEST(ColumnClick, TheFirstClickKeepsTheDirectionAndTheSecondTurnsIt) {
    SortState state;
    NoteColumnClick(state, kSize);
    EXPECT_EQ(kSize, state.lastColumn);
    EXPECT_FALSE(state.descending[kSize]);
    NoteColumnClick(state, kSize);
    EXPECT_TRUE(state.descending[kSize]);
    NoteColumnClick(state, kSize);
    EXPECT_FALSE(state.descending[kSize]);
}

TEST(ColumnClick, ClickingSizeTwiceTogglesBetweenLargestAndSmallestFirst) {
    SortState state;
    NoteColumnClick(state, kSize);
    LVobjectPtr small = SizedEntry("small", 1), large = SizedEntry("large", 9);
    EXPECT_EQ("large small", Sorted(List({&small, &large}), kSize, kUnix, state.descending[kSize]));
    NoteColumnClick(state, kSize);
    small = SizedEntry("small", 1), large = SizedEntry("large", 9);
    EXPECT_EQ("small large", Sorted(List({&small, &large}), kSize, kUnix, state.descending[kSize]));
}

TEST(ColumnClick, AnotherColumnKeepsItsRememberedDirection) {
    SortState state;
    NoteColumnClick(state, kName);
    NoteColumnClick(state, kName);
    NoteColumnClick(state, kSize);
    NoteColumnClick(state, kName);
    EXPECT_TRUE(state.descending[kName]);
    EXPECT_EQ(kName, state.lastColumn);
}

TEST(ColumnClick, AColumnSortedByCommandOnlyIsClearedByItsFirstClick) {
    SortState state;
    state.lastColumn = kName;
    state.descending[kName] = true;
    NoteColumnClick(state, kName);
    EXPECT_FALSE(state.descending[kName]);
    EXPECT_TRUE(state.clicked[kName]);
}

TEST(ColumnClick, ColumnsThatDoNotExistChangeNothing) {
    SortState state;
    NoteColumnClick(state, -1);
    NoteColumnClick(state, 8);
    EXPECT_EQ(-1, state.lastColumn);
}

}  // namespace
