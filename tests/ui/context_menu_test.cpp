// Right-click menus: which items they hold for each kind of node and entry, and what a chosen item does.
#include "ui/ui_fixture.h"

#include "resources/resource.h"
#include "ui/driver/menus.h"

namespace {

using Texts = std::vector<std::wstring>;

class ContextMenuTest : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        if (IsSkipped()) return;
        server_->AddFile("/a.txt", "abc");
        server_->AddFile("/pub/inner.txt", "x");
        server_->AddFolder("/tmp");
    }
    void StartWithTwoSites() {
        StartProgram();
        StoreSite("Other");
        Restart();
    }
    void StartListed() {
        StartConnected();
        ASSERT_FALSE(HasFatalFailure());
        ASSERT_TRUE(WaitListed(L"a.txt"));
        menus_ = std::make_unique<Menus>(*program_);
        ASSERT_TRUE(menus_->Ready());
    }
    MenuItems OnNode(HTREEITEM item) {
        if (menus_ == nullptr) menus_ = std::make_unique<Menus>(*program_);
        return menus_->OpenContext(program_->Tree(), program_->ToScreen(program_->Tree(), program_->TreePlace(item)));
    }
    MenuItems OnEntry(const std::wstring& name) {
        const int item = program_->FindInList(name);
        return menus_->OpenContext(program_->List(), program_->ToScreen(program_->List(), program_->ListPlace(item)));
    }
    static Texts TextsOf(const MenuItems& items) {
        Texts texts;
        for (const MenuItem& item : items) texts.push_back(item.separator ? L"-" : item.text);
        return texts;
    }
    static Texts EnabledOf(const MenuItems& items) {
        Texts texts;
        for (const MenuItem& item : items) {
            if (!item.separator && item.enabled) texts.push_back(item.text);
        }
        return texts;
    }
    void Choose(const MenuItems& items, unsigned id) {
        ASSERT_NE(ItemOf(items, id), nullptr);
        ASSERT_TRUE(menus_->Choose(items, id));
    }
    HTREEITEM Highlighted() { return program_->TreeNext(nullptr, TVGN_DROPHILITE); }

    std::unique_ptr<Menus> menus_;
};

TEST_F(ContextMenuTest, TheAddSiteNodeOffersFourItems) {
    StartProgram();
    const MenuItems items = OnNode(SiteItem(L"Create New Site Folder"));
    EXPECT_EQ(TextsOf(items), (Texts{L"&Add New Site...", L"-", L"&Delete", L"&Rename", L"-", L"&Properties"}));
    EXPECT_TRUE(EnabledOf(items).empty()) << "its dialog does not exist yet, the others never apply";
    EXPECT_TRUE(menus_->Close());
}

TEST_F(ContextMenuTest, ASiteThatIsNotConnectedOffersNoDisconnect) {
    StartProgram();
    const MenuItems items = OnNode(SiteItem());
    EXPECT_EQ(TextsOf(items), (Texts{L"&Connect", L"-", L"&Delete", L"&Rename", L"-", L"&Properties"}));
    EXPECT_EQ(EnabledOf(items), (Texts{L"&Connect", L"&Delete", L"&Rename"}));
    EXPECT_TRUE(menus_->Close());
}

TEST_F(ContextMenuTest, AConnectedSiteOffersNeitherConnectNorDelete) {
    StartListed();
    const MenuItems items = OnNode(SiteItem());
    EXPECT_EQ(TextsOf(items), (Texts{L"&Disconnect", L"-", L"&Rename", L"-", L"&Properties"}));
    Choose(items, IDM_DISCONNECT);
    EXPECT_TRUE(WaitTitle(L"Zarn Test"));
    EXPECT_TRUE(server_->WaitForConnections(0));
}

TEST_F(ContextMenuTest, ARemoteDirectoryOffersTransferRefreshAndProperties) {
    StartListed();
    const Texts expected{L"&Transfer...", L"-", L"&Refresh", L"-", L"&Properties"};
    EXPECT_EQ(TextsOf(OnNode(RootItem())), expected);
    EXPECT_TRUE(menus_->Close());
    program_->ExpandInTree(RootItem());
    EXPECT_EQ(TextsOf(OnNode(program_->FindInTree(RootItem(), L"pub"))), expected);
    EXPECT_TRUE(menus_->Close());
}

TEST_F(ContextMenuTest, NodesOfTheLocalComputerHaveNone) {
    StartProgram();
    HTREEITEM computer = program_->TreeNext(nullptr, TVGN_ROOT);
    while (HTREEITEM next = program_->TreeNext(computer, TVGN_NEXT)) computer = next;
    EXPECT_TRUE(OnNode(computer).empty());
    program_->ExpandInTree(computer);
    EXPECT_TRUE(OnNode(program_->TreeNext(computer, TVGN_CHILD)).empty());
}

TEST_F(ContextMenuTest, TheHighlightMovesWhileTheMenuIsOpenAndTheSelectionDoesNot) {
    StartListed();
    program_->ExpandInTree(RootItem());
    const HTREEITEM pub = program_->FindInTree(RootItem(), L"pub");
    server_->ForgetCommands();
    ASSERT_FALSE(OnNode(pub).empty());
    EXPECT_EQ(Highlighted(), pub);
    EXPECT_EQ(program_->TreeSelected(), RootItem());
    EXPECT_TRUE(menus_->Close());
    EXPECT_TRUE(program_->WaitFor([this] { return Highlighted() == nullptr; }));
    EXPECT_EQ(program_->TreeSelected(), RootItem());
    EXPECT_TRUE(server_->Commands().empty());
}

TEST_F(ContextMenuTest, ConnectSelectsTheClickedSiteFirst) {
    StartWithTwoSites();
    ASSERT_EQ(program_->TreeText(program_->TreeSelected()), L"Test");
    Choose(OnNode(SiteItem(L"Other")), IDM_CONNECT);
    EXPECT_TRUE(WaitTitle(L"Zarn Other::/"));
    EXPECT_NE(program_->TreeNext(SiteItem(L"Other"), TVGN_CHILD), nullptr);
    EXPECT_EQ(RootItem(), nullptr);
    EXPECT_TRUE(program_->WaitIdle());
}

TEST_F(ContextMenuTest, DeleteOfASiteAsksAndGivesTheFocusToTheTree) {
    StartWithTwoSites();
    program_->FocusPane(program_->List());
    Choose(OnNode(SiteItem(L"Other")), IDM_DELETE_SITE);
    EXPECT_TRUE(AnswerDialog(L"", L"Do you want to delete the site 'Other'", IDYES));
    EXPECT_TRUE(program_->WaitFor([this] { return SiteItem(L"Other") == nullptr; }));
    EXPECT_NE(SiteItem(), nullptr);
    EXPECT_TRUE(FocusOn(program_->Tree()));
}

TEST_F(ContextMenuTest, RenameEditsTheClickedNodesLabel) {
    StartWithTwoSites();
    Choose(OnNode(SiteItem(L"Other")), IDM_RENAME_SITE);
    HWND edit = WaitLabelEdit(program_->Tree());
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(Program::TextOf(edit), L"Other");
    TypeLabel(program_->Tree(), L"Third");
    EXPECT_TRUE(program_->WaitFor([this] { return SiteItem(L"Third") != nullptr; }));
    EXPECT_NE(SiteItem(), nullptr);
}

TEST_F(ContextMenuTest, RefreshListsTheSelectedFolderAndNoOther) {
    StartListed();
    program_->ExpandInTree(RootItem());
    server_->ForgetCommands();
    Choose(OnNode(program_->FindInTree(RootItem(), L"pub")), IDM_TV_REFRESH);
    ASSERT_TRUE(Settle());
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_TRUE(server_->Commands().empty());
    EXPECT_EQ(program_->TreeSelected(), RootItem());
    server_->AddFile("/new.txt", "x");
    Choose(OnNode(RootItem()), IDM_TV_REFRESH);
    EXPECT_TRUE(WaitListed(L"new.txt"));
    EXPECT_EQ(server_->CountCommands("LIST"), 1);
}

TEST_F(ContextMenuTest, TransferOfANodeReceivesItsFolder) {
    StartListed();
    ASSERT_NE(EnterFolder(L"pub"), nullptr);
    ASSERT_TRUE(WaitListed(L"inner.txt"));
    Choose(OnNode(program_->TreeSelected()), IDM_RECEIVE);
    EXPECT_TRUE(program_->WaitFor([this] { return folder_->Exists("pub/inner.txt"); }));
    EXPECT_TRUE(program_->WaitIdle());
}

TEST_F(ContextMenuTest, TheListsMenuIsBuiltForItsSelection) {
    server_->SetListing("/",
                        "-rw-r--r-- 1 u g 1000 Jan 01 1999 a.txt\r\n"
                        "lrwxrwxrwx 1 u g 5 Jan 01 1999 link -> a.txt\r\n"
                        "drwxr-xr-x 2 u g 512 Jan 01 1999 pub\r\n");
    StartListed();
    SelectEntries({});
    MenuItems items = menus_->OpenByKey(program_->List());
    EXPECT_EQ(TextsOf(items), (Texts{L"&Receive...", L"&Quick View...", L"&Print", L"-", L"&New Folder", L"&Paste",
                                     L"-", L"&Delete", L"&Rename", L"-", L"&Properties"}));
    for (const unsigned id : {IDM_LV_RECEIVE, IDM_LV_DELETE, IDM_LV_RENAME, IDM_PROPERTIES, IDM_QUICKVIEW}) {
        EXPECT_FALSE(ItemOf(items, id)->enabled) << id;
    }
    EXPECT_TRUE(ItemOf(items, IDM_LV_NEWFOLDER)->enabled);
    EXPECT_TRUE(menus_->Close());

    const auto states = [&](const Texts& names) {
        SelectEntries(names);
        items = OnEntry(names.front());
        EXPECT_TRUE(menus_->Close());
        std::vector<bool> enabled;
        for (const unsigned id : {IDM_LV_RECEIVE, IDM_LV_DELETE, IDM_LV_RENAME}) {
            enabled.push_back(ItemOf(items, id) != nullptr && ItemOf(items, id)->enabled);
        }
        enabled.push_back(ItemOf(items, IDM_LV_RESOLVE) != nullptr);
        return enabled;
    };
    EXPECT_EQ(states({L"a.txt"}), (std::vector<bool>{true, true, true, false}));
    EXPECT_EQ(states({L"pub"}), (std::vector<bool>{true, true, true, false}));
    EXPECT_EQ(states({L"link -> a.txt"}), (std::vector<bool>{true, true, true, true}));
    EXPECT_EQ(states({L"a.txt", L"pub"}), (std::vector<bool>{true, true, false, false}));
}

TEST_F(ContextMenuTest, ReceiveOfTheListReceives) {
    StartListed();
    SelectEntries({L"a.txt"});
    Choose(OnEntry(L"a.txt"), IDM_LV_RECEIVE);
    EXPECT_TRUE(program_->WaitFor([this] { return folder_->Exists("a.txt"); }));
    EXPECT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalBytes("a.txt"), "abc");
}

TEST_F(ContextMenuTest, DeleteOfTheListDeletes) {
    StartListed();
    SelectEntries({L"a.txt"});
    Choose(OnEntry(L"a.txt"), IDM_LV_DELETE);
    EXPECT_TRUE(WaitListNames({L"pub", L"tmp"}));
    EXPECT_FALSE(server_->Exists("/a.txt"));
}

TEST_F(ContextMenuTest, RenameOfTheListEditsTheFirstSelectedItem) {
    StartListed();
    SelectEntries({L"pub"});
    Choose(OnEntry(L"pub"), IDM_LV_RENAME);
    TypeLabel(program_->List(), L"public");
    EXPECT_TRUE(program_->WaitFor([this] { return program_->FindInList(L"public") >= 0; }));
    EXPECT_TRUE(server_->Exists("/public/inner.txt"));
    program_->ExpandInTree(RootItem());
    EXPECT_NE(program_->FindInTree(RootItem(), L"public"), nullptr) << "the tree's node takes the name, too";
}

TEST_F(ContextMenuTest, NewFolderOfTheListNamesOne) {
    StartListed();
    SelectEntries({});
    Choose(menus_->OpenByKey(program_->List()), IDM_LV_NEWFOLDER);
    TypeLabel(program_->List(), L"fresh");
    EXPECT_TRUE(program_->WaitFor([this] { return server_->Exists("/fresh"); }));
}

TEST_F(ContextMenuTest, TheMenuKeyInTheTreeOpensTheSelectedNodesMenu) {
    StartListed();
    program_->FocusPane(program_->Tree());
    ASSERT_TRUE(FocusOn(program_->Tree()));
    EXPECT_EQ(TextsOf(menus_->OpenByKey(program_->Tree())).front(), L"&Transfer...");
    EXPECT_TRUE(menus_->Close());
}

TEST_F(ContextMenuTest, NoMenuOpensWhileAnOperationRuns) {
    StartListed();
    server_->Once("LIST", {Hold(), Answer()});
    program_->Command(IDM_TV_REFRESH);
    ASSERT_TRUE(server_->WaitUntilHeld());
    EXPECT_TRUE(OnNode(SiteItem()).empty());
    EXPECT_TRUE(menus_->OpenContext(program_->List(), program_->ToScreen(program_->List(), {100, 100})).empty());
    server_->Release();
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_FALSE(OnNode(SiteItem()).empty());
    EXPECT_TRUE(menus_->Close());
}

TEST_F(ContextMenuTest, AnItemChosenWhenAnOperationHasBegunIsIgnored) {
    StartListed();
    SelectEntries({L"a.txt"});
    const MenuItems items = OnEntry(L"a.txt");
    server_->Once("LIST", {Hold(), Answer()});
    program_->Command(IDM_TV_REFRESH);
    ASSERT_TRUE(server_->WaitUntilHeld());
    Choose(items, IDM_LV_DELETE);
    server_->Release();
    ASSERT_TRUE(Settle());
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(server_->CountCommands("DELE"), 0);
    EXPECT_TRUE(server_->Exists("/a.txt"));
}

}  // namespace
