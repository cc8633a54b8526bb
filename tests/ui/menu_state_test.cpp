// Which items of the menu bar are enabled, for each combination of focus and selection, read from the open menus.
#include "ui/shared_program.h"

#include <cctype>

#include "resources/resource.h"
#include "ui/driver/menus.h"

namespace {

// Commands whose dialogs do not exist yet stay greyed whatever is selected.
constexpr bool kPropertiesExist = false;
constexpr bool kViewersExist = false;

class MenuStateTest : public SharedProgramTest {
  public:
    // What is focused and selected before the menu opens.
    void OnTheAddSiteNode() { OnNode(L"Create New Site Folder", L"Zarnish Ftp"); }
    void OnASiteThatIsNotConnected() { OnNode(L"Other", L"Zarn Other"); }
    void OnASiteThatIsConnected() { OnNode(L"Test", L"Zarn Test::/"); }
    void OnTheSitesRoot() { ASSERT_TRUE(SelectNode(RootItem(), L"Zarn Test::/")); }
    void OnARemoteFolder();
    void OnTheLocalComputer();
    void OnADrive();
    void OnALocalFolder();
    void InTheListWithNothing() { SelectEntries({}); }
    void InTheListOnAFile() { SelectEntries({L"a.txt"}); }
    void InTheListOnAFolder() { SelectEntries({L"pub"}); }
    void InTheListOnALink() { SelectEntries({L"link -> a.txt"}); }
    void InTheListOnSeveralFiles() { SelectEntries({L"a.txt", L"b.txt"}); }
    void InTheListOnAFolderAndAFile() { SelectEntries({L"pub", L"b.txt"}); }
    void InTheListOnAFolderAndALink() { SelectEntries({L"pub", L"link -> a.txt"}); }
    void InTheListOnALocalFile() { InTheLocalList({L"local.txt"}); }
    void InTheListOnALocalFolder() { InTheLocalList({L"sub"}); }
    void InTheListOnSeveralLocalFiles() { InTheLocalList({L"local.txt", L"other.txt"}); }
    void InTheConsole();

  protected:
    static constexpr char kLocalFolder[] = "C:\\zarn-menu-test";

    void Prepare() override;
    void OnNode(const std::wstring& name, const std::wstring& title) { ASSERT_TRUE(SelectNode(SiteItem(name), title)); }
    void InTheLocalList(const std::vector<std::wstring>& names);
    HTREEITEM LocalNode(const std::vector<std::wstring>& path);
    MenuItems Open(const std::wstring& letters);
    bool Enabled(const MenuItems& items, unsigned id);
};

void MenuStateTest::Prepare() {
    server_->SetListing("/",
                        "-rw-r--r-- 1 u g 1000 Jan 01 1999 a.txt\r\n"
                        "-rw-r--r-- 1 u g 2000 Jan 01 1999 b.txt\r\n"
                        "lrwxrwxrwx 1 u g 5 Jan 01 1999 link -> a.txt\r\n"
                        "drwxr-xr-x 2 u g 512 Jan 01 1999 pub\r\n");
    server_->AddFile("/pub/inner.txt", "x");
    StoreSite("Other");
    CreateDirectoryA(kLocalFolder, nullptr);
    CreateDirectoryA((std::string(kLocalFolder) + "\\sub").c_str(), nullptr);
    for (const char* name : {"\\local.txt", "\\other.txt"}) {
        CloseHandle(CreateFileA((std::string(kLocalFolder) + name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0,
                                nullptr));
    }
}

void MenuStateTest::OnARemoteFolder() {
    program_->FocusPane(program_->Tree());
    HTREEITEM pub = EnterFolder(L"pub");
    ASSERT_TRUE(SelectNode(pub, L"Zarn Test::/pub"));
}

// The local computer is the last node of the top level.
HTREEITEM MenuStateTest::LocalNode(const std::vector<std::wstring>& path) {
    HTREEITEM node = program_->TreeNext(nullptr, TVGN_ROOT);
    while (HTREEITEM next = program_->TreeNext(node, TVGN_NEXT)) node = next;
    for (const std::wstring& name : path) {
        program_->ExpandInTree(node);
        HTREEITEM child = nullptr;
        program_->WaitFor([&] { return (child = program_->FindInTree(node, name)) != nullptr; });
        node = child;
    }
    return node;
}

void MenuStateTest::OnTheLocalComputer() {
    const HTREEITEM node = LocalNode({});
    std::wstring name = program_->TreeText(node);
    for (wchar_t& c : name) c = static_cast<wchar_t>(std::tolower(c));
    program_->FocusPane(program_->Tree());
    program_->SelectInTree(node);
    ASSERT_TRUE(program_->WaitFor([&] {
        std::wstring title = program_->Title();
        for (wchar_t& c : title) c = static_cast<wchar_t>(std::tolower(c));
        return title == L"zarn : " + name;
    }));
    ASSERT_TRUE(program_->WaitIdle());
}

void MenuStateTest::OnADrive() {
    ASSERT_TRUE(SelectNode(LocalNode({L"C:\\"}), L"Zarnish Ftp"));
}

void MenuStateTest::OnALocalFolder() {
    ASSERT_TRUE(SelectNode(LocalNode({L"C:\\", L"zarn-menu-test"}), L"Zarnish Ftp"));
    ASSERT_TRUE(WaitListed(L"local.txt"));
}

void MenuStateTest::InTheLocalList(const std::vector<std::wstring>& names) {
    OnALocalFolder();
    ASSERT_FALSE(HasFatalFailure());
    SelectEntries(names);
}

void MenuStateTest::InTheConsole() {
    SelectEntries({L"a.txt"});
    program_->FocusPane(program_->Console());
    ASSERT_TRUE(FocusOn(program_->Console()));
    ASSERT_TRUE(Settle());
}

MenuItems MenuStateTest::Open(const std::wstring& letters) {
    Menus menus(*program_);
    EXPECT_TRUE(menus.Ready());
    const MenuItems items = menus.OpenFromBar(letters);
    EXPECT_TRUE(menus.Close());
    EXPECT_FALSE(items.empty()) << "the menu does not open";
    return items;
}

bool MenuStateTest::Enabled(const MenuItems& items, unsigned id) {
    const MenuItem* item = ItemOf(items, id);
    EXPECT_NE(item, nullptr) << id;
    return item != nullptr && item->enabled;
}

struct FileRow {
    const char* name;
    void (MenuStateTest::*select)();
    bool transfer, remove, rename, properties, view;
};
constexpr FileRow kFileRows[] = {
    {"TreeAddSiteNode", &MenuStateTest::OnTheAddSiteNode, false, false, false, false, false},
    {"TreeSite", &MenuStateTest::OnASiteThatIsNotConnected, false, true, true, true, false},
    {"TreeConnectedSite", &MenuStateTest::OnASiteThatIsConnected, false, false, true, true, false},
    {"TreeRoot", &MenuStateTest::OnTheSitesRoot, true, false, false, true, false},
    {"TreeFolder", &MenuStateTest::OnARemoteFolder, true, false, false, true, false},
    {"TreeLocalComputer", &MenuStateTest::OnTheLocalComputer, false, false, false, false, false},
    {"TreeDrive", &MenuStateTest::OnADrive, false, false, false, false, false},
    {"TreeLocalFolder", &MenuStateTest::OnALocalFolder, false, false, false, false, false},
    {"ListNothing", &MenuStateTest::InTheListWithNothing, false, false, false, false, false},
    {"ListFile", &MenuStateTest::InTheListOnAFile, true, true, true, true, true},
    {"ListFolder", &MenuStateTest::InTheListOnAFolder, true, true, true, true, false},
    {"ListLink", &MenuStateTest::InTheListOnALink, true, true, true, true, false},
    {"ListSeveralFiles", &MenuStateTest::InTheListOnSeveralFiles, false, false, false, true, true},
    {"ListFolderAndFile", &MenuStateTest::InTheListOnAFolderAndAFile, false, false, false, true, true},
    {"ListFolderAndLink", &MenuStateTest::InTheListOnAFolderAndALink, false, false, false, true, false},
    {"ListLocalFile", &MenuStateTest::InTheListOnALocalFile, false, true, true, false, true},
    {"ListLocalFolder", &MenuStateTest::InTheListOnALocalFolder, false, true, true, false, false},
    {"ListSeveralLocalFiles", &MenuStateTest::InTheListOnSeveralLocalFiles, false, false, false, false, true},
    {"NeitherPane", &MenuStateTest::InTheConsole, false, false, false, false, false},
};

class FileMenuTest : public MenuStateTest, public testing::WithParamInterface<FileRow> {};

TEST_P(FileMenuTest, IsEnabledByFocusAndSelection) {
    const FileRow& row = GetParam();
    (this->*row.select)();
    ASSERT_FALSE(HasFatalFailure());
    const MenuItems file = Open(L"f");
    EXPECT_EQ(Enabled(file, IDM_RECEIVE), row.transfer);
    EXPECT_EQ(Enabled(file, IDM_DELETE), row.remove);
    EXPECT_EQ(Enabled(file, IDM_RENAME), row.rename);
    EXPECT_EQ(Enabled(file, IDM_PROPERTIES), row.properties && kPropertiesExist);
    EXPECT_EQ(Enabled(file, IDM_QUICKVIEW), row.view && kViewersExist);
    EXPECT_EQ(Enabled(file, IDM_PRINT), row.view && kViewersExist);
    EXPECT_TRUE(Enabled(file, IDM_EXITAPP));
}

std::string NameOfFileRow(const testing::TestParamInfo<FileRow>& test) {
    return test.param.name;
}

INSTANTIATE_TEST_SUITE_P(Menus, FileMenuTest, testing::ValuesIn(kFileRows), NameOfFileRow);

TEST_F(MenuStateTest, SelectAllNeedsTheFocusOnAListThatHoldsSomething) {
    SelectEntries({});
    EXPECT_TRUE(Enabled(Open(L"e"), IDM_SELECTALL));
    program_->FocusPane(program_->Tree());
    ASSERT_TRUE(FocusOn(program_->Tree()));
    ASSERT_TRUE(Settle());
    EXPECT_FALSE(Enabled(Open(L"e"), IDM_SELECTALL));
    ASSERT_TRUE(SelectNode(SiteItem(L"Create New Site Folder"), L"Zarnish Ftp"));
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ListCount() == 0; }));
    program_->FocusPane(program_->List());
    ASSERT_TRUE(FocusOn(program_->List()));
    ASSERT_TRUE(Settle());
    EXPECT_FALSE(Enabled(Open(L"e"), IDM_SELECTALL));
}

TEST_F(MenuStateTest, TheViewThatIsShownIsGreyedAndDetailsGreysNone) {
    const unsigned views[] = {IDM_VIEW_LARGE_ICONS, IDM_VIEW_SMALL_ICONS, IDM_VIEW_LIST};
    for (const unsigned shown : {IDM_VIEW_LARGE_ICONS, IDM_VIEW_SMALL_ICONS, IDM_VIEW_LIST, IDM_DETAILS_WINDOWS}) {
        program_->Command(shown);
        ASSERT_TRUE(Settle());
        const MenuItems view = Open(L"v");
        for (const unsigned id : views) EXPECT_EQ(Enabled(view, id), id != shown) << id << " while " << shown;
    }
}

TEST_F(MenuStateTest, ArrangeLineUpAndRefreshNeedAConnection) {
    const auto states = [this] {
        const MenuItems view = Open(L"v");
        const MenuItem* arrange = ItemOf(view, L"Arrange &Icons");
        EXPECT_NE(arrange, nullptr);
        return std::vector<bool>{arrange != nullptr && arrange->enabled, Enabled(view, IDM_VIEW_LINEUP_ICONS),
                                 Enabled(view, IDM_LV_REFRESH)};
    };
    EXPECT_EQ(states(), (std::vector<bool>{true, true, true}));
    OnASiteThatIsNotConnected();
    EXPECT_EQ(states(), (std::vector<bool>{false, false, false}));
}

TEST_F(MenuStateTest, StatisticsNeedsAConnection) {
    EXPECT_TRUE(Enabled(Open(L"s"), IDM_CMD_STAT));
    OnASiteThatIsNotConnected();
    EXPECT_FALSE(Enabled(Open(L"s"), IDM_CMD_STAT));
}

TEST_F(MenuStateTest, DetailsGreysTheLayoutThatIsShownAndInOtherViewsNone) {
    const auto states = [this](unsigned view) {
        program_->Command(view);
        EXPECT_TRUE(Settle());
        const MenuItems details = Open(L"vd");
        return std::pair(Enabled(details, IDM_DETAILS_WINDOWS), Enabled(details, IDM_DETAILS_UNIX));
    };
    EXPECT_EQ(states(IDM_DETAILS_WINDOWS), std::pair(false, true));
    EXPECT_EQ(states(IDM_DETAILS_UNIX), std::pair(true, false));
    EXPECT_EQ(states(IDM_VIEW_LIST), std::pair(true, true));
}

TEST_F(MenuStateTest, OptionsAreGreyedUntilTheirDialogExists) {
    EXPECT_FALSE(Enabled(Open(L"v"), IDM_SETUP));
}

TEST_F(MenuStateTest, AMenuOpenedWhileAnOperationRunsIsLeftAsItWas) {
    SelectEntries({L"a.txt"});
    ASSERT_TRUE(Enabled(Open(L"f"), IDM_DELETE));
    server_->Once("LIST", {Hold(), Answer()});
    program_->Command(IDM_TV_REFRESH);
    ASSERT_TRUE(server_->WaitUntilHeld());
    program_->UnselectAll();
    EXPECT_TRUE(Enabled(Open(L"f"), IDM_DELETE));
    server_->Release();
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_FALSE(Enabled(Open(L"f"), IDM_DELETE));
}

TEST_F(MenuStateTest, TheHighlightedItemIsExplainedInTheStatusBar) {
    Menus menus(*program_);
    ASSERT_FALSE(menus.OpenFromBar(L"s").empty());
    program_->PressKey(program_->Main(), VK_DOWN);
    EXPECT_TRUE(program_->WaitFor([this] { return SendMessageW(program_->StatusBar(), SB_ISSIMPLE, 0, 0) != 0; }));
    EXPECT_TRUE(menus.Close());
    EXPECT_TRUE(program_->WaitFor([this] { return SendMessageW(program_->StatusBar(), SB_ISSIMPLE, 0, 0) == 0; }));
}

}  // namespace
