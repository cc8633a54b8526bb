// Beyond browsing: refreshing an entry after a rename, remembered directories, reaching everything by keyboard, names
// for screen readers, the folder that the program starts in.
#include "config/initial_dirs.h"
#include "resources/resource.h"
#include "ui/ui_fixture.h"

namespace {

constexpr int kLocalFolderPart = 5;

class ExplorerTest : public UiTest {};

TEST_F(ExplorerTest, ARenamedEntryIsRefreshedFromTheServer) {
    const auto line = [](const std::string& size, const std::string& name) {
        return "-rw-r--r--   1 root root " + size + " Feb 14 1999 " + name + "\r\n";
    };
    server_->SetListing("/", line("        7", "old.txt"));
    server_->AddFile("/old.txt", "1234567");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"old.txt"));
    server_->SetListing("/", line("  5000000", "new.txt"));
    program_->Command(IDM_DETAILS_WINDOWS);
    program_->FocusPane(program_->List());
    program_->SelectInList(0);
    program_->PressKey(program_->List(), VK_F2);
    HWND edit = nullptr;
    ASSERT_TRUE(program_->WaitFor([&] {
        edit = reinterpret_cast<HWND>(SendMessageW(program_->List(), LVM_GETEDITCONTROL, 0, 0));
        return edit != nullptr;
    }));
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"new.txt"));
    program_->PressKey(edit, VK_RETURN);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ListText(0) == L"new.txt"; }));
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ListText(0, 2) == L"4,882KB"; }));
    ASSERT_TRUE(program_->WaitIdle());
}

TEST_F(ExplorerTest, DirectoriesInWhichSessionsBeganStandInTheTree) {
    server_->AddFile("/home/u/a.txt", "x");
    server_->AddFile("/pub/deep/er/b.txt", "x");
    server_->SetHome("/home/u");
    SitePtr site(Zarn_CreateDefaultSite("Test"));
    site->pszDir = OwnedText::Copy("/pub/deep/er");
    SaveInitDirectory(site.get());
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a.txt"));
    HTREEITEM item = program_->TreeNext(program_->FindInTree(nullptr, L"Test"), TVGN_CHILD);
    for (const wchar_t* level : {L"pub", L"deep", L"er"}) {
        program_->ExpandInTree(item);
        item = program_->FindInTree(item, level);
        ASSERT_NE(item, nullptr) << "no node for a level";
    }
    program_->SelectInTree(item);
    EXPECT_TRUE(WaitListed(L"b.txt"));
}

TEST_F(ExplorerTest, F6GoesFromPaneToPaneAndToTheConsole) {
    settings_.VERBOSE = 1;
    StartProgram();
    ASSERT_TRUE(program_->WaitIdle());
    if (program_->Console() == nullptr) program_->Command(IDM_SHOWCONSOLE);
    ASSERT_TRUE(program_->WaitFor([this] { return program_->Console() != nullptr; }));
    program_->FocusPane(program_->Tree());
    for (HWND next : {program_->List(), program_->Console(), program_->Tree()}) {
        program_->PressKey(program_->Focus(), VK_F6);
        EXPECT_TRUE(program_->WaitFor([&] { return program_->Focus() == next; }));
    }
    program_->FocusPane(program_->Console());
    program_->PressKey(program_->Console(), VK_TAB);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Focus() == program_->Tree(); }));
}

TEST_F(ExplorerTest, ShiftF10OpensTheMenuAtTheSelectedEntry) {
    server_->AddFile("/a.txt", "x");
    server_->AddFile("/b.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"b.txt"));
    SelectEntries({L"b.txt"});
    INPUT keys[4]{};
    const WORD codes[4] = {VK_SHIFT, VK_F10, VK_F10, VK_SHIFT};
    for (int i = 0; i < 4; ++i) {
        keys[i].type = INPUT_KEYBOARD;
        keys[i].ki.wVk = codes[i];
        if (i >= 2) keys[i].ki.dwFlags = KEYEVENTF_KEYUP;
    }
    SendInput(4, keys, sizeof(INPUT));
    HWND menu = nullptr;
    ASSERT_TRUE(program_->WaitFor(
        [&] { return (menu = FindWindowW(L"#32768", nullptr)) != nullptr && IsWindowVisible(menu); }));
    RECT place{};
    GetWindowRect(menu, &place);
    const POINT entry = program_->ToScreen(program_->List(), program_->ListPlace(1));
    EXPECT_LE(place.left, entry.x);
    EXPECT_GE(place.top, entry.y - 4);
    EXPECT_LT(place.top, entry.y + 30);
    PostMessageW(program_->Main(), WM_CANCELMODE, 0, 0);
    EXPECT_TRUE(program_->WaitFor([&] { return !IsWindow(menu) || !IsWindowVisible(menu); }));
}

TEST_F(ExplorerTest, StartedInTheSystemsFolderItBeginsInTheUsersDownloads) {
    wchar_t before[MAX_PATH] = L"";
    GetCurrentDirectoryW(MAX_PATH, before);
    wchar_t system[MAX_PATH] = L"";
    GetSystemDirectoryW(system, MAX_PATH);
    SetCurrentDirectoryW(system);
    StartProgram();
    SetCurrentDirectoryW(before);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->StatusPart(kLocalFolderPart).ends_with(L"Downloads"); }))
        << "the folder is " << ::testing::PrintToString(program_->StatusPart(kLocalFolderPart));
}

TEST_F(ExplorerTest, ThePanesHaveNames) {
    StartProgram();
    EXPECT_EQ(Program::TextOf(program_->Tree()), L"Sites and folders");
    EXPECT_EQ(Program::TextOf(program_->List()), L"Contents of the folder");
    EXPECT_EQ(Program::TextOf(program_->Toolbar()), L"Toolbar");
}

}  // namespace
