#include "config/mode_map_list.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "config/file_types.h"
#include "config/store_fixture.h"

namespace {

class ModeMapList : public StoreTest {
  protected:
    void TearDown() override {
        FreeFileTypes();
        StoreTest::TearDown();
    }
    static void Map(const std::string& extension, const char* description) {
        Key("Defaults\\ModeMap\\" + extension).WriteText("Description", description);
    }
    // How many items of the list are of that extension, as types are named: in capitals.
    int Count(std::string_view extension) const {
        return static_cast<int>(std::count_if(list_.begin(), list_.end(), [&](const ModeMapItem& item) {
            return item.type->pszType.view() == extension;
        }));
    }
    std::vector<ModeMapItem> list_;
};

TEST_F(ModeMapList, HoldsEveryMappedExtensionUnchanged) {
    EXPECT_EQ(RegQueryZarnDefaults(list_), 0);
    Map(".zarna", "User's words");
    Key("Defaults\\ModeMap\\.zarnb");
    Key("Defaults\\ModeMap\\no-dot");
    EXPECT_EQ(RegQueryZarnDefaults(list_), 2);
    ASSERT_EQ(list_.size(), 2U);
    EXPECT_EQ(Count(".ZARNA"), 1);
    EXPECT_EQ(Count(".ZARNB"), 1);
    for (const ModeMapItem& item : list_) EXPECT_EQ(item.changed, 0U);
    const FTobject* const described = LookupFileType(".zarna");
    EXPECT_EQ(described->pszDescription.view(), "User's words");
    EXPECT_EQ(LookupFileType(".zarnb")->pszDescription.view(), "zarnb File") << "built in, where nobody describes it";
}

TEST_F(ModeMapList, TheShellAddsOnlyWhatTheMapDoesNotHave) {
    if (!GiveClass(".zarna", "zarnafile") || !GiveClass(".zarnc", "zarncfile") || !SetClassText("zarncfile", "C")) {
        GTEST_SKIP() << "this system lets no test register a class";
    }
    Map(".ZarnA", "User's words");
    EXPECT_EQ(RegQueryZarnDefaults(list_), 1);
    const int added = RegQueryRootClasses(list_);
    EXPECT_EQ(static_cast<std::size_t>(added) + 1, list_.size());
    EXPECT_EQ(Count(".ZARNA"), 1);
    EXPECT_EQ(Count(".ZARNC"), 1);
    EXPECT_EQ(LookupFileType(".zarna")->pszDescription.view(), "User's words");
    EXPECT_EQ(LookupFileType(".zarnc")->pszDescription.view(), "C");
    EXPECT_EQ(RegQueryRootClasses(list_), 0) << "nothing twice";
}

}  // namespace
