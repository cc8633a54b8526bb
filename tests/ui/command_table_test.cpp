// Every command of the program, one row each, given in every possible way: as a command message, by toolbar button,
// from the menu bar, by key. Each row prepares the window, gives the command and checks its effect.
#include "ui/ui_fixture.h"

#include <iterator>
#include <set>

#include "config/column_widths.h"
#include "config/defaults_store.h"
#include "config/settings.h"
#include "platform/registry.h"
#include "resources/resource.h"
#include "ui/driver/menus.h"

namespace {

enum class Way { Message, Toolbar, Menu, Key };

class CommandTest;
using Check = void (CommandTest::*)();

struct Row {
    unsigned id;
    const char* name;
    const char* traceName;  // null: the command is not traced
    Check check;
    bool toolbar;
    const wchar_t* menu;  // letters of the menus down to its own; null: none
    WORD key;             // 0: none; "A" goes with Ctrl
};

struct Case {
    const Row* row;
    Way way;
};

class CommandTest : public UiTest, public testing::WithParamInterface<Case> {
  public:
    void Run();

    void StopsWhatRuns();
    void ShowsTheAboutBox();
    void ShowsTheServersStatus();
    void ConnectsTheSelectedSite();
    void ShowsTheCopyBox();
    void DeletesTheSelection();
    void Disconnects();
    void EndsTheProgram();
    void TellsThatTheHelpFileIsMissing();
    void ShowsLargeIcons();
    void ShowsSmallIcons();
    void ShowsAList();
    void ShowsFourColumns();
    void ShowsEightColumns();
    void ChangesNothing();
    void GoesUp();
    void NamesANewFolder();
    void ListsTheFolderAgain();
    void EditsTheEntrysLabel();
    void ReceivesTheSelection();
    void EditsTheFocusedPanesLabel();
    void WritesTheStore();
    void SelectsEveryEntry();
    void TogglesTheConsole();
    void SortsByDate() { Sorts({L"bb.exe", L"a.zip", L"c.txt"}); }
    void SortsByGroup() { Sorts({L"c.txt", L"a.zip", L"bb.exe"}); }
    void SortsByLinks() { Sorts({L"bb.exe", L"a.zip", L"c.txt"}); }
    void SortsByName() { Sorts({L"a.zip", L"bb.exe", L"c.txt"}); }
    void SortsByOwner() { Sorts({L"c.txt", L"a.zip", L"bb.exe"}); }
    void SortsBySize() { Sorts({L"c.txt", L"a.zip", L"bb.exe"}); }
    void SortsByType();
    void SortsByUmask() { Sorts({L"a.zip", L"bb.exe", L"c.txt"}); }
    void AlignsTheIcons();
    void ShowsTheWaitCursorWhileBusy();
    void KeepsTwentyLines();

  protected:
    void SetUp() override;
    void Send();
    void SortableFolder();
    void Sorts(const std::vector<std::wstring>& expected);
    void ExpectView(DWORD bits, unsigned button, int columns);
    HCURSOR CursorShown();
    int ConsoleLines() { return static_cast<int>(SendMessageW(program_->Console(), EM_GETLINECOUNT, 0, 0)); }
};

constexpr Row kRows[] = {
    {IDM_ABORT, "Abort", nullptr, &CommandTest::StopsWhatRuns, false, nullptr, VK_ESCAPE},
    {IDM_ABOUT, "About", "IDM_ABOUT", &CommandTest::ShowsTheAboutBox, false, L"h", 0},
    {IDM_CMD_STAT, "Statistics", "IDM_CMD_STAT", &CommandTest::ShowsTheServersStatus, false, L"s", 0},
    {IDM_CONNECT, "Connect", "IDM_CONNECT", &CommandTest::ConnectsTheSelectedSite, true, nullptr, 0},
    {IDM_COPY, "Copy", "IDM_COPY", &CommandTest::ShowsTheCopyBox, false, nullptr, 0},
    {IDM_DELETE, "Delete", "IDM_DELETE", &CommandTest::DeletesTheSelection, true, L"f", 0},
    {IDM_DISCONNECT, "Disconnect", "IDM_DISCONNECT", &CommandTest::Disconnects, true, nullptr, 0},
    {IDM_EXITAPP, "Exit", "IDM_EXITAPP", &CommandTest::EndsTheProgram, false, L"f", 0},
    {IDM_HELP_CONTENTS, "Contents", nullptr, &CommandTest::TellsThatTheHelpFileIsMissing, false, L"h", VK_F1},
    {IDM_VIEW_LARGE_ICONS, "LargeIcons", nullptr, &CommandTest::ShowsLargeIcons, true, L"v", 0},
    {IDM_VIEW_SMALL_ICONS, "SmallIcons", nullptr, &CommandTest::ShowsSmallIcons, true, L"v", 0},
    {IDM_VIEW_LIST, "List", nullptr, &CommandTest::ShowsAList, true, L"v", 0},
    {IDM_DETAILS_WINDOWS, "DetailsWindows", nullptr, &CommandTest::ShowsFourColumns, true, L"vd", 0},
    {IDM_DETAILS_UNIX, "DetailsUnix", nullptr, &CommandTest::ShowsEightColumns, false, L"vd", 0},
    {IDM_VIEW_LINEUP_ICONS, "LineUpIcons", nullptr, &CommandTest::AlignsTheIcons, false, L"v", 0},
    {IDM_LOGIN_SEND, "LoginSend", "IDM_LOGIN_SEND", &CommandTest::ChangesNothing, false, nullptr, 0},
    {IDM_LV_CDPARENT, "Parent", "IDM_LV_CDPARENT", &CommandTest::GoesUp, true, nullptr, 0},
    {IDM_LV_DELETE, "ListDelete", nullptr, &CommandTest::DeletesTheSelection, false, nullptr, VK_DELETE},
    {IDM_LV_NEWFOLDER, "ListNewFolder", nullptr, &CommandTest::NamesANewFolder, false, nullptr, 0},
    {IDM_NEWFOLDER, "NewFolder", nullptr, &CommandTest::NamesANewFolder, true, nullptr, 0},
    {IDM_TV_NEWFOLDER, "TreeNewFolder", nullptr, &CommandTest::NamesANewFolder, false, nullptr, 0},
    {IDM_LV_REFRESH, "Refresh", nullptr, &CommandTest::ListsTheFolderAgain, false, L"v", 0},
    {IDM_TV_REFRESH, "TreeRefresh", nullptr, &CommandTest::ListsTheFolderAgain, false, nullptr, VK_F5},
    {IDM_LV_RENAME, "ListRename", nullptr, &CommandTest::EditsTheEntrysLabel, false, nullptr, VK_F2},
    {IDM_RENAME, "Rename", nullptr, &CommandTest::EditsTheFocusedPanesLabel, false, L"f", 0},
    {IDM_LV_RECEIVE, "Receive", "IDM_LV_RECEIVE", &CommandTest::ReceivesTheSelection, false, nullptr, 0},
    {IDM_RECEIVE, "Transfer", "IDM_RECEIVE", &CommandTest::ReceivesTheSelection, true, L"f", VK_RETURN},
    {IDM_TV_RECEIVE, "TreeReceive", "IDM_TV_RECEIVE", &CommandTest::ReceivesTheSelection, false, nullptr, 0},
    {IDM_SAVECFG, "Save", "IDM_SAVECFG", &CommandTest::WritesTheStore, false, nullptr, 0},
    {IDM_SELECTALL, "SelectAll", "IDM_SELECTALL", &CommandTest::SelectsEveryEntry, false, L"e", 'A'},
    {IDM_SHOWCONSOLE, "ShowConsole", "IDM_SHOWCONSOLE", &CommandTest::TogglesTheConsole, false, nullptr, 0},
    {IDM_SORTBY_AUTO, "AutoArrange", "IDM_SORTBY_AUTO", &CommandTest::ChangesNothing, false, L"vi", 0},
    {IDM_SORTBY_DATE, "ByDate", "IDM_SORTBY_DATE", &CommandTest::SortsByDate, false, L"vi", 0},
    {IDM_SORTBY_GROUP, "ByGroup", "IDM_SORTBY_GROUP", &CommandTest::SortsByGroup, false, L"vi", 0},
    {IDM_SORTBY_LINKS, "ByLinks", "IDM_SORTBY_LINKS", &CommandTest::SortsByLinks, false, L"vi", 0},
    {IDM_SORTBY_NAME, "ByName", "IDM_SORTBY_NAME", &CommandTest::SortsByName, false, L"vi", 0},
    {IDM_SORTBY_OWNER, "ByOwner", "IDM_SORTBY_OWNER", &CommandTest::SortsByOwner, false, L"vi", 0},
    {IDM_SORTBY_SIZE, "BySize", "IDM_SORTBY_SIZE", &CommandTest::SortsBySize, false, L"vi", 0},
    {IDM_SORTBY_TYPE, "ByType", "IDM_SORTBY_TYPE", &CommandTest::SortsByType, false, L"vi", 0},
    {IDM_SORTBY_UMASK, "ByUmask", "IDM_SORTBY_UMASK", &CommandTest::SortsByUmask, false, L"vi", 0},
    {IDM_SETCURSOR, "SetCursor", nullptr, &CommandTest::ShowsTheWaitCursorWhileBusy, false, nullptr, 0},
    {IDM_CLEAR_CONSOLE, "ClearConsole", nullptr, &CommandTest::KeepsTwentyLines, false, nullptr, 0},
};

// Commands without a dialog yet: greyed everywhere, and without effect when sent. The rest belong to the tree's context
// menu.
struct SilentRow {
    unsigned id;
    const char* name;
};
constexpr SilentRow kSilentRows[] = {
    {IDM_NEW_SITE, "NewSite"},
    {IDM_PRINT, "Print"},
    {IDM_PROPERTIES, "Properties"},
    {IDM_QUICKVIEW, "QuickView"},
    {IDM_SETUP, "Options"},
    {IDM_TV_DELETE, "TreeDelete"},
    {IDM_DELETE_SITE, "SiteDelete"},
    {IDM_RENAME_SITE, "SiteRename"},
    {IDM_TV_RENAME, "TreeRename"},
    {IDM_CMD_FIRST, "FtpCommand40006"},
    {IDM_CMD_LAST, "FtpCommand40020"},
};

void CommandTest::SetUp() {
    UiTest::SetUp();
    if (IsSkipped()) return;
    TraceToLog();
    server_->AddFile("/a.txt", "abc");
    server_->AddFile("/b.txt", std::string(9000, 'b'));
    server_->AddFile("/pub/inner.txt", "inner");
}

void CommandTest::Run() {
    StartConnected();
    ASSERT_FALSE(HasFatalFailure());
    ASSERT_TRUE(WaitListed(L"b.txt"));
    (this->*GetParam().row->check)();
    const char* traceName = GetParam().row->traceName;
    if (HasFatalFailure() || traceName == nullptr) return;
    EXPECT_TRUE(Traced(std::string("ProcessCommandsWndProc() (WM_COMMAND) ") + traceName + " Received\r\n"));
}

// Gives the case's command in the case's way.
void CommandTest::Send() {
    const Row& row = *GetParam().row;
    switch (GetParam().way) {
        case Way::Message:
            program_->Command(row.id);
            break;
        case Way::Toolbar:
            ASSERT_TRUE(program_->WaitFor([&] { return program_->ToolbarEnabled(row.id); }));
            program_->ClickButton(row.id);
            break;
        case Way::Menu: {
            Menus menus(*program_);
            const MenuItems items = menus.OpenFromBar(row.menu);
            const MenuItem* item = ItemOf(items, row.id);
            ASSERT_NE(item, nullptr);
            EXPECT_TRUE(item->enabled);
            EXPECT_TRUE(menus.Choose(items, row.id));
            break;
        }
        case Way::Key:
            program_->TypeKey(row.key, row.key == 'A');
            break;
    }
}

void CommandTest::StopsWhatRuns() {
    program_->FocusPane(program_->List());
    server_->Once("LIST", {Say("150 in a while\r\n"), Hold(), Say("426 stopped\r\n")});
    program_->Command(IDM_TV_REFRESH);
    ASSERT_TRUE(server_->WaitUntilHeld());
    Send();
    EXPECT_TRUE(ConsoleHas(L"Aborting Remote thread"));
    server_->Release();
    EXPECT_TRUE(ConsoleHas(L"Remote Operation Aborted"));
    program_->WaitFor([this] { return program_->Dialog() != nullptr || program_->ToolbarEnabled(IDM_VIEW_LIST); });
    if (HWND dialog = program_->Dialog()) Program::PressButton(dialog, IDOK);
    EXPECT_TRUE(program_->WaitIdle());
}

void CommandTest::ShowsTheAboutBox() {
    Send();
    EXPECT_TRUE(AnswerDialog(L"About Zarn", L"Zarnish Ftp", IDOK));
}

void CommandTest::ShowsTheServersStatus() {
    Send();
    EXPECT_TRUE(AnswerDialog(L"Statistics for 127.0.0.1", L"", IDOK));
    EXPECT_EQ(server_->CountCommands("STAT"), 1);
}

void CommandTest::ConnectsTheSelectedSite() {
    program_->Command(IDM_DISCONNECT);
    ASSERT_TRUE(WaitTitle(L"Zarn Test"));
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ToolbarEnabled(IDM_CONNECT); }));
    server_->ForgetCommands();
    Send();
    EXPECT_TRUE(WaitTitle(L"Zarn Test::/"));
    EXPECT_EQ(server_->CountCommands("USER"), 1);
}

void CommandTest::ShowsTheCopyBox() {
    Send();
    EXPECT_TRUE(AnswerDialog(L"", L"Got a IDM_COPY Message", IDOK));
}

void CommandTest::DeletesTheSelection() {
    SelectEntries({L"a.txt"});
    Send();
    EXPECT_TRUE(WaitListNames({L"b.txt", L"pub"}));
    EXPECT_FALSE(server_->Exists("/a.txt"));
    EXPECT_EQ(server_->CountCommands("DELE"), 1);
}

void CommandTest::Disconnects() {
    program_->FocusPane(program_->List());
    Send();
    EXPECT_TRUE(WaitTitle(L"Zarn Test"));
    EXPECT_EQ(program_->ListCount(), 0);
    EXPECT_TRUE(FocusOn(program_->Tree()));
    EXPECT_EQ(program_->TreeText(program_->TreeSelected()), L"Test");
    EXPECT_EQ(program_->StatusPart(0), L"Not connected");
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ToolbarEnabled(IDM_CONNECT); }));
    EXPECT_TRUE(server_->WaitForConnections(0));
}

void CommandTest::EndsTheProgram() {
    Send();
    ASSERT_EQ(WaitForSingleObject(program_->Process(), 10000), WAIT_OBJECT_0);
    DWORD code = 99;
    GetExitCodeProcess(program_->Process(), &code);
    EXPECT_EQ(code, 0u);
    EXPECT_NE(LogText().find("After Message Loop. Doing Cleanup"), std::string::npos);
}

void CommandTest::TellsThatTheHelpFileIsMissing() {
    Send();
    EXPECT_TRUE(AnswerDialog(L"", L"Zarn32.hlp", IDOK));
}

void CommandTest::ExpectView(DWORD bits, unsigned button, int columns) {
    EXPECT_TRUE(program_->WaitFor(
        [&] { return (static_cast<DWORD>(GetWindowLongW(program_->List(), GWL_STYLE)) & LVS_TYPEMASK) == bits; }));
    EXPECT_TRUE(program_->WaitFor(
        [&] { return static_cast<int>(SendMessageW(program_->Header(), HDM_GETITEMCOUNT, 0, 0)) == columns; }));
    for (const unsigned view : {IDM_VIEW_LARGE_ICONS, IDM_VIEW_SMALL_ICONS, IDM_VIEW_LIST, IDM_DETAILS_WINDOWS}) {
        EXPECT_TRUE(program_->WaitFor([&] { return program_->ToolbarEnabled(view) == (view != button); })) << view;
    }
    EXPECT_GE(program_->FindInList(L"a.txt"), 0);
}

void CommandTest::ShowsLargeIcons() {
    Send();
    ExpectView(LVS_ICON, IDM_VIEW_LARGE_ICONS, 4);
}
void CommandTest::ShowsSmallIcons() {
    Send();
    ExpectView(LVS_SMALLICON, IDM_VIEW_SMALL_ICONS, 4);
}
void CommandTest::ShowsAList() {
    Send();
    ExpectView(LVS_LIST, IDM_VIEW_LIST, 4);
}
void CommandTest::ShowsFourColumns() {
    program_->Command(IDM_DETAILS_UNIX);
    ExpectView(LVS_REPORT, IDM_DETAILS_WINDOWS, 8);
    program_->Command(IDM_VIEW_LIST);
    ExpectView(LVS_LIST, IDM_VIEW_LIST, 8);
    Send();
    ExpectView(LVS_REPORT, IDM_DETAILS_WINDOWS, 4);
    const wchar_t* const titles[] = {L"Name", L"Type", L"Size", L"Timestamp"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(program_->ColumnTitle(i), titles[i]);
        EXPECT_EQ(program_->ColumnIsRightAligned(i), i == 3) << "the timestamp, not the size, stands right here";
    }
}
void CommandTest::ShowsEightColumns() {
    Send();
    ExpectView(LVS_REPORT, IDM_DETAILS_WINDOWS, 8);
    const wchar_t* const titles[] = {L"Name", L"Type", L"Umask", L"Links", L"Owner", L"Group", L"Size", L"Timestamp"};
    for (int i = 0; i < 8; ++i) {
        EXPECT_EQ(program_->ColumnTitle(i), titles[i]);
        EXPECT_EQ(program_->ColumnIsRightAligned(i), i == 3 || i == 6) << i;
    }
}

// The command is only traced.
void CommandTest::ChangesNothing() {
    const auto names = program_->ListNames();
    server_->ForgetCommands();
    Send();
    ASSERT_TRUE(Settle());
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(program_->ListNames(), names);
    EXPECT_EQ(program_->Title(), L"Zarn Test::/");
    EXPECT_EQ(program_->Dialog(), nullptr);
    EXPECT_TRUE(server_->Commands().empty());
}

void CommandTest::GoesUp() {
    ASSERT_NE(EnterFolder(L"pub"), nullptr);
    ASSERT_TRUE(WaitListed(L"inner.txt"));
    Send();
    EXPECT_TRUE(WaitListed(L"a.txt"));
    EXPECT_TRUE(WaitTitle(L"Zarn Test::/"));
    EXPECT_EQ(program_->TreeSelected(), RootItem());
}

void CommandTest::NamesANewFolder() {
    Send();
    HWND edit = WaitLabelEdit(program_->List());
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(Program::TextOf(edit), L"New_Folder");
    TypeLabel(program_->List(), L"fresh");
    EXPECT_TRUE(WaitListNames({L"a.txt", L"b.txt", L"pub", L"fresh"}));
    EXPECT_TRUE(server_->Exists("/fresh"));
}

void CommandTest::ListsTheFolderAgain() {
    server_->AddFile("/new.txt", "x");
    server_->ForgetCommands();
    program_->FocusPane(program_->List());
    Send();
    EXPECT_TRUE(WaitListed(L"new.txt"));
    EXPECT_EQ(server_->CountCommands("LIST"), 1);
    EXPECT_EQ(server_->CountCommands("CWD"), 0) << "the session stands there already";
}

void CommandTest::EditsTheEntrysLabel() {
    SelectEntries({L"b.txt"});
    Send();
    TypeLabel(program_->List(), L"c.txt");
    EXPECT_TRUE(WaitListNames({L"a.txt", L"c.txt", L"pub"}));
    EXPECT_TRUE(server_->Exists("/c.txt"));
}

void CommandTest::ReceivesTheSelection() {
    SelectEntries({L"b.txt"});
    Send();
    EXPECT_TRUE(program_->WaitFor([this] { return folder_->Exists("b.txt"); }));
    EXPECT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalBytes("b.txt"), std::string(9000, 'b'));
    EXPECT_EQ(server_->CountCommands("RETR"), 1);
}

void CommandTest::EditsTheFocusedPanesLabel() {
    SelectEntries({L"a.txt"});
    Send();
    HWND edit = WaitLabelEdit(program_->List());
    ASSERT_NE(edit, nullptr);
    program_->PressKey(edit, VK_ESCAPE);
    ASSERT_TRUE(program_->WaitFor([&] { return !IsWindow(edit); }));
    if (GetParam().way == Way::Menu) return;  // greyed there while the tree shows a folder
    program_->FocusPane(program_->Tree());
    ASSERT_TRUE(FocusOn(program_->Tree()));
    ASSERT_TRUE(Settle());
    program_->Command(IDM_RENAME);
    edit = WaitLabelEdit(program_->Tree());
    ASSERT_NE(edit, nullptr);
    program_->PressKey(edit, VK_ESCAPE);
    EXPECT_TRUE(program_->WaitFor([&] { return !IsWindow(edit); }));
}

void CommandTest::WritesTheStore() {
    program_->ClickStatusPart(2);
    ASSERT_TRUE(program_->WaitFor([this] { return program_->StatusPart(2) == L"Bell: on"; }));
    SendMessageW(program_->List(), LVM_SETCOLUMNWIDTH, 1, MAKELPARAM(137, 0));
    LoadDefaults();
    ASSERT_EQ(gZarn.BELL, 0u);
    Send();
    EXPECT_TRUE(program_->WaitFor([] {
        LoadDefaults();
        return gZarn.BELL == 1 && LoadColumnInfo(4) && gZarn.iColumnLengths[1] == 137;
    }));
}

void CommandTest::SelectsEveryEntry() {
    SelectEntries({L"a.txt"});
    Send();
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ListSelected() == 3; }));
}

void CommandTest::TogglesTheConsole() {
    ASSERT_TRUE(ConsoleHas(L"220"));
    Send();
    ASSERT_TRUE(program_->WaitFor([this] { return program_->Console() == nullptr; }));
    EXPECT_TRUE(program_->WaitFor([this] {
        RECT list, bar;
        GetWindowRect(program_->List(), &list);
        GetWindowRect(program_->StatusBar(), &bar);
        return bar.top - list.bottom <= 2;
    })) << "the panes take the console's place";
    Send();
    ASSERT_TRUE(program_->WaitFor([this] { return program_->Console() != nullptr; }));
    EXPECT_EQ(program_->ConsoleText().find(L"220"), std::wstring::npos) << "it starts empty again";
}

// No column sorts like the order of arrival.
void CommandTest::SortableFolder() {
    server_->SetListing("/",
                        "-rw-r--r-- 3 carl zoo 1000 Jan 01 1999 bb.exe\r\n"
                        "-rwxr-xr-x 1 anna apes 3000 Jan 03 1999 c.txt\r\n"
                        "-r--r--r-- 2 bert men 2000 Jan 02 1999 a.zip\r\n");
    program_->Command(IDM_DETAILS_UNIX);
    program_->Command(IDM_TV_REFRESH);
    ASSERT_TRUE(WaitListed(L"bb.exe"));
    ASSERT_TRUE(WaitListNames({L"bb.exe", L"c.txt", L"a.zip"}));
}

void CommandTest::Sorts(const std::vector<std::wstring>& expected) {
    SortableFolder();
    ASSERT_FALSE(HasFatalFailure());
    Send();
    EXPECT_TRUE(WaitListNames(expected));
}

void CommandTest::SortsByType() {
    SortableFolder();
    ASSERT_FALSE(HasFatalFailure());
    Send();
    ASSERT_TRUE(Settle());
    std::vector<std::wstring> types;
    for (int i = 0; i < program_->ListCount(); ++i) {
        types.push_back(program_->ListText(i, 1));
        CharLowerW(types.back().data());
    }
    EXPECT_TRUE(std::is_sorted(types.begin(), types.end()));
    EXPECT_NE(types.front(), types.back());
}

void CommandTest::AlignsTheIcons() {
    program_->Command(IDM_VIEW_LARGE_ICONS);
    ASSERT_TRUE(Settle());
    const POINT before = program_->ListPlace(0);
    Send();
    ASSERT_TRUE(Settle());
    const POINT after = program_->ListPlace(0);
    EXPECT_EQ(before.x, after.x) << "in a list that the program arranges itself they stand in line";
    EXPECT_EQ(before.y, after.y);
    EXPECT_EQ(program_->ListCount(), 3);
}

HCURSOR CommandTest::CursorShown() {
    CURSORINFO info{};
    info.cbSize = sizeof(info);
    return GetCursorInfo(&info) ? info.hCursor : nullptr;
}

void CommandTest::ShowsTheWaitCursorWhileBusy() {
    RECT place;
    GetWindowRect(program_->List(), &place);
    SetCursorPos((place.left + place.right) / 2, (place.top + place.bottom) / 2);
    Send();
    ASSERT_TRUE(Settle());
    const HCURSOR arrow = CursorShown();
    server_->Once("LIST", {Hold(), Answer()});
    program_->Command(IDM_TV_REFRESH);
    ASSERT_TRUE(server_->WaitUntilHeld());
    Send();
    EXPECT_TRUE(program_->WaitFor([&] { return CursorShown() != arrow; }));
    server_->Release();
    ASSERT_TRUE(program_->WaitIdle());
    Send();
    EXPECT_TRUE(program_->WaitFor([&] { return CursorShown() == arrow; }));
}

void CommandTest::KeepsTwentyLines() {
    for (int i = 0; ConsoleLines() < 30 && i < 10; ++i) {
        program_->Command(IDM_TV_REFRESH);
        ASSERT_TRUE(Settle());
        ASSERT_TRUE(program_->WaitIdle());
    }
    ASSERT_GE(ConsoleLines(), 30);
    const std::wstring before = program_->ConsoleText();
    Send();
    EXPECT_TRUE(program_->WaitFor([this] { return ConsoleLines() == 20; }));
    EXPECT_TRUE(before.ends_with(program_->ConsoleText())) << "the last lines are the ones that stay";
}

TEST_P(CommandTest, DoesWhatItIsFor) {
    Run();
}

std::vector<Case> AllCases() {
    std::vector<Case> cases;
    for (const Row& row : kRows) {
        cases.push_back({&row, Way::Message});
        if (row.toolbar) cases.push_back({&row, Way::Toolbar});
        if (row.menu != nullptr) cases.push_back({&row, Way::Menu});
        if (row.key != 0) cases.push_back({&row, Way::Key});
    }
    return cases;
}

std::string NameOfCase(const testing::TestParamInfo<Case>& test) {
    static constexpr const char* kWays[] = {"Message", "Toolbar", "Menu", "Key"};
    return std::string(test.param.row->name) + "By" + kWays[static_cast<std::size_t>(test.param.way)];
}

INSTANTIATE_TEST_SUITE_P(Commands, CommandTest, testing::ValuesIn(AllCases()), NameOfCase);

class SilentCommandTest : public UiTest, public testing::WithParamInterface<SilentRow> {};

TEST_P(SilentCommandTest, DoesNothing) {
    server_->AddFile("/a.txt", "abc");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a.txt"));
    for (HWND pane : {program_->List(), program_->Tree()}) {
        SelectEntries({L"a.txt"});
        program_->FocusPane(pane);
        ASSERT_TRUE(FocusOn(pane));
        server_->ForgetCommands();
        program_->Command(GetParam().id);
        ASSERT_TRUE(Settle());
        ASSERT_TRUE(program_->WaitIdle());
        EXPECT_EQ(program_->Dialog(), nullptr);
        EXPECT_EQ(program_->LabelEdit(program_->List()), nullptr);
        EXPECT_EQ(program_->LabelEdit(program_->Tree()), nullptr);
        EXPECT_EQ(program_->ListCount(), 1);
        EXPECT_TRUE(server_->Commands().empty());
        EXPECT_EQ(program_->Focus(), pane);
    }
}

std::string NameOfSilentRow(const testing::TestParamInfo<SilentRow>& test) {
    return test.param.name;
}

INSTANTIATE_TEST_SUITE_P(Commands, SilentCommandTest, testing::ValuesIn(kSilentRows), NameOfSilentRow);

// Whoever adds a command adds a row.
TEST(CommandTableTest, NoCommandStandsInTwoRows) {
    std::set<unsigned> ids;
    for (const Row& row : kRows) EXPECT_TRUE(ids.insert(row.id).second) << row.name;
    for (const SilentRow& row : kSilentRows) EXPECT_TRUE(ids.insert(row.id).second) << row.name;
}

}  // namespace
