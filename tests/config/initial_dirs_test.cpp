#include "config/initial_dirs.h"

#include <gtest/gtest.h>

#include <cstring>

#include "config/store_fixture.h"
#include "foundation/file_time.h"

namespace {

constexpr FileTime kDay = 864'000'000'000ULL;
constexpr FileTime kYear2000 = 125'911'584'000'000'000ULL;

FileTime Now(CalendarTime (*clock)()) {
    FileTime now = 0;
    EXPECT_TRUE(CalendarToFileTime(clock(), now));
    return now;
}

void Set(InitDir& item, const char* path, FileTime time) {
    item = InitDir();
    std::memcpy(item.path, path, std::strlen(path) + 1);
    item.lastConnect = time;
}

}  // namespace

class InitialDirs : public StoreTest {
  protected:
    void SetUp() override {
        StoreTest::SetUp();
        ResetSiteDirList();
        site_ = MakeSite("lab");
    }
    static void Store(const std::string& path, FileTime time) {
        std::uint8_t bytes[sizeof time];
        std::memcpy(bytes, &time, sizeof time);
        Key("lab\\InitDirectories\\" + path).WriteBytes("TimeStamp", bytes);
    }
    static FileTime Stored(const std::string& path) {
        FileTime time = 0;
        const auto bytes = Open("lab\\InitDirectories\\" + path).ReadBytes("TimeStamp", sizeof time);
        if (!bytes || bytes->size() != sizeof time) return 1;
        std::memcpy(&time, bytes->data(), sizeof time);
        return time;
    }
    void Use(const char* directory) {
        site_->pszDir = OwnedText::Copy(directory);
        SaveInitDirectories(site_.get());
    }
    static std::vector<std::string> StoredPaths() { return Subkeys("lab\\InitDirectories"); }

    SitePtr site_;
};

TEST_F(InitialDirs, ResetItemIsFreeAndWithoutTime) {
    InitDir item;
    Set(item, "/pub", kYear2000);
    item.inserted = 1;
    ResetSiteDirItem(&item);
    EXPECT_EQ(item.path[0], '\0');
    EXPECT_EQ(item.path[519], '\0');
    EXPECT_EQ(item.lastConnect, 0U);
    EXPECT_EQ(item.inserted, 0);
    ResetSiteDirItem(nullptr);
}

TEST_F(InitialDirs, FindingComparesWithCaseAndSkipsFreeEntries) {
    Set(site_->InitDirs[3], "/Pub", kYear2000);
    EXPECT_EQ(FindInitDirInList(site_->InitDirs, "/Pub"), 3);
    RecordTraces();
    EXPECT_EQ(FindInitDirInList(site_->InitDirs, "/pub"), -1);
    EXPECT_TRUE(view_.HasLine("WARNING. /pub wasn't in List. Returning -1"));
    EXPECT_EQ(FindInitDirInList(site_->InitDirs, ""), -1);
}

TEST_F(InitialDirs, OldestIsTheFirstFreeEntryElseTheFirstOfTheOldest) {
    Set(site_->InitDirs[0], "/a", kYear2000 + 2 * kDay);
    Set(site_->InitDirs[1], "/b", kYear2000);
    EXPECT_EQ(FindOldestInitDir(site_->InitDirs, 5), 2);
    Set(site_->InitDirs[2], "/c", kYear2000);
    Set(site_->InitDirs[3], "/d", kYear2000 + kDay);
    Set(site_->InitDirs[4], "/e", kYear2000 + kDay);
    EXPECT_EQ(FindOldestInitDir(site_->InitDirs, 5), 1);
    EXPECT_EQ(FindOldestInitDir(site_->InitDirs, 1), 0);
    EXPECT_EQ(FindOldestInitDir(site_->InitDirs, 0), -1);
}

TEST_F(InitialDirs, NoneIsOldestWhenAllWereUsedInTheFuture) {
    const FileTime future = Now(platform::LocalTimeNow) + 365 * kDay;
    for (InitDir& item : site_->InitDirs) Set(item, "/x", future);
    EXPECT_EQ(FindOldestInitDir(site_->InitDirs, 5), -1);
    RecordTraces();
    Use("/new");
    EXPECT_TRUE(view_.HasLine("ERROR. Call to FindOldestInitDir() Failed. Returning"));
    EXPECT_FALSE(Exists("lab\\InitDirectories"));
}

TEST_F(InitialDirs, SixthDirectoryReplacesTheOneUsedLongestAgo) {
    const char* const paths[] = {"/a", "/b", "/c", "/d", "/e"};
    for (int index = 0; index < 5; ++index) Set(site_->InitDirs[index], paths[index], kYear2000 + kDay);
    site_->InitDirs[2].lastConnect = kYear2000;
    Use("/new");
    EXPECT_STREQ(site_->InitDirs[2].path, "/new");
    EXPECT_EQ(StoredPaths().size(), 5U);
    EXPECT_TRUE(HasSubkey("lab\\InitDirectories", "/new"));
    EXPECT_FALSE(HasSubkey("lab\\InitDirectories", "/c"));
}

TEST_F(InitialDirs, UsingARememberedDirectoryRefreshesItsTimeAndKeepsTheOrder) {
    Set(site_->InitDirs[0], "/a", kYear2000);
    Set(site_->InitDirs[1], "/b", kYear2000);
    Use("/b");
    EXPECT_STREQ(site_->InitDirs[0].path, "/a");
    EXPECT_STREQ(site_->InitDirs[1].path, "/b");
    EXPECT_EQ(site_->InitDirs[0].lastConnect, kYear2000);
    EXPECT_GT(site_->InitDirs[1].lastConnect, kYear2000);
    EXPECT_EQ(Stored("/a"), kYear2000);
    EXPECT_EQ(Stored("/b"), site_->InitDirs[1].lastConnect);
    EXPECT_EQ(SortInitDirectories(site_->InitDirs), 2);
    EXPECT_STREQ(site_->InitDirs[0].path, "/b");
}

TEST_F(InitialDirs, TheListIsStampedInLocalTimeAndTheSingleOneInUniversalTime) {
    const FileTime localBefore = Now(platform::LocalTimeNow);
    Use("/a");
    EXPECT_GE(Stored("/a"), localBefore);
    EXPECT_LE(Stored("/a"), Now(platform::LocalTimeNow));
    const FileTime universalBefore = Now(platform::UniversalTimeNow);
    SaveInitDirectory(site_.get());
    EXPECT_GE(Stored("/a"), universalBefore);
    EXPECT_LE(Stored("/a"), Now(platform::UniversalTimeNow));
}

TEST_F(InitialDirs, SavingDropsDirectoriesThatTheListDoesNotHold) {
    Store("/stranger", kYear2000);
    Use("/a");
    EXPECT_EQ(StoredPaths(), std::vector<std::string>{"/a"});
}

TEST_F(InitialDirs, SavingWithoutSiteNameOrDirectoryIsTraced) {
    RecordTraces();
    SaveInitDirectories(nullptr);
    EXPECT_TRUE(view_.HasLine("SaveInitDirectories() ERROR. Entered with NULL Site. Returning"));
    site_->pszDir = OwnedText::Copy("");
    SaveInitDirectories(site_.get());
    EXPECT_TRUE(view_.HasLine("ERROR. Entered with NULL pszInitDir. Returning"));
    site_->pszSessionName = OwnedText();
    SaveInitDirectories(site_.get());
    EXPECT_TRUE(view_.HasLine("ERROR. Entered with NULL pszSessionName. Returning"));
    EXPECT_FALSE(Exists("lab"));
}

TEST_F(InitialDirs, LoadingAMissingKeyGivesNothingAndCreatesNothing) {
    Set(site_->InitDirs[0], "/old", kYear2000);
    EXPECT_EQ(LoadInitDirectories(site_.get()), 0);
    EXPECT_EQ(site_->InitDirs[0].path[0], '\0');
    EXPECT_FALSE(Exists("lab\\InitDirectories"));
}

TEST_F(InitialDirs, LoadingReadsPathsAndStamps) {
    Store("/pub/a b", kYear2000);
    Store("/\xC3\xA9", kYear2000 + kDay);
    EXPECT_EQ(LoadInitDirectories(site_.get()), 2);
    const int index = FindInitDirInList(site_->InitDirs, "/pub/a b");
    ASSERT_GE(index, 0);
    EXPECT_EQ(site_->InitDirs[index].lastConnect, kYear2000);
    EXPECT_GE(FindInitDirInList(site_->InitDirs, "/\xC3\xA9"), 0);
}

TEST_F(InitialDirs, MissingOrDamagedStampCountsAsTheEarliestTime) {
    Key("lab\\InitDirectories\\/a");
    Key("lab\\InitDirectories\\/b").WriteText("TimeStamp", "monday");
    const std::uint8_t nine[9] = {1};
    Key("lab\\InitDirectories\\/c").WriteBytes("TimeStamp", nine);
    EXPECT_EQ(LoadInitDirectories(site_.get()), 3);
    for (int index = 0; index < 3; ++index) EXPECT_EQ(site_->InitDirs[index].lastConnect, 0U);
}

TEST_F(InitialDirs, SevenInTheStoreArePrunedToTheFiveNewestOnASiteLoad) {
    const FileTime times[] = {6, 1, 5, 7, 2, 3, 4};
    for (int index = 0; index < 7; ++index) {
        Store(std::string("/") + static_cast<char>('a' + index), kYear2000 + times[index] * kDay);
    }
    EXPECT_EQ(LoadInitDirectories(site_.get()), 7);
    EXPECT_EQ(StoredPaths().size(), 5U);
    EXPECT_FALSE(Exists("lab\\InitDirectories\\/b"));
    EXPECT_FALSE(Exists("lab\\InitDirectories\\/e"));
    for (const char* path : {"/a", "/c", "/d", "/f", "/g"}) {
        EXPECT_GE(FindInitDirInList(site_->InitDirs, path), 0) << path;
    }
}

TEST_F(InitialDirs, SevenInTheStoreArePrunedToTheFirstFiveForTheTree) {
    const FileTime times[] = {6, 1, 5, 7, 2, 3, 4};
    for (int index = 0; index < 7; ++index) {
        Store(std::string("/") + static_cast<char>('a' + index), kYear2000 + times[index] * kDay);
    }
    const std::vector<std::string> before = StoredPaths();
    EXPECT_EQ(GetInitDirectories("Test", "lab"), 5);
    ASSERT_EQ(StoredPaths().size(), 5U);
    for (std::size_t index = 0; index < 5; ++index) {
        EXPECT_EQ(StoredPaths()[index], before[index]);
        EXPECT_EQ(gInitDirs[index].path, before[index]);
    }
}

TEST_F(InitialDirs, FetchingForTheTreeCreatesTheKey) {
    Set(gInitDirs[0], "/old", kYear2000);
    RecordTraces();
    EXPECT_EQ(GetInitDirectories("Test", "lab"), 0);
    EXPECT_TRUE(view_.HasLine("Test() Key (lab\\InitDirectories) doesn't exist. Creating it"));
    EXPECT_TRUE(Exists("lab\\InitDirectories"));
    EXPECT_EQ(gInitDirs[0].path[0], '\0');
}

TEST_F(InitialDirs, SortingPutsTheNewestFirstAndFreeEntriesLast) {
    Set(site_->InitDirs[0], "/old", kYear2000);
    Set(site_->InitDirs[2], "/new", kYear2000 + 2 * kDay);
    Set(site_->InitDirs[4], "/mid", kYear2000 + kDay);
    EXPECT_EQ(SortInitDirectories(site_->InitDirs), 3);
    EXPECT_STREQ(site_->InitDirs[0].path, "/new");
    EXPECT_STREQ(site_->InitDirs[1].path, "/mid");
    EXPECT_STREQ(site_->InitDirs[2].path, "/old");
    EXPECT_EQ(site_->InitDirs[3].path[0], '\0');
    EXPECT_EQ(SortInitDirectories(site_->InitDirs), 3) << "sorting leaves no mark";
}

TEST_F(InitialDirs, EqualTimesSortTheLaterListedFirst) {
    Set(site_->InitDirs[0], "/first", kYear2000);
    Set(site_->InitDirs[1], "/second", kYear2000);
    Set(site_->InitDirs[2], "/third", 0);
    Set(site_->InitDirs[3], "/fourth", 0);
    EXPECT_EQ(SortInitDirectories(site_->InitDirs), 4);
    EXPECT_STREQ(site_->InitDirs[0].path, "/second");
    EXPECT_STREQ(site_->InitDirs[1].path, "/first");
    EXPECT_STREQ(site_->InitDirs[2].path, "/fourth");
    EXPECT_STREQ(site_->InitDirs[3].path, "/third");
}

#ifdef _WIN32
TEST_F(InitialDirs, PathThatCannotBeAKeyEndsTheSaveAndIsTraced) {
    RecordTraces();
    const std::string path = "/" + std::string(400, 'x');
    Use(path.c_str());
    EXPECT_TRUE(view_.HasLine("RegCreateKeyEx()"));
    EXPECT_TRUE(view_.HasLine("ERROR. Failed to create Key: lab\\InitDirectories\\/xxx"));
    EXPECT_STREQ(site_->InitDirs[0].path, path.c_str()) << "the list in memory keeps it";
}
#endif
