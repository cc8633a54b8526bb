// What one run stores for the next: column widths, place, view, split, last session. Also closing during a transfer,
// and files on the command line.
#include "ui/ui_fixture.h"

#include "resources/resource.h"

namespace {

class RestartTest : public UiTest {
  protected:
    RECT PlaceOf(HWND window) {
        RECT place{};
        GetWindowRect(window, &place);
        return place;
    }
};

TEST_F(RestartTest, ColumnWidthsOfBothLayoutsAreKeptForTheLayoutThatIsShown) {
    StartProgram();
    SendMessageW(program_->List(), LVM_SETCOLUMNWIDTH, 0, MAKELPARAM(233, 0));
    SendMessageW(program_->List(), LVM_SETCOLUMNWIDTH, 3, MAKELPARAM(177, 0));
    Restart();
    EXPECT_EQ(program_->ColumnWidth(0), 233);
    EXPECT_EQ(program_->ColumnWidth(3), 177);
    program_->Command(IDM_DETAILS_UNIX);
    ASSERT_TRUE(Settle());
    SendMessageW(program_->List(), LVM_SETCOLUMNWIDTH, 7, MAKELPARAM(144, 0));
    Restart();
    EXPECT_EQ(SendMessageW(program_->Header(), HDM_GETITEMCOUNT, 0, 0), 8) << "the layout is kept, too";
    EXPECT_EQ(program_->ColumnWidth(7), 144);
}

TEST_F(RestartTest, AWidthThatTheUserChoseStaysWhenAFolderIsListed) {
    server_->AddFile("/" + std::string(60, 'w'), "x");
    StartProgram();
    SendMessageW(program_->List(), LVM_SETCOLUMNWIDTH, 0, MAKELPARAM(99, 0));
    Restart();
    Connect();
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ListCount() == 1; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(program_->ColumnWidth(0), 99);
}

TEST_F(RestartTest, PlaceSizeAndSplitAreKept) {
    StartProgram();
    SetWindowPos(program_->Main(), nullptr, 70, 60, 800, 520, SWP_NOZORDER);
    ASSERT_TRUE(Settle());
    // The bar between the panes is dragged 60 pixels to the right.
    const RECT tree = PlaceOf(program_->Tree());
    POINT bar{tree.right + 1, (tree.top + tree.bottom) / 2};
    SetCursorPos(bar.x, bar.y);
    POINT client = bar;
    ScreenToClient(program_->Main(), &client);
    PostMessageW(program_->Main(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(client.x, client.y));
    SetCursorPos(bar.x + 60, bar.y);
    PostMessageW(program_->Main(), WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(client.x + 60, client.y));
    PostMessageW(program_->Main(), WM_LBUTTONUP, 0, MAKELPARAM(client.x + 60, client.y));
    ASSERT_TRUE(program_->WaitFor([&] { return PlaceOf(program_->Tree()).right > tree.right + 50; }));
    const RECT place = PlaceOf(program_->Main());
    const RECT split = PlaceOf(program_->Tree());
    Restart();
    EXPECT_EQ(PlaceOf(program_->Main()).left, place.left);
    EXPECT_EQ(PlaceOf(program_->Main()).top, place.top);
    EXPECT_EQ(PlaceOf(program_->Main()).right, place.right);
    EXPECT_EQ(PlaceOf(program_->Main()).bottom, place.bottom);
    EXPECT_EQ(PlaceOf(program_->Tree()).right, split.right);
}

TEST_F(RestartTest, ArrowKeysMoveTheSplitByTwoPixelsAndEscapeTakesItBack) {
    StartProgram();
    const RECT tree = PlaceOf(program_->Tree());
    const POINT bar{tree.right + 1, (tree.top + tree.bottom) / 2};
    POINT client = bar;
    ScreenToClient(program_->Main(), &client);
    const auto drag = [&](WORD endKey) {
        SetCursorPos(bar.x, bar.y);
        PostMessageW(program_->Main(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(client.x, client.y));
        ASSERT_TRUE(program_->WaitFor([this] {
            GUITHREADINFO info{};
            info.cbSize = sizeof(info);
            GetGUIThreadInfo(GetWindowThreadProcessId(program_->Main(), nullptr), &info);
            return info.hwndCapture == program_->Main();
        }));
        for (int i = 0; i < 5; ++i) {
            POINT before, after;
            GetCursorPos(&before);
            PostMessageW(program_->Main(), WM_KEYDOWN, VK_RIGHT, 1);
            ASSERT_TRUE(program_->WaitFor([&] {
                GetCursorPos(&after);
                return after.x == before.x + 2;
            })) << "the pointer goes along";
        }
        PostMessageW(program_->Main(), WM_KEYDOWN, endKey, 1);
        ASSERT_TRUE(Settle());
    };
    drag(VK_ESCAPE);
    EXPECT_EQ(PlaceOf(program_->Tree()).right, tree.right);
    drag(VK_RETURN);
    EXPECT_TRUE(program_->WaitFor([&] { return PlaceOf(program_->Tree()).right >= tree.right + 10; }));
}

TEST_F(RestartTest, AMaximisedWindowComesBackMaximised) {
    StartProgram();
    ShowWindow(program_->Main(), SW_MAXIMIZE);
    ASSERT_TRUE(program_->WaitFor([this] { return IsZoomed(program_->Main()) != 0; }));
    ASSERT_TRUE(Settle());
    Restart();
    EXPECT_TRUE(program_->WaitFor([this] { return IsZoomed(program_->Main()) != 0; }));
}

TEST_F(RestartTest, TheConsoleComesBackAsItWasLeft) {
    StartProgram();
    ASSERT_NE(program_->Console(), nullptr);
    program_->Command(IDM_SHOWCONSOLE);
    ASSERT_TRUE(program_->WaitFor([this] { return program_->Console() == nullptr; }));
    Restart();
    EXPECT_EQ(program_->Console(), nullptr);
}

TEST_F(RestartTest, TheSiteThatWasConnectedLastIsSelectedAtTheNextStart) {
    StartProgram();
    StoreSite("Other");
    Restart();
    EXPECT_EQ(program_->TreeText(program_->TreeSelected()), L"Test");
    program_->SelectInTree(SiteItem(L"Other"));
    ASSERT_TRUE(Settle());
    Connect();
    ASSERT_TRUE(WaitTitle(L"Zarn Other::/"));
    ASSERT_TRUE(program_->WaitIdle());
    Restart();
    EXPECT_TRUE(program_->WaitFor([this] { return program_->TreeText(program_->TreeSelected()) == L"Other"; }));
    EXPECT_TRUE(WaitTitle(L"Zarn Other"));
}

TEST_F(RestartTest, AutoStartConnectsTheLastSite) {
    settings_.AUTOSTART = 1;
    StartProgram();
    EXPECT_TRUE(WaitTitle(L"Zarn Test::/"));
    EXPECT_TRUE(program_->WaitIdle());
}

TEST_F(RestartTest, NothingIsSavedWhenSaveOnExitIsOff) {
    settings_.SAVEONEXIT = 0;
    StartProgram();
    program_->ClickStatusPart(2);
    ASSERT_TRUE(program_->WaitFor([this] { return program_->StatusPart(2) == L"Bell: on"; }));
    Restart();
    EXPECT_EQ(program_->StatusPart(2), L"Bell: off");
}

TEST_F(RestartTest, AWindowStoredOffTheScreenComesBackOntoIt) {
    settings_.xPos = 5000;
    settings_.yPos = 5000;
    settings_.nWidth = 700;
    settings_.nHeight = 500;
    StartProgram();
    const RECT place = PlaceOf(program_->Main());
    EXPECT_NE(MonitorFromRect(&place, MONITOR_DEFAULTTONULL), nullptr);
}

TEST_F(RestartTest, AFirstWindowFitsTheScreen) {
    StartProgram();
    RECT work{};
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
    const RECT place = PlaceOf(program_->Main());
    EXPECT_LE(place.right - place.left, work.right - work.left);
    EXPECT_LE(place.bottom - place.top, work.bottom - work.top);
}

TEST_F(RestartTest, ACloseWhileATransferRunsKillsTheThreadAndEnds) {
    TraceToLog();
    server_->AddFile("/slow.bin", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"slow.bin"));
    server_->Once("RETR", {Say("150 coming\r\n"), OpenData(), DataBytes("half"), Stall()});
    SelectEntries({L"slow.bin"});
    ReceiveSelected();
    ASSERT_TRUE(program_->WaitFor([this] { return server_->CountCommands("RETR") == 1; }));
    ASSERT_TRUE(program_->Close());
    const std::string log = LogText();
    const std::size_t killed = log.find("Killing active thread ...");
    const std::size_t destroyed = log.find("After Message Loop. Doing Cleanup");
    ASSERT_NE(killed, std::string::npos);
    ASSERT_NE(destroyed, std::string::npos);
    EXPECT_LT(killed, destroyed);
    EXPECT_EQ(LocalFileCount(), 0u);
}

TEST_F(RestartTest, ACloseWhileAFolderIsListedEnds) {
    server_->AddFile("/pub/inner.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"pub"));
    server_->Once("LIST", {Say("150 coming\r\n"), OpenData(), DataBytes("-rw-r--r-- 1 u g"), Stall()});
    program_->Command(IDM_TV_REFRESH);
    ASSERT_TRUE(program_->WaitFor([this] { return server_->CountCommands("LIST") == 2; }));
    EXPECT_TRUE(program_->Close());
}

TEST_F(RestartTest, ACloseWhileConnectingEnds) {
    server_->Once(kWelcome, {Stall()});
    StartProgram();
    Connect();
    ASSERT_TRUE(program_->WaitFor([this] { return server_->Connections() == 1; }));
    EXPECT_TRUE(program_->Close());
}

TEST_F(RestartTest, ExistingFilesOnTheCommandLineKeepTheWindowHiddenAndPostTheLogin) {
    TraceToLog();
    folder_->Write("one.txt", "1");
    folder_->Write("two.txt", "2");
    FillStore();
    program_ = std::make_unique<Program>();
    ASSERT_TRUE(program_->Start(L"-d one.txt two.txt", L"", true));
    ASSERT_TRUE(Settle());
    EXPECT_TRUE(Traced("(WM_COMMAND) IDM_LOGIN_SEND Received"));
    EXPECT_FALSE(IsWindowVisible(program_->Main()));
    EXPECT_TRUE(program_->Close());
}

TEST_F(RestartTest, ANameThatDoesNotExistOnTheCommandLineShowsTheWindow) {
    folder_->Write("one.txt", "1");
    FillStore();
    program_ = std::make_unique<Program>();
    ASSERT_TRUE(program_->Start(L"one.txt missing.txt"));
    EXPECT_TRUE(IsWindowVisible(program_->Main()));
}

}  // namespace
