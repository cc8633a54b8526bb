// The seven parts of the status bar, their clicks, and the toolbar with its tooltips.
#include "ui/ui_fixture.h"

#include "resources/resource.h"

namespace {

enum Part { kMessage, kLinks, kBell, kUnique, kType, kLocalDir, kSelection };

class StatusBarTest : public UiTest {
  protected:
    bool PartBecomes(int part, const std::wstring& text) {
        return program_->WaitFor([&] { return program_->StatusPart(part) == text; });
    }
};

TEST_F(StatusBarTest, AClickOnTheFirstPartTogglesTheConsole) {
    StartProgram();
    ASSERT_NE(program_->Console(), nullptr);
    program_->ClickStatusPart(kMessage);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Console() == nullptr; }));
    program_->ClickStatusPart(kMessage);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Console() != nullptr; }));
}

TEST_F(StatusBarTest, ClicksOnTheNextThreeTurnTheirSwitches) {
    StartProgram();
    const struct {
        int part;
        const wchar_t *first, *second;
    } rows[] = {{kLinks, L"Follow links: off", L"Follow links: on"},
                {kBell, L"Bell: off", L"Bell: on"},
                {kUnique, L"Unique names: on", L"Unique names: off"}};
    for (const auto& row : rows) {
        EXPECT_EQ(program_->StatusPart(row.part), row.first);
        program_->ClickStatusPart(row.part);
        EXPECT_TRUE(PartBecomes(row.part, row.second));
        program_->ClickStatusPart(row.part);
        EXPECT_TRUE(PartBecomes(row.part, row.first));
    }
}

TEST_F(StatusBarTest, TheFifthGoesFromAsciiToBinaryToLocalBytesAndBackAndTheNextTransferUsesIt) {
    TraceToLog();
    server_->AddFile("/a.txt", "one\r\n");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a.txt"));
    EXPECT_EQ(program_->StatusPart(kType), L"BINARY");
    program_->ClickStatusPart(kType);
    EXPECT_TRUE(PartBecomes(kType, L"L8"));
    EXPECT_TRUE(Traced("Zarn_ToggleStatus() TYPE L 8"));
    SelectEntries({L"a.txt"});
    ReceiveSelected();
    ASSERT_TRUE(program_->WaitFor([this] { return folder_->Exists("a.txt"); }));
    ASSERT_TRUE(program_->WaitIdle());
    const auto commands = server_->Commands();
    EXPECT_NE(std::find(commands.begin(), commands.end(), "TYPE L 8"), commands.end());
    program_->ClickStatusPart(kType);
    EXPECT_TRUE(PartBecomes(kType, L"ASCII"));
    EXPECT_TRUE(Traced("Zarn_ToggleStatus() TYPE A"));
    program_->ClickStatusPart(kType);
    EXPECT_TRUE(PartBecomes(kType, L"BINARY"));
    EXPECT_TRUE(Traced("Zarn_ToggleStatus() TYPE I"));
}

TEST_F(StatusBarTest, TheSixthAsksForAnotherLocalFolder) {
    CreateDirectoryA("sub", nullptr);
    StartProgram();
    program_->ClickStatusPart(kLocalDir);
    HWND dialog = nullptr;
    ASSERT_TRUE(program_->WaitFor([&] { return (dialog = program_->Dialog(L"Change Local Directory")) != nullptr; }));
    const std::wstring wanted = Wide(folder_->PathOf("sub"));
    SendMessageW(GetDlgItem(dialog, IDC_LOCAL_DIR), WM_SETTEXT, 0, reinterpret_cast<LPARAM>(wanted.c_str()));
    Program::PressButton(dialog, IDOK);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->StatusPart(kLocalDir).ends_with(L"\\sub"); }));
}

TEST_F(StatusBarTest, TheSeventhCountsEntriesAndSelection) {
    server_->AddFile("/a", std::string(1500, 'x'));
    server_->AddFile("/b", std::string(1500, 'x'));
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a"));
    program_->UnselectAll();
    EXPECT_TRUE(PartBecomes(kSelection, L"Entries: 2"));
    program_->Command(IDM_SELECTALL);
    EXPECT_TRUE(PartBecomes(kSelection, L"Selected: 2, 3,000 bytes"));
    program_->ClickStatusPart(kSelection);
    ASSERT_TRUE(Settle());
    EXPECT_EQ(program_->StatusPart(kSelection), L"Selected: 2, 3,000 bytes") << "a click there does nothing";
}

TEST_F(StatusBarTest, TheFirstTellsWhatIsConnected) {
    StartProgram();
    EXPECT_EQ(program_->StatusPart(kMessage), L"Not connected");
    Connect();
    EXPECT_TRUE(PartBecomes(kMessage, L"Connected to Test"));
}

TEST_F(StatusBarTest, ClicksAreRefusedWhileAnOperationRuns) {
    StartConnected();
    server_->Once("LIST", {Hold(), Answer()});
    program_->Command(IDM_TV_REFRESH);
    ASSERT_TRUE(server_->WaitUntilHeld());
    program_->ClickStatusPart(kBell);
    ASSERT_TRUE(Settle());
    EXPECT_EQ(program_->StatusPart(kBell), L"Bell: off");
    server_->Release();
    EXPECT_TRUE(program_->WaitIdle());
}

class ToolbarTest : public UiTest {};

TEST_F(ToolbarTest, HasItsSixteenSlotsInOrder) {
    StartProgram();
    const int slots[] = {IDM_LV_CDPARENT,
                         0,
                         IDM_CONNECT,
                         IDM_DISCONNECT,
                         0,
                         IDM_VIEW_LARGE_ICONS,
                         IDM_VIEW_SMALL_ICONS,
                         IDM_VIEW_LIST,
                         IDM_DETAILS_WINDOWS,
                         0,
                         IDM_RECEIVE,
                         IDM_DELETE,
                         IDM_PROPERTIES,
                         IDM_NEWFOLDER,
                         IDM_QUICKVIEW,
                         IDM_PRINT};
    ASSERT_EQ(SendMessageW(program_->Toolbar(), TB_BUTTONCOUNT, 0, 0), 16);
    for (int i = 0; i < 16; ++i) {
        if (slots[i] == 0) continue;
        EXPECT_EQ(SendMessageW(program_->Toolbar(), TB_COMMANDTOINDEX, static_cast<WPARAM>(slots[i]), 0), i);
    }
}

TEST_F(ToolbarTest, ButtonsFollowTheFocusAndTheSelection) {
    server_->AddFile("/a.txt", "x");
    server_->AddFile("/pub/inner.txt", "x");
    StartProgram();
    const auto states = [this](const std::vector<unsigned>& on) {
        EXPECT_TRUE(Settle());
        for (const unsigned id : {IDM_LV_CDPARENT, IDM_CONNECT, IDM_DISCONNECT, IDM_RECEIVE, IDM_DELETE, IDM_PROPERTIES,
                                  IDM_NEWFOLDER, IDM_QUICKVIEW, IDM_PRINT}) {
            const bool wanted = std::find(on.begin(), on.end(), id) != on.end();
            EXPECT_TRUE(program_->WaitFor([&] { return program_->ToolbarEnabled(id) == wanted; }, 3000)) << id;
        }
    };
    program_->FocusPane(program_->Tree());
    ASSERT_TRUE(FocusOn(program_->Tree()));
    states({IDM_CONNECT, IDM_DELETE});
    Connect();
    ASSERT_TRUE(WaitListed(L"pub"));
    program_->FocusPane(program_->Tree());
    ASSERT_TRUE(FocusOn(program_->Tree()));
    states({IDM_DISCONNECT, IDM_RECEIVE, IDM_NEWFOLDER});
    SelectEntries({});
    states({IDM_DISCONNECT, IDM_NEWFOLDER});
    SelectEntries({L"a.txt"});
    states({IDM_DISCONNECT, IDM_RECEIVE, IDM_DELETE, IDM_NEWFOLDER});
    ASSERT_NE(EnterFolder(L"pub"), nullptr);
    ASSERT_TRUE(WaitListed(L"inner.txt"));
    states({IDM_LV_CDPARENT, IDM_DISCONNECT, IDM_RECEIVE, IDM_NEWFOLDER});
}

TEST_F(ToolbarTest, EveryButtonIsGreyWhileAnOperationRuns) {
    StartConnected();
    server_->Once("LIST", {Hold(), Answer()});
    program_->Command(IDM_TV_REFRESH);
    ASSERT_TRUE(server_->WaitUntilHeld());
    for (const unsigned id : {IDM_LV_CDPARENT, IDM_CONNECT, IDM_DISCONNECT, IDM_VIEW_LARGE_ICONS, IDM_VIEW_SMALL_ICONS,
                              IDM_VIEW_LIST, IDM_RECEIVE, IDM_DELETE, IDM_NEWFOLDER}) {
        EXPECT_TRUE(program_->WaitFor([&] { return !program_->ToolbarEnabled(id); }, 3000)) << id;
    }
    server_->Release();
    EXPECT_TRUE(program_->WaitIdle());
}

TEST_F(ToolbarTest, AButtonUnderThePointerIsExplained) {
    StartProgram();
    const POINT place = program_->ToScreen(program_->Toolbar(), program_->ButtonPlace(IDM_CONNECT));
    HWND tip = reinterpret_cast<HWND>(SendMessageW(program_->Toolbar(), TB_GETTOOLTIPS, 0, 0));
    ASSERT_NE(tip, nullptr);
    SetForegroundWindow(program_->Main());
    SetCursorPos(place.x - 1, place.y);
    SetCursorPos(place.x, place.y);
    PostMessageW(program_->Toolbar(), WM_MOUSEMOVE, 0,
                 MAKELPARAM(program_->ButtonPlace(IDM_CONNECT).x, program_->ButtonPlace(IDM_CONNECT).y));
    EXPECT_TRUE(program_->WaitFor([&] { return IsWindowVisible(tip) != 0; }));
    EXPECT_EQ(Program::TextOf(tip), L"Connects to a FTP Server.");
}

}  // namespace
