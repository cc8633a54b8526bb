// The window before and after a connection: panes, titles, toolbar, status bar, commands.
#include "resources/resource.h"
#include "ui/ui_fixture.h"

namespace {

class WindowTest : public UiTest {};

TEST_F(WindowTest, ShowsTreeListConsoleToolbarAndStatusBarWithTheLastSiteSelected) {
    StartProgram();
    EXPECT_EQ(program_->Title(), L"Zarn Test");
    EXPECT_NE(program_->FindInTree(nullptr, L"Create New Site Folder"), nullptr);
    EXPECT_EQ(program_->TreeText(program_->TreeSelected()), L"Test");
    EXPECT_EQ(SendMessageW(program_->Toolbar(), TB_BUTTONCOUNT, 0, 0), 16);
    EXPECT_EQ(SendMessageW(program_->StatusBar(), SB_GETPARTS, 0, 0), 7);
    EXPECT_NE(program_->Console(), nullptr);
    EXPECT_EQ(program_->ListCount(), 0);
    Picture("window-start");
}

TEST_F(WindowTest, AFreshStoreGetsTheFirstRunValues) {
    program_ = std::make_unique<Program>();
    ASSERT_TRUE(program_->Start());
    EXPECT_EQ(program_->Console(), nullptr) << "verbose is off on the first run";
    EXPECT_EQ(program_->Title(), L"Zarnish Ftp");
}

TEST_F(WindowTest, TitleOfASiteThatIsNotConnectedShowsShortNameAndSiteNameOnly) {
    StartProgram();
    EXPECT_EQ(program_->Title(), L"Zarn Test");
    program_->SelectInTree(program_->FindInTree(nullptr, L"Create New Site Folder"));
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Title() == L"Zarnish Ftp"; }));
}

TEST_F(WindowTest, ConnectListsTheRootAndTitlesItAndDisconnectTakesAllBack) {
    server_->AddFile("/readme.txt", "hello");
    server_->AddFolder("/pub");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"readme.txt"));
    EXPECT_EQ(program_->Title(), L"Zarn Test::/");
    EXPECT_FALSE(program_->ToolbarEnabled(IDM_CONNECT));
    EXPECT_TRUE(program_->ToolbarEnabled(IDM_DISCONNECT));
    EXPECT_TRUE(ConsoleHas(L"220"));
    Picture("window-connected");
    program_->Command(IDM_DISCONNECT);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ListCount() == 0; }));
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Title() == L"Zarn Test"; }));
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ToolbarEnabled(IDM_CONNECT); }));
    EXPECT_TRUE(server_->WaitForConnections(0));
}

TEST_F(WindowTest, PasswordIsAskedForWhenTheSiteHasNone) {
    password_ = "";
    server_->SetPassword("open sesame");
    StartProgram();
    Connect();
    HWND dialog = nullptr;
    ASSERT_TRUE(program_->WaitFor([&] { return (dialog = program_->Dialog()) != nullptr; }));
    EXPECT_NE(DialogText(dialog).find(L"Need a password:"), std::wstring::npos);
    HWND field = GetDlgItem(dialog, 1202);
    EXPECT_NE(GetWindowLongW(field, GWL_STYLE) & ES_PASSWORD, 0);
    SendMessageW(field, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"open sesame"));
    Program::PressButton(dialog, IDOK);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Title() == L"Zarn Test::/"; }));
    EXPECT_TRUE(server_->WaitForCommand("PASS open sesame") || server_->CountCommands("PASS") == 1);
}

TEST_F(WindowTest, TheFourViewsAndTwoLayoutsShowTheSameEntries) {
    server_->AddFile("/a.txt", std::string(5000, 'a'));
    server_->AddFile("/b.txt", "b");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a.txt"));
    HWND header = reinterpret_cast<HWND>(SendMessageW(program_->List(), LVM_GETHEADER, 0, 0));
    EXPECT_EQ(SendMessageW(header, HDM_GETITEMCOUNT, 0, 0), 4);
    EXPECT_EQ(program_->ListText(program_->FindInList(L"a.txt"), 2), L"4KB");
    program_->Command(IDM_DETAILS_UNIX);
    EXPECT_TRUE(program_->WaitFor([&] { return SendMessageW(header, HDM_GETITEMCOUNT, 0, 0) == 8; }));
    EXPECT_EQ(program_->ListText(program_->FindInList(L"a.txt"), 6), L"4KB");
    Picture("window-unix-details");
    for (unsigned view : {IDM_VIEW_LARGE_ICONS, IDM_VIEW_SMALL_ICONS, IDM_VIEW_LIST, IDM_DETAILS_WINDOWS}) {
        program_->Command(view);
        EXPECT_TRUE(program_->WaitFor([&] { return !program_->ToolbarEnabled(view); })) << view;
        EXPECT_GE(program_->FindInList(L"b.txt"), 0) << view;
        Picture("window-view-" + std::to_string(view));
    }
}

TEST_F(WindowTest, SortCommandsReorderTheList) {
    server_->AddFile("/big.txt", std::string(9000, 'x'));
    server_->AddFile("/Alpha.txt", "1");
    server_->AddFile("/middle.txt", std::string(3000, 'x'));
    StartConnected();
    ASSERT_TRUE(WaitListed(L"big.txt"));
    program_->Command(IDM_SORTBY_NAME);
    EXPECT_TRUE(program_->WaitFor([this] {
        return program_->ListNames() == std::vector<std::wstring>{L"Alpha.txt", L"big.txt", L"middle.txt"};
    }));
    program_->Command(IDM_SORTBY_SIZE);
    EXPECT_TRUE(program_->WaitFor([this] {
        return program_->ListNames() == std::vector<std::wstring>{L"big.txt", L"middle.txt", L"Alpha.txt"};
    })) << "quirk: larger first with the flag clear";
}

TEST_F(WindowTest, SelectAllSelectsEveryEntryAndTheStatusBarSumsThemUp) {
    server_->AddFile("/a", "12345");
    server_->AddFile("/b", "678");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a"));
    program_->Command(IDM_SELECTALL);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ListSelected() == 2; }));
    EXPECT_TRUE(program_->WaitFor([this] { return program_->StatusPart(6) == L"Selected: 2, 8 bytes"; }))
        << program_->StatusPart(6).size();
}

TEST_F(WindowTest, ConsoleIsToggledAndStartsEmptyAgain) {
    StartConnected();
    ASSERT_TRUE(ConsoleHas(L"220"));
    program_->Command(IDM_SHOWCONSOLE);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Console() == nullptr; }));
    program_->Command(IDM_SHOWCONSOLE);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Console() != nullptr; }));
    EXPECT_EQ(program_->ConsoleText(), L"");
}

TEST_F(WindowTest, PanesKeepTheirPlacesWhenTheWindowIsMadeSmallAndLarge) {
    StartProgram();
    for (const SIZE size : {SIZE{500, 400}, SIZE{1200, 800}}) {
        SetWindowPos(program_->Main(), nullptr, 0, 0, size.cx, size.cy, SWP_NOZORDER | SWP_NOMOVE);
        ASSERT_TRUE(program_->WaitIdle());
        RECT tree, list, console, client;
        GetWindowRect(program_->Tree(), &tree);
        GetWindowRect(program_->List(), &list);
        GetWindowRect(program_->Console(), &console);
        GetClientRect(program_->Main(), &client);
        EXPECT_LT(tree.right, list.left);
        EXPECT_EQ(tree.bottom, list.bottom);
        EXPECT_LE(list.bottom, console.top);
        EXPECT_GT(list.right - list.left, 50);
        EXPECT_GE(tree.bottom - tree.top, 50);
        Picture("window-size-" + std::to_string(size.cx));
    }
}

TEST_F(WindowTest, PlacementAndSplitAreRememberedFromRunToRun) {
    StartProgram();
    SetWindowPos(program_->Main(), nullptr, 60, 50, 700, 500, SWP_NOZORDER);
    ASSERT_TRUE(program_->WaitIdle());
    ASSERT_TRUE(program_->Close());
    program_ = std::make_unique<Program>();
    ASSERT_TRUE(program_->Start());
    RECT place;
    GetWindowRect(program_->Main(), &place);
    EXPECT_EQ(place.left, 60);
    EXPECT_EQ(place.top, 50);
    EXPECT_EQ(place.right - place.left, 700);
    EXPECT_EQ(place.bottom - place.top, 500);
}

}  // namespace
