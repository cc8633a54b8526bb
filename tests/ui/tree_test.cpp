// The tree pane: when a selection is acted on, what its keys and clicks do, titles, pictures, label edits of nodes.
#include "ui/ui_fixture.h"

#include "config/initial_dirs.h"
#include "config/site_store.h"
#include "config/store_key.h"
#include "platform/registry.h"
#include "resources/resource.h"

namespace {

class TreeTest : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        if (IsSkipped()) return;
        server_->AddFile("/pub/inner.txt", "x");
        server_->AddFile("/tmp/other.txt", "x");
    }
    void StartListed() {
        StartConnected();
        ASSERT_FALSE(HasFatalFailure());
        ASSERT_TRUE(WaitListed(L"pub"));
        program_->ExpandInTree(RootItem());
        program_->FocusPane(program_->Tree());
        ASSERT_TRUE(FocusOn(program_->Tree()));
        server_->ForgetCommands();
    }
    // How often the delay ended on the folder that is listed already.
    std::size_t Landings() const {
        const std::string text = LogText();
        std::size_t count = 0;
        const std::string_view landed = "Landed on last Selected folder";
        for (std::size_t at = text.find(landed); at != std::string::npos; at = text.find(landed, at + 1)) ++count;
        return count;
    }
    HTREEITEM Folder(const std::wstring& name) { return program_->FindInTree(RootItem(), name); }
    void ClickNode(HTREEITEM item, bool twice = false) {
        const POINT place = program_->TreePlace(item);
        const POINT screen = program_->ToScreen(program_->Tree(), place);
        SetCursorPos(screen.x, screen.y);  // a double click is looked up at the pointer's place
        program_->Click(program_->Tree(), place, twice);
    }
    void EditLabel(HTREEITEM item) {
        program_->SelectInTree(item);
        ASSERT_TRUE(Settle());
        ASSERT_TRUE(program_->WaitIdle());
        program_->Command(IDM_RENAME);
        ASSERT_NE(WaitLabelEdit(program_->Tree()), nullptr);
    }
};

// A timer of 750 ms may come up to 20 ms early here.
constexpr DWORD kKeyboardDelay = 750 - 20;

TEST_F(TreeTest, ASelectionByKeysIsActedOn750MillisecondsAfterTheLastOne) {
    for (int i = 0; i < 10; ++i) server_->AddFile("/d" + std::to_string(i) + "/f" + std::to_string(i), "x");
    StartListed();
    ASSERT_NE(Folder(L"d9"), nullptr);
    DWORD lastKey = 0;
    for (int i = 0; i < 10; ++i) {
        program_->PressKey(program_->Tree(), VK_DOWN);
        lastKey = GetTickCount();
    }
    DWORD listed = 0;
    ASSERT_TRUE(program_->WaitFor([&] {
        listed = GetTickCount();
        return server_->CountCommands("CWD") > 0;
    }));
    EXPECT_GE(listed - lastKey, kKeyboardDelay - 16) << "the clock steps by 16 ms";
    EXPECT_TRUE(WaitListed(L"f9"));
    EXPECT_EQ(server_->CountCommands("CWD"), 1);
    EXPECT_EQ(server_->CountCommands("LIST"), 1);
}

TEST_F(TreeTest, AClickOnADirectoryChangesAtOnce) {
    StartListed();
    const DWORD start = GetTickCount();
    ClickNode(Folder(L"pub"));
    EXPECT_TRUE(WaitListed(L"inner.txt"));
    EXPECT_LT(GetTickCount() - start, kKeyboardDelay);
    EXPECT_EQ(server_->CountCommands("CWD"), 1);
}

TEST_F(TreeTest, ComingBackToTheFolderShownBeforeTheDelayEndsListsNothing) {
    TraceToLog();
    StartListed();
    const std::size_t landings = Landings();
    program_->PressKey(program_->Tree(), VK_DOWN);
    program_->PressKey(program_->Tree(), VK_UP);
    ASSERT_TRUE(Settle());
    EXPECT_EQ(program_->TreeSelected(), RootItem());
    EXPECT_TRUE(program_->WaitFor([&] { return Landings() > landings; })) << "the delay has not ended";
    EXPECT_TRUE(server_->Commands().empty());
    EXPECT_EQ(program_->Title(), L"Zarn Test::/");
}

TEST_F(TreeTest, EnterOnTheFolderShownListsItAgain) {
    StartListed();
    server_->AddFile("/new.txt", "x");
    program_->PressKey(program_->Tree(), VK_RETURN);
    EXPECT_TRUE(WaitListed(L"new.txt"));
    EXPECT_EQ(server_->CountCommands("LIST"), 1);
}

TEST_F(TreeTest, EnterOnAnotherFolderListsItWithoutTheDelay) {
    StartListed();
    const DWORD start = GetTickCount();
    program_->PressKey(program_->Tree(), VK_DOWN);
    program_->PressKey(program_->Tree(), VK_RETURN);
    EXPECT_TRUE(WaitListed(L"inner.txt"));
    EXPECT_LT(GetTickCount() - start, kKeyboardDelay);
}

TEST_F(TreeTest, EnterOnASiteConnectsIt) {
    StartProgram();
    program_->FocusPane(program_->Tree());
    ASSERT_TRUE(FocusOn(program_->Tree()));
    program_->PressKey(program_->Tree(), VK_RETURN);
    EXPECT_TRUE(WaitTitle(L"Zarn Test::/"));
    EXPECT_TRUE(program_->WaitIdle());
}

TEST_F(TreeTest, ADoubleClickOnASiteConnectsIt) {
    StartProgram();
    ClickNode(SiteItem(), true);
    EXPECT_TRUE(WaitTitle(L"Zarn Test::/"));
    EXPECT_TRUE(program_->WaitIdle());
}

TEST_F(TreeTest, KeysDoNothingWhileAnOperationRuns) {
    StartListed();
    server_->Once("LIST", {Hold(), Answer()});
    program_->Command(IDM_TV_REFRESH);
    ASSERT_TRUE(server_->WaitUntilHeld());
    program_->PressKey(program_->Tree(), VK_RETURN);
    ASSERT_TRUE(Settle());
    server_->Release();
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(server_->CountCommands("LIST"), 1);
}

TEST_F(TreeTest, TabAndBackspaceGoToTheList) {
    StartListed();
    for (const WORD key : {VK_TAB, VK_BACK}) {
        program_->FocusPane(program_->Tree());
        ASSERT_TRUE(FocusOn(program_->Tree()));
        program_->PressKey(program_->Tree(), key);
        EXPECT_TRUE(FocusOn(program_->List()));
    }
    EXPECT_EQ(program_->TreeSelected(), RootItem()) << "Backspace does not select the parent";
    for (const WORD key : {VK_TAB, VK_BACK}) {
        program_->FocusPane(program_->List());
        ASSERT_TRUE(FocusOn(program_->List()));
        program_->PressKey(program_->List(), key);
        EXPECT_TRUE(FocusOn(program_->Tree()));
    }
}

TEST_F(TreeTest, DeleteOnASiteAsksFirst) {
    StartProgram();
    program_->FocusPane(program_->Tree());
    ASSERT_TRUE(FocusOn(program_->Tree()));
    program_->PressKey(program_->Tree(), VK_DELETE);
    EXPECT_TRUE(AnswerDialog(L"", L"Do you want to delete the site 'Test'", IDYES));
    EXPECT_TRUE(program_->WaitFor([this] { return SiteItem() == nullptr; }));
    ASSERT_TRUE(program_->Close());
    EXPECT_FALSE(platform::RegistryKeyExists(platform::RegistryRoot::CurrentUser, StoreKeyPath("Test")))
        << "gone from the store, too";
    program_.reset();
}

TEST_F(TreeTest, TheSelectedNodeIsBoldAndNoOther) {
    StartListed();
    const auto bold = [this](HTREEITEM item) { return program_->TreeState(item, TVIS_BOLD) != 0; };
    EXPECT_TRUE(bold(RootItem()));
    EXPECT_FALSE(bold(SiteItem()));
    program_->SelectInTree(Folder(L"pub"));
    ASSERT_TRUE(WaitListed(L"inner.txt"));
    EXPECT_TRUE(bold(Folder(L"pub")));
    EXPECT_FALSE(bold(RootItem()));
}

TEST_F(TreeTest, SitesAndFoldersHaveTheirPictures) {
    StartListed();
    enum { kFolder, kOpenFolder, kSite, kSelectedSite };
    HTREEITEM computer = SiteItem();
    while (HTREEITEM next = program_->TreeNext(computer, TVGN_NEXT)) computer = next;
    for (const HTREEITEM item : {SiteItem(L"Create New Site Folder"), SiteItem(), computer}) {
        EXPECT_EQ(program_->TreeImage(item, false), kSite);
        EXPECT_EQ(program_->TreeImage(item, true), kSelectedSite);
    }
    for (const HTREEITEM item : {RootItem(), Folder(L"pub")}) {
        EXPECT_EQ(program_->TreeImage(item, false), kFolder);
        EXPECT_EQ(program_->TreeImage(item, true), kOpenFolder);
    }
}

TEST_F(TreeTest, TheTopLevelIsTheAddSiteNodeTheSitesByNameAndTheComputer) {
    StartProgram();
    for (const char* name : {"zeta", "Alpha", "middle"}) StoreSite(name);
    Restart();
    std::vector<std::wstring> labels;
    for (HTREEITEM item = program_->TreeNext(nullptr, TVGN_ROOT); item != nullptr;
         item = program_->TreeNext(item, TVGN_NEXT)) {
        labels.push_back(program_->TreeText(item));
    }
    ASSERT_EQ(labels.size(), 6u);
    labels.pop_back();
    EXPECT_EQ(labels, (std::vector<std::wstring>{L"Create New Site Folder", L"Alpha", L"middle", L"Test", L"zeta"}));
}

TEST_F(TreeTest, TitlesByKindOfNode) {
    StartListed();
    program_->SelectInTree(Folder(L"pub"));
    EXPECT_TRUE(WaitTitle(L"Zarn Test::/pub"));
    ASSERT_TRUE(program_->WaitIdle());
    program_->SelectInTree(SiteItem());
    ASSERT_TRUE(Settle());
    EXPECT_TRUE(WaitTitle(L"Zarn Test::/pub")) << "a connected site shows where its session stands";
    program_->SelectInTree(SiteItem(L"Create New Site Folder"));
    EXPECT_TRUE(WaitTitle(L"Zarnish Ftp"));
    HTREEITEM computer = SiteItem();
    while (HTREEITEM next = program_->TreeNext(computer, TVGN_NEXT)) computer = next;
    program_->SelectInTree(computer);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Title().starts_with(L"Zarn : "); }));
    ASSERT_TRUE(program_->WaitIdle());
    program_->ExpandInTree(computer);
    program_->SelectInTree(program_->FindInTree(computer, L"C:\\"));
    EXPECT_TRUE(WaitTitle(L"Zarnish Ftp"));
    ASSERT_TRUE(program_->WaitIdle());
    program_->SelectInTree(SiteItem());
    ASSERT_TRUE(WaitTitle(L"Zarn Test::/pub"));
    program_->Command(IDM_DISCONNECT);
    EXPECT_TRUE(WaitTitle(L"Zarn Test"));
}

TEST_F(TreeTest, ARemoteFolderIsRenamedOnTheServer) {
    StartListed();
    EditLabel(Folder(L"pub"));
    TypeLabel(program_->Tree(), L"public");
    EXPECT_TRUE(program_->WaitFor([this] { return Folder(L"public") != nullptr; }));
    EXPECT_TRUE(server_->Exists("/public/inner.txt"));
    const auto commands = server_->Commands();
    EXPECT_NE(std::find(commands.begin(), commands.end(), "RNFR /pub"), commands.end());
    EXPECT_NE(std::find(commands.begin(), commands.end(), "RNTO /public"), commands.end());
}

TEST_F(TreeTest, ARefusedRenameKeepsTheOldLabel) {
    StartListed();
    server_->Once("RNFR", {Say("550 pub: Permission denied\r\n")});
    EditLabel(Folder(L"pub"));
    HWND edit = WaitLabelEdit(program_->Tree());
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"public"));
    program_->PressKey(edit, VK_RETURN);
    EXPECT_TRUE(AnswerDialog(L"Ftp Port Command Failure", L"Permission denied", IDOK));
    EXPECT_TRUE(program_->WaitIdle());
    EXPECT_NE(Folder(L"pub"), nullptr);
    EXPECT_EQ(Folder(L"public"), nullptr);
}

TEST_F(TreeTest, EscapeLeavesALabelAsItWas) {
    StartListed();
    EditLabel(Folder(L"pub"));
    HWND edit = WaitLabelEdit(program_->Tree());
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"public"));
    server_->ForgetCommands();
    program_->PressKey(edit, VK_ESCAPE);
    ASSERT_TRUE(program_->WaitFor([&] { return !IsWindow(edit); }));
    ASSERT_TRUE(Settle());
    EXPECT_NE(Folder(L"pub"), nullptr);
    EXPECT_TRUE(server_->Commands().empty());
}

TEST_F(TreeTest, AnUnchangedLabelSendsNothing) {
    StartListed();
    EditLabel(Folder(L"pub"));
    server_->ForgetCommands();
    TypeLabel(program_->Tree(), L"pub");
    EXPECT_TRUE(server_->Commands().empty());
    EXPECT_NE(Folder(L"pub"), nullptr);
}

TEST_F(TreeTest, RootDirectoriesAreNeverRenamed) {
    StartListed();
    EditLabel(RootItem());
    server_->ForgetCommands();
    TypeLabel(program_->Tree(), L"root");
    EXPECT_EQ(program_->TreeText(RootItem()), L"/");
    EXPECT_TRUE(server_->Commands().empty());
}

TEST_F(TreeTest, TheAddSiteNodeAndTheComputerAreNotEdited) {
    StartProgram();
    HTREEITEM computer = SiteItem();
    while (HTREEITEM next = program_->TreeNext(computer, TVGN_NEXT)) computer = next;
    program_->FocusPane(program_->Tree());
    for (const HTREEITEM item : {SiteItem(L"Create New Site Folder"), computer}) {
        program_->SelectInTree(item);
        ASSERT_TRUE(Settle());
        ASSERT_TRUE(program_->WaitIdle());
        program_->Command(IDM_RENAME);
        ASSERT_TRUE(Settle());
        EXPECT_EQ(program_->LabelEdit(program_->Tree()), nullptr);
    }
}

TEST_F(TreeTest, ASiteRenamedToAnotherSitesNameIsToldAndKeepsItsLabel) {
    StartProgram();
    StoreSite("Other");
    Restart();
    program_->FocusPane(program_->Tree());
    EditLabel(SiteItem());
    HWND edit = WaitLabelEdit(program_->Tree());
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"Other"));
    program_->PressKey(edit, VK_RETURN);
    EXPECT_TRUE(AnswerDialog(L"", L"A Site Folder named Other already exists.", IDOK));
    EXPECT_TRUE(program_->WaitIdle());
    EXPECT_NE(SiteItem(), nullptr);
}

TEST_F(TreeTest, ARenamedSiteKeepsItsNewNameInTheStore) {
    StartProgram();
    program_->FocusPane(program_->Tree());
    EditLabel(SiteItem());
    TypeLabel(program_->Tree(), L"Renamed");
    ASSERT_TRUE(program_->Close());
    program_ = std::make_unique<Program>();
    ASSERT_TRUE(program_->Start());
    EXPECT_TRUE(program_->WaitFor([this] { return SiteItem(L"Renamed") != nullptr; }));
    EXPECT_EQ(SiteItem(), nullptr);
    EXPECT_TRUE(WaitTitle(L"Zarn Renamed")) << "it is the last session, under its new name";
}

TEST_F(TreeTest, AFailedChangeOfDirectoryByKeysSelectsThePreviousNodeAgain) {
    StartListed();
    server_->Once("CWD", {Say("550 pub: Permission denied\r\n")});
    program_->PressKey(program_->Tree(), VK_DOWN);
    EXPECT_TRUE(AnswerDialog(L"Ftp Port Command Failure", L"Permission denied", IDOK));
    EXPECT_TRUE(program_->WaitFor([this] { return program_->TreeSelected() == RootItem(); }));
    EXPECT_TRUE(program_->WaitIdle());
    EXPECT_EQ(server_->CountCommands("CWD"), 1) << "the node that is selected again is not listed again";
    EXPECT_EQ(program_->FindInList(L"inner.txt"), -1);
}

TEST_F(TreeTest, AnInitialDirectoryStandsInTheTreeLevelByLevel) {
    server_->AddFile("/home/user/deep/file.txt", "x");
    FillStore();
    SitePtr site(Zarn_GetSiteInfo("Test"));
    ASSERT_NE(site, nullptr);
    site->pszDir = OwnedText::Copy("/home/user/deep");
    SaveSiteInfo(site.get());
    program_ = std::make_unique<Program>();
    ASSERT_TRUE(program_->Start());
    ASSERT_TRUE(program_->WaitFor([this] { return SiteItem() != nullptr; }));
    Connect();
    EXPECT_TRUE(WaitListed(L"file.txt"));
    EXPECT_EQ(program_->Title(), L"Zarn Test::/home/user/deep");
    std::vector<std::wstring> path;
    for (HTREEITEM item = program_->TreeSelected(); item != nullptr; item = program_->TreeNext(item, TVGN_PARENT)) {
        path.push_back(program_->TreeText(item));
    }
    EXPECT_EQ(path, (std::vector<std::wstring>{L"deep", L"user", L"home", L"/", L"Test"}));
    LoadInitDirectories(site.get());
    EXPECT_GE(FindInitDirInList(site->InitDirs, "/home/user/deep"), 0) << "the directory is remembered";
}

TEST_F(TreeTest, RememberedInitialDirectoriesStandBelowTheSiteOnceItIsConnected) {
    server_->AddFile("/pub/deep/file.txt", "x");
    FillStore();
    SitePtr site(Zarn_GetSiteInfo("Test"));
    ASSERT_NE(site, nullptr);
    for (const char* directory : {"/pub/deep", "/tmp"}) {
        site->pszDir = OwnedText::Copy(directory);
        SaveInitDirectories(site.get());
    }
    site->pszDir = OwnedText();
    SaveSiteInfo(site.get());
    program_ = std::make_unique<Program>();
    ASSERT_TRUE(program_->Start());
    ASSERT_TRUE(program_->WaitFor([this] { return SiteItem() != nullptr; }));
    Connect();
    ASSERT_TRUE(WaitListed(L"pub"));
    program_->ExpandInTree(RootItem());
    HTREEITEM pub = Folder(L"pub");
    ASSERT_NE(pub, nullptr);
    program_->ExpandInTree(pub);
    HTREEITEM deep = program_->FindInTree(pub, L"deep");
    ASSERT_NE(deep, nullptr);
    program_->SelectInTree(deep);
    EXPECT_TRUE(WaitListed(L"file.txt"));
}

}  // namespace
