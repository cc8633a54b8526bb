#include "config/icon_lookup_window.h"

#include <gtest/gtest.h>

#include "config/file_types.h"
#include "config/icon_info.h"
#include "config/shell_classes.h"
#include "config/store_fixture.h"

class IconLookup : public StoreTest {
  protected:
    void TearDown() override {
        DestroyIconLists();
        StoreTest::TearDown();
    }
    static int Count(HIMAGELIST list) { return ::ImageList_GetImageCount(list); }
    // The test program has the generic icon only.
    static bool Create() { return CreateIconLists(::GetModuleHandleA(nullptr)); }
    static IconPair SystemIcons() {
        IconPair icons;
        icons.largeIcon = ::CopyIcon(::LoadIconA(nullptr, MAKEINTRESOURCEA(32512)));
        icons.smallIcon = ::CopyIcon(::LoadIconA(nullptr, MAKEINTRESOURCEA(32512)));
        return icons;
    }
};

TEST_F(IconLookup, GenericIconIsTheFirstOfBothLists) {
    EXPECT_TRUE(Create());
    EXPECT_EQ(gEntryIcons.file, kGenericFileIcon);
    EXPECT_EQ(Count(LargeIconList()), 1);
    EXPECT_EQ(Count(SmallIconList()), 1);
    EXPECT_FALSE(view_.HasBox("Zarn was unable to add a Generic File Icon to the ListView Imagelist!"));
}

TEST_F(IconLookup, MissingProgramIconsAreShownAndTheGenericOneStandsForThem) {
    EXPECT_TRUE(Create());
    EXPECT_TRUE(view_.HasBox("Zarn was unable to add a Symlink Icon to the ListView Imagelist!"));
    EXPECT_TRUE(view_.HasBox("Zarn was unable to add a Device File Icon to the ListView Imagelist!"));
    EXPECT_TRUE(view_.HasBox("Zarn was unable to add a Fifo File Icon to the ListView Imagelist!"));
    EXPECT_EQ(gEntryIcons.link, kGenericFileIcon);
    EXPECT_EQ(gEntryIcons.folder, kGenericFileIcon);
}

TEST_F(IconLookup, WithoutTheGenericIconThereIsNoSuccess) {
    EXPECT_FALSE(CreateIconLists(::GetModuleHandleA("kernel32.dll")));
    EXPECT_TRUE(view_.HasBox("Zarn was unable to add a Generic File Icon to the ListView Imagelist!"));
}

TEST_F(IconLookup, BothListsGrowInStep) {
    Create();
    IconPair icons = SystemIcons();
    const int before = Count(LargeIconList());
    EXPECT_EQ(AddIconToImageList(icons), before);
    EXPECT_EQ(AddIconToImageList(icons), before + 1);
    EXPECT_EQ(Count(LargeIconList()), before + 2);
    EXPECT_EQ(Count(SmallIconList()), before + 2);
    DestroyIcons(icons);
    EXPECT_EQ(icons.largeIcon, nullptr);
}

TEST_F(IconLookup, OneSizeServesBothLists) {
    Create();
    IconPair icons = SystemIcons();
    ::DestroyIcon(icons.smallIcon);
    icons.smallIcon = nullptr;
    EXPECT_GE(AddIconToImageList(icons), 0);
    EXPECT_EQ(Count(LargeIconList()), Count(SmallIconList()));
    DestroyIcons(icons);
}

TEST_F(IconLookup, ListsOutOfStepAreTracedAndLeftAsTheyWere) {
    Create();
    IconPair icons = SystemIcons();
    ::ImageList_AddIcon(SmallIconList(), icons.smallIcon);
    const int large = Count(LargeIconList());
    const int smaller = Count(SmallIconList());
    RecordTraces();
    EXPECT_EQ(AddIconToImageList(icons), -1);
    EXPECT_TRUE(view_.HasLine("ERROR. Image list are NOT syncronized, ("));
    EXPECT_EQ(Count(LargeIconList()), large);
    EXPECT_EQ(Count(SmallIconList()), smaller);
    DestroyIcons(icons);
}

TEST_F(IconLookup, NoIconsAreNoIndex) {
    Create();
    EXPECT_EQ(AddIconToImageList({}), -1);
}

TEST_F(IconLookup, IconOfASystemFileIsExtracted) {
    IconPair icons = GetIconFromIconInfo("%SystemRoot%\\system32\\shell32.dll,0");
    EXPECT_NE(icons.largeIcon, nullptr);
    EXPECT_NE(icons.smallIcon, nullptr);
    DestroyIcons(icons);
}

TEST_F(IconLookup, FileWithoutIconsIsTraced) {
    RecordTraces();
    const IconPair icons = GetIconFromIconInfo("c:\\no such file.dll,0");
    EXPECT_EQ(icons.largeIcon, nullptr);
    EXPECT_EQ(icons.smallIcon, nullptr);
    EXPECT_TRUE(view_.HasLine("ERROR. No ICONS in c:\\no such file.dll. Returning NULL"));
    EXPECT_EQ(GetIconFromIconInfo(nullptr).largeIcon, nullptr);
    EXPECT_EQ(GetIconFromIconInfo("").largeIcon, nullptr);
}

TEST_F(IconLookup, TypesIconIsAddedOnFirstShowAndAMissingOneIsGeneric) {
    Create();
    FTobject type;
    type.pszIconInfo = OwnedText::Copy("%SystemRoot%\\system32\\shell32.dll,0");
    const int before = Count(LargeIconList());
    EXPECT_EQ(IconOf(&type), before);
    EXPECT_EQ(IconOf(&type), before);
    EXPECT_EQ(Count(LargeIconList()), before + 1);
    FTobject lost;
    lost.pszIconInfo = OwnedText::Copy("c:\\no such file.dll,0");
    RecordTraces();
    EXPECT_EQ(IconOf(&lost), kGenericFileIcon);
    EXPECT_TRUE(view_.HasLine(
        "AddFileType() WARNING. Call to GetIconFromIconInfo(c:\\no such file.dll,0) Failed. Using Generic Icon"));
}

TEST_F(IconLookup, LocationMarkedForExpansionIsReadAsItStands) {
    HKEY key = nullptr;
    if (!GiveClass(".zarnx", "zarnxfile") || !SetClassText("zarnxfile\\DefaultIcon", "") ||
        ::RegOpenKeyExA(HKEY_CLASSES_ROOT, "zarnxfile\\DefaultIcon", 0, KEY_ALL_ACCESS, &key) != ERROR_SUCCESS) {
        GTEST_SKIP() << "this system lets no test register a class";
    }
    const char location[] = "%SystemRoot%\\system32\\shell32.dll,0";
    ::RegSetValueExA(key, "", 0, REG_EXPAND_SZ, reinterpret_cast<const BYTE*>(location), sizeof location);
    ::RegCloseKey(key);
    EXPECT_EQ(GetRootIconInfo(".zarnx"), location);
}
