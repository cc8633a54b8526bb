// The list pane: sorting by command and by heading in both layouts, keys, opening by kind, label edits, column widths.
#include "ui/ui_fixture.h"

#include "resources/resource.h"

namespace {

using Names = std::vector<std::wstring>;

class ListTest : public UiTest {
  protected:
    // No column sorts like the order of arrival.
    static constexpr char kListing[] =
        "-rw-r--r-- 3 carl zoo 1000 Jan 01 1999 bb.exe\r\n"
        "-rwxr-xr-x 1 anna apes 30000 Jan 03 1999 c.txt\r\n"
        "-r--r--r-- 2 bert men 20000 Jan 02 1999 A.zip\r\n";
    inline static const Names kArrival{L"bb.exe", L"c.txt", L"A.zip"};

    void StartSortable(unsigned layout) {
        server_->SetListing("/", kListing);
        StartListed(layout, L"bb.exe");
        ASSERT_TRUE(WaitListNames(kArrival));
    }
    void StartListed(unsigned layout, const std::wstring& name) {
        StartConnected();
        ASSERT_FALSE(HasFatalFailure());
        ASSERT_TRUE(WaitListed(name));
        program_->Command(layout);
        ASSERT_TRUE(Settle());
        server_->ForgetCommands();
    }
    // Lists the folder again, in the server's order, and waits until the program is not busy.
    bool ListAgain() {
        const int before = server_->CountCommands("LIST");
        program_->Command(IDM_TV_REFRESH);
        return program_->WaitFor([&] { return server_->CountCommands("LIST") > before; }) && Settle() &&
               program_->WaitIdle();
    }
    // A folder with something of every kind.
    void StartWithAllKinds() {
        server_->SetListing("/",
                            "drwxr-xr-x 2 u g 512 Jan 01 1999 folder\r\n"
                            "-rw-r--r-- 1 u g 3 Jan 01 1999 file.txt\r\n"
                            "lrwxrwxrwx 1 u g 5 Jan 01 1999 link -> file.txt\r\n"
                            "prw-r--r-- 1 u g 0 Jan 01 1999 pipe\r\n");
        server_->AddFile("/folder/inner.txt", "x");
        server_->AddFile("/file.txt", "abc");
        StartListed(IDM_DETAILS_WINDOWS, L"folder");
    }
    void Open(const std::wstring& name) {
        SelectEntries({name});
        program_->PressKey(program_->List(), VK_RETURN);
    }
};

TEST_F(ListTest, ClickingSizeTwiceTogglesBetweenLargestAndSmallestFirst) {
    StartSortable(IDM_DETAILS_UNIX);
    program_->ClickHeader(6);
    EXPECT_TRUE(WaitListNames({L"c.txt", L"A.zip", L"bb.exe"})) << "numbers begin with the largest";
    program_->ClickHeader(6);
    EXPECT_TRUE(WaitListNames({L"bb.exe", L"A.zip", L"c.txt"}));
    program_->ClickHeader(6);
    EXPECT_TRUE(WaitListNames({L"c.txt", L"A.zip", L"bb.exe"}));
}

TEST_F(ListTest, ClickingAnyHeadingOfTheUnixLayoutSortsByIt) {
    StartSortable(IDM_DETAILS_UNIX);
    const struct {
        int column;
        Names names;
    } rows[] = {
        {0, {L"A.zip", L"bb.exe", L"c.txt"}}, {2, {L"A.zip", L"bb.exe", L"c.txt"}},
        {3, {L"bb.exe", L"A.zip", L"c.txt"}}, {4, {L"c.txt", L"A.zip", L"bb.exe"}},
        {5, {L"c.txt", L"A.zip", L"bb.exe"}}, {7, {L"bb.exe", L"A.zip", L"c.txt"}},
    };
    for (const auto& row : rows) {
        ASSERT_TRUE(ListAgain());
        ASSERT_EQ(program_->ListNames(), kArrival);
        program_->ClickHeader(row.column);
        EXPECT_TRUE(WaitListNames(row.names)) << row.column;
    }
}

TEST_F(ListTest, ADifferentColumnKeepsItsRememberedDirection) {
    StartSortable(IDM_DETAILS_UNIX);
    program_->ClickHeader(0);
    program_->ClickHeader(0);
    ASSERT_TRUE(WaitListNames({L"c.txt", L"bb.exe", L"A.zip"}));
    program_->ClickHeader(6);
    ASSERT_TRUE(WaitListNames({L"c.txt", L"A.zip", L"bb.exe"}));
    program_->ClickHeader(0);
    EXPECT_TRUE(WaitListNames({L"c.txt", L"bb.exe", L"A.zip"})) << "names still run downwards";
    program_->ClickHeader(0);
    EXPECT_TRUE(WaitListNames({L"A.zip", L"bb.exe", L"c.txt"}));
}

TEST_F(ListTest, InTheWindowsLayoutSomeCommandsSortByAnotherColumnOrNotAtAll) {
    StartSortable(IDM_DETAILS_WINDOWS);
    const struct {
        unsigned command;
        Names names;
    } rows[] = {
        {IDM_SORTBY_UMASK, {L"c.txt", L"A.zip", L"bb.exe"}},  // by size
        {IDM_SORTBY_LINKS, {L"bb.exe", L"A.zip", L"c.txt"}},  // by time
        {IDM_SORTBY_OWNER, kArrival},
        {IDM_SORTBY_GROUP, kArrival},
        {IDM_SORTBY_SIZE, {L"c.txt", L"A.zip", L"bb.exe"}},
        {IDM_SORTBY_DATE, {L"bb.exe", L"A.zip", L"c.txt"}},
        {IDM_SORTBY_NAME, {L"A.zip", L"bb.exe", L"c.txt"}},
    };
    for (const auto& row : rows) {
        ASSERT_TRUE(ListAgain());
        ASSERT_EQ(program_->ListNames(), kArrival);
        program_->Command(row.command);
        ASSERT_TRUE(Settle());
        EXPECT_EQ(program_->ListNames(), row.names) << row.command;
    }
}

TEST_F(ListTest, AHeadingOfTheWindowsLayoutSortsByWhatStandsBelowIt) {
    StartSortable(IDM_DETAILS_WINDOWS);
    program_->ClickHeader(2);
    EXPECT_TRUE(WaitListNames({L"c.txt", L"A.zip", L"bb.exe"}));
    program_->ClickHeader(3);
    EXPECT_TRUE(WaitListNames({L"bb.exe", L"A.zip", L"c.txt"}));
}

TEST_F(ListTest, SortingKeepsTheSelection) {
    StartSortable(IDM_DETAILS_UNIX);
    SelectEntries({L"c.txt"});
    program_->ClickHeader(0);
    ASSERT_TRUE(WaitListNames({L"A.zip", L"bb.exe", L"c.txt"}));
    EXPECT_EQ(program_->ListSelected(), 1);
    EXPECT_EQ(SendMessageW(program_->List(), LVM_GETITEMSTATE, 2, LVIS_SELECTED), LVIS_SELECTED);
}

TEST_F(ListTest, SizesAreShownInKilobytesWithGroupedDigits) {
    server_->SetListing("/",
                        "-rw-r--r-- 1 u g 0 Jan 01 1999 f0\r\n-rw-r--r-- 1 u g 1024 Jan 01 1999 f1\r\n"
                        "-rw-r--r-- 1 u g 1025 Jan 01 1999 f2\r\n-rw-r--r-- 1 u g 2048 Jan 01 1999 f3\r\n"
                        "-rw-r--r-- 1 u g 5000000 Jan 01 1999 f4\r\n");
    StartListed(IDM_DETAILS_WINDOWS, L"f4");
    const wchar_t* const sizes[] = {L"0KB", L"1KB", L"1KB", L"2KB", L"4,882KB"};
    for (int i = 0; i < 5; ++i) EXPECT_EQ(program_->ListText(i, 2), sizes[i]) << i;
}

TEST_F(ListTest, EnterOnAFolderOpensIt) {
    StartWithAllKinds();
    Open(L"folder");
    EXPECT_TRUE(WaitListed(L"inner.txt"));
    EXPECT_EQ(program_->TreeText(program_->TreeSelected()), L"folder");
}

TEST_F(ListTest, ADoubleClickOnAFolderOpensIt) {
    StartWithAllKinds();
    program_->Click(program_->List(), program_->ListPlace(program_->FindInList(L"folder")), true);
    EXPECT_TRUE(WaitListed(L"inner.txt"));
}

TEST_F(ListTest, EnterOnAFileReceivesIt) {
    StartWithAllKinds();
    Open(L"file.txt");
    EXPECT_TRUE(program_->WaitFor([this] { return folder_->Exists("file.txt"); }));
    EXPECT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalBytes("file.txt"), "abc");
}

TEST_F(ListTest, EnterOnSeveralEntriesReceivesThem) {
    server_->AddFile("/a.txt", "A");
    server_->AddFile("/b.txt", "B");
    StartListed(IDM_DETAILS_WINDOWS, L"a.txt");
    SelectEntries({L"a.txt", L"b.txt"});
    program_->PressKey(program_->List(), VK_RETURN);
    EXPECT_TRUE(program_->WaitFor([this] { return folder_->Exists("a.txt") && folder_->Exists("b.txt"); }));
    EXPECT_TRUE(program_->WaitIdle());
}

TEST_F(ListTest, EnterAndDeleteWithNothingSelectedDoNothing) {
    StartWithAllKinds();
    SelectEntries({});
    for (const WORD key : {VK_RETURN, VK_DELETE}) program_->PressKey(program_->List(), key);
    ASSERT_TRUE(Settle());
    ASSERT_TRUE(Settle());
    EXPECT_EQ(program_->Dialog(), nullptr);
    EXPECT_TRUE(server_->Commands().empty());
    EXPECT_EQ(program_->ListCount(), 4);
}

TEST_F(ListTest, EnterOnAPipeTellsThatItCannotBeTransferred) {
    StartWithAllKinds();
    Open(L"pipe");
    EXPECT_TRUE(AnswerDialog(L"", L"Zarnish Ftp cannot transfer a file of the type", IDOK));
    EXPECT_TRUE(server_->Commands().empty());
}

TEST_F(ListTest, EscapeLeavesALabelAsItWas) {
    StartWithAllKinds();
    SelectEntries({L"file.txt"});
    program_->Command(IDM_LV_RENAME);
    HWND edit = WaitLabelEdit(program_->List());
    ASSERT_NE(edit, nullptr);
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"other.txt"));
    program_->PressKey(edit, VK_ESCAPE);
    ASSERT_TRUE(program_->WaitFor([&] { return !IsWindow(edit); }));
    ASSERT_TRUE(Settle());
    EXPECT_GE(program_->FindInList(L"file.txt"), 0);
    EXPECT_TRUE(server_->Commands().empty());
}

TEST_F(ListTest, ALabelTakesNoMoreThan260Characters) {
    StartWithAllKinds();
    SelectEntries({L"file.txt"});
    program_->Command(IDM_LV_RENAME);
    HWND edit = WaitLabelEdit(program_->List());
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(SendMessageW(edit, EM_GETLIMITTEXT, 0, 0), 260);
    program_->PressKey(edit, VK_ESCAPE);
    EXPECT_TRUE(program_->WaitFor([&] { return !IsWindow(edit); }));
}

TEST_F(ListTest, ARenamedFolderIsRenamedInTheTree) {
    StartWithAllKinds();
    program_->ExpandInTree(RootItem());
    ASSERT_NE(program_->FindInTree(RootItem(), L"folder"), nullptr);
    SelectEntries({L"folder"});
    program_->Command(IDM_LV_RENAME);
    TypeLabel(program_->List(), L"cabinet");
    EXPECT_TRUE(program_->WaitFor([this] { return program_->FindInTree(RootItem(), L"cabinet") != nullptr; }));
    const auto commands = server_->Commands();
    EXPECT_NE(std::find(commands.begin(), commands.end(), "RNFR folder"), commands.end());
    EXPECT_NE(std::find(commands.begin(), commands.end(), "RNTO cabinet"), commands.end());
}

TEST_F(ListTest, ANewFolderThatTheServerRefusesLeavesListAndTree) {
    StartWithAllKinds();
    server_->Once("MKD", {Say("550 no room\r\n")});
    program_->Command(IDM_NEWFOLDER);
    HWND edit = WaitLabelEdit(program_->List());
    ASSERT_NE(edit, nullptr);
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"fresh"));
    program_->PressKey(edit, VK_RETURN);
    EXPECT_TRUE(AnswerDialog(L"Ftp Port Command Failure", L"no room", IDOK));
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ListCount() == 4; }));
    EXPECT_TRUE(program_->WaitIdle());
    program_->ExpandInTree(RootItem());
    EXPECT_EQ(program_->FindInTree(RootItem(), L"fresh"), nullptr);
}

TEST_F(ListTest, EscapeWhileNamingANewFolderTakesItAway) {
    StartWithAllKinds();
    program_->Command(IDM_NEWFOLDER);
    HWND edit = WaitLabelEdit(program_->List());
    ASSERT_NE(edit, nullptr);
    program_->PressKey(edit, VK_ESCAPE);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ListCount() == 4; }));
    EXPECT_EQ(server_->CountCommands("MKD"), 0);
}

TEST_F(ListTest, DeletionAsksForEachEntryWhenThePromptIsOn) {
    settings_.PROMPT = 1;
    server_->AddFile("/a.txt", "x");
    server_->AddFile("/b.txt", "x");
    StartListed(IDM_DETAILS_WINDOWS, L"a.txt");
    SelectEntries({L"a.txt", L"b.txt"});
    program_->Command(IDM_LV_DELETE);
    EXPECT_TRUE(AnswerDialog(L"", L"Do you want to delete 'a.txt'?", IDYES));
    EXPECT_TRUE(AnswerDialog(L"", L"Do you want to delete 'b.txt'?", IDNO));
    EXPECT_TRUE(program_->WaitIdle());
    EXPECT_EQ(program_->ListNames(), Names{L"b.txt"});
    EXPECT_EQ(server_->CountCommands("DELE"), 1);
}

TEST_F(ListTest, TheViewThatIsShownAlreadyIsTracedOnly) {
    TraceToLog();
    server_->AddFile("/a.txt", "x");
    StartListed(IDM_DETAILS_WINDOWS, L"a.txt");
    program_->Command(IDM_VIEW_LARGE_ICONS);
    program_->Command(IDM_VIEW_LARGE_ICONS);
    EXPECT_TRUE(Traced("LV_ChangeView() ERROR. Already Large Icons"));
    program_->Command(IDM_VIEW_SMALL_ICONS);
    program_->Command(IDM_VIEW_SMALL_ICONS);
    EXPECT_TRUE(Traced("LV_ChangeView() ERROR. Already Small Icons"));
    program_->Command(IDM_VIEW_LIST);
    program_->Command(IDM_VIEW_LIST);
    EXPECT_TRUE(Traced("LV_ChangeView() ERROR. Already List"));
}

TEST_F(ListTest, AColumnGrowsToTheTextsOfAFolder) {
    const std::string longName(50, 'w');
    server_->AddFile("/" + longName, "x");
    server_->AddFile("/a.txt", "x");
    StartListed(IDM_DETAILS_WINDOWS, L"a.txt");
    const int text = static_cast<int>(SendMessageW(program_->List(), LVM_GETCOLUMNWIDTH, 0, 0));
    EXPECT_GT(text, 250) << "fifty broad letters";
}

}  // namespace
