// Dragging entries of the list onto the tree with the mouse, dropping and pasting files of other programs and following
// links on demand.
#include <shlobj.h>

#include "resources/resource.h"
#include "ui/ui_fixture.h"

namespace {

constexpr int kDragSteps = 6;
constexpr int kLocalFolderPart = 5;

class DragTest : public UiTest {
  protected:
    void SetUp() override {
        UiTest::SetUp();
        if (!IsSkipped()) GetCursorPos(&before_);
    }
    void TearDown() override {
        Button(MOUSEEVENTF_LEFTUP);
        SetCursorPos(before_.x, before_.y);
        UiTest::TearDown();
    }

    static void Button(DWORD flags) {
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = flags;
        SendInput(1, &input, sizeof(input));
    }
    static void MoveMouse(POINT screen) {
        INPUT input{};
        input.type = INPUT_MOUSE;
        input.mi.dwFlags = MOUSEEVENTF_ABSOLUTE | MOUSEEVENTF_MOVE;
        input.mi.dx = (screen.x * 65536 + 32768) / GetSystemMetrics(SM_CXSCREEN);
        input.mi.dy = (screen.y * 65536 + 32768) / GetSystemMetrics(SM_CYSCREEN);
        SendInput(1, &input, sizeof(input));
    }
    static void PressEscape() {
        INPUT input[2]{};
        for (INPUT& key : input) {
            key.type = INPUT_KEYBOARD;
            key.ki.wVk = VK_ESCAPE;
        }
        input[1].ki.dwFlags = KEYEVENTF_KEYUP;
        SendInput(2, input, sizeof(INPUT));
    }
    bool CapturedByMain() {
        GUITHREADINFO info{};
        info.cbSize = sizeof(info);
        GetGUIThreadInfo(GetWindowThreadProcessId(program_->Main(), nullptr), &info);
        return info.hwndCapture == program_->Main();
    }
    POINT OnEntry(const std::wstring& name) {
        return program_->ToScreen(program_->List(), program_->ListPlace(program_->FindInList(name)));
    }
    POINT OnNode(HTREEITEM item) { return program_->ToScreen(program_->Tree(), program_->TreePlace(item)); }

    // Starts dragging an entry; the drag has begun when it returns.
    void PickUp(const std::wstring& name) {
        SetForegroundWindow(program_->Main());
        const POINT from = OnEntry(name);
        MoveMouse(from);
        Button(MOUSEEVENTF_LEFTDOWN);
        ASSERT_TRUE(program_->WaitFor([&] { return program_->ListSelected() > 0; }));
        LONG moved = 0;
        ASSERT_TRUE(program_->WaitFor([&] {
            moved += 4;
            MoveMouse({from.x - moved, from.y});
            return CapturedByMain();
        })) << "no drag begins";
    }
    void CarryTo(POINT to) {
        POINT from{};
        GetCursorPos(&from);
        for (int step = 1; step <= kDragSteps; ++step) {
            MoveMouse({from.x + (to.x - from.x) * step / kDragSteps, from.y + (to.y - from.y) * step / kDragSteps});
        }
    }
    void LetGo() {
        Button(MOUSEEVENTF_LEFTUP);
        ASSERT_TRUE(program_->WaitFor([&] { return !CapturedByMain(); }));
    }
    bool IsHighlighted(HTREEITEM item) {
        return program_->WaitFor([&] { return program_->TreeNext(nullptr, TVGN_DROPHILITE) == item; });
    }

    // The node of a folder below the local computer's drive that holds the test's own folder.
    HTREEITEM LocalComputer() {
        HTREEITEM item = program_->TreeNext(nullptr, TVGN_ROOT);
        for (HTREEITEM next = item; next != nullptr; next = program_->TreeNext(item, TVGN_NEXT)) item = next;
        return item;
    }
    // Opens the tree down to a local folder by selecting each level; the list shows the last one.
    HTREEITEM ShowLocalFolder(const std::string& path) {
        HTREEITEM item = LocalComputer();
        std::size_t start = 0;
        while (start < path.size()) {
            std::size_t end = path.find('\\', start);
            if (end == std::string::npos) end = path.size();
            std::string level = path.substr(start, end - start);
            if (start == 0) level += "\\";
            start = end + 1;
            program_->ExpandInTree(item);
            HTREEITEM child = nullptr;
            if (!program_->WaitFor([&] {
                    child = program_->FindInTree(item, Wide(level));
                    return child != nullptr;
                }))
                return nullptr;
            item = child;
            program_->SelectInTree(item);
            // The current folder, shortened to fit, still ends with the same name.
            const std::wstring name = Wide(level);
            if (!program_->WaitFor([&] { return program_->StatusPart(kLocalFolderPart).ends_with(name); }))
                return nullptr;
            program_->WaitIdle();
        }
        return item;
    }

    POINT before_{};
};

TEST_F(DragTest, RemoteFilesAreReceivedInTheLocalFolderTheyAreDroppedOn) {
    server_->AddFile("/a.txt", "first");
    server_->AddFile("/b.txt", "second");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"b.txt"));
    program_->ExpandInTree(LocalComputer());
    HTREEITEM drive = nullptr;
    ASSERT_TRUE(program_->WaitFor([&] { return (drive = program_->FindInTree(LocalComputer(), L"C:\\")) != nullptr; }));

    PickUp(L"b.txt");
    CarryTo(OnNode(drive));
    EXPECT_TRUE(IsHighlighted(drive));
    Picture("drag");
    LetGo();
    EXPECT_TRUE(program_->WaitFor([] { return GetFileAttributesW(L"C:\\b.txt") != INVALID_FILE_ATTRIBUTES; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(program_->TreeNext(nullptr, TVGN_DROPHILITE), nullptr);
    EXPECT_EQ(GetFileAttributesW(L"C:\\a.txt"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(LocalFileCount(), 0u);
    DeleteFileW(L"C:\\b.txt");
}

TEST_F(DragTest, AllSelectedEntriesAreCarried) {
    for (const char* name : {"/a.txt", "/b.txt", "/c.txt"}) server_->AddFile(name, name);
    CreateDirectoryW(L"C:\\all", nullptr);
    StartConnected();
    ASSERT_TRUE(WaitListed(L"c.txt"));
    program_->Command(IDM_VIEW_LARGE_ICONS);
    program_->ExpandInTree(LocalComputer());
    HTREEITEM drive = nullptr;
    ASSERT_TRUE(program_->WaitFor([&] { return (drive = program_->FindInTree(LocalComputer(), L"C:\\")) != nullptr; }));
    program_->SelectInList(program_->FindInList(L"a.txt"));
    program_->SelectInList(program_->FindInList(L"c.txt"), true);
    PickUp(L"c.txt");
    CarryTo(OnNode(drive));
    HTREEITEM folder = nullptr;
    ASSERT_TRUE(program_->WaitFor([&] { return (folder = program_->FindInTree(drive, L"all")) != nullptr; }));
    CarryTo(OnNode(folder));
    ASSERT_TRUE(IsHighlighted(folder));
    LetGo();
    EXPECT_TRUE(program_->WaitFor([] { return GetFileAttributesW(L"C:\\all\\c.txt") != INVALID_FILE_ATTRIBUTES; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_NE(GetFileAttributesW(L"C:\\all\\a.txt"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetFileAttributesW(L"C:\\all\\b.txt"), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(program_->ListSelected(), 2);
    for (const wchar_t* name : {L"C:\\all\\a.txt", L"C:\\all\\c.txt"}) DeleteFileW(name);
    RemoveDirectoryW(L"C:\\all");
}

TEST_F(DragTest, EscapeCancels) {
    server_->AddFile("/a.txt", "first");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a.txt"));
    program_->ExpandInTree(LocalComputer());
    HTREEITEM drive = nullptr;
    ASSERT_TRUE(program_->WaitFor([&] { return (drive = program_->FindInTree(LocalComputer(), L"C:\\")) != nullptr; }));
    server_->ForgetCommands();

    PickUp(L"a.txt");
    CarryTo(OnNode(drive));
    EXPECT_TRUE(IsHighlighted(drive));
    PressEscape();
    EXPECT_TRUE(program_->WaitFor([&] { return !CapturedByMain(); }));
    EXPECT_EQ(program_->TreeNext(nullptr, TVGN_DROPHILITE), nullptr);
    Button(MOUSEEVENTF_LEFTUP);
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(server_->CountCommands("RETR"), 0);
}

TEST_F(DragTest, TheRightButtonCancels) {
    server_->AddFile("/a.txt", "first");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a.txt"));
    program_->ExpandInTree(LocalComputer());
    server_->ForgetCommands();
    PickUp(L"a.txt");
    CarryTo(OnNode(LocalComputer()));
    Button(MOUSEEVENTF_RIGHTDOWN);
    EXPECT_TRUE(program_->WaitFor([&] { return !CapturedByMain(); }));
    Button(MOUSEEVENTF_RIGHTUP);
    Button(MOUSEEVENTF_LEFTUP);
    program_->PressKey(program_->Main(), VK_ESCAPE);
    EXPECT_EQ(server_->CountCommands("RETR"), 0);
}

TEST_F(DragTest, RemoteFilesCannotBeDroppedOnRemoteFolders) {
    server_->AddFile("/a.txt", "first");
    server_->AddFolder("/sub");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"sub"));
    HTREEITEM root = program_->TreeNext(program_->FindInTree(nullptr, L"Test"), TVGN_CHILD);
    program_->ExpandInTree(root);
    server_->ForgetCommands();
    PickUp(L"a.txt");
    CarryTo(OnNode(program_->FindInTree(root, L"sub")));
    EXPECT_EQ(program_->TreeNext(nullptr, TVGN_DROPHILITE), nullptr);
    LetGo();
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(server_->CountCommands("RETR") + server_->CountCommands("STOR") + server_->CountCommands("RNFR"), 0);
}

TEST_F(DragTest, AClosedLocalNodeOpensUnderThePointer) {
    server_->AddFile("/a.txt", "first");
    CreateDirectoryW(L"C:\\opens", nullptr);
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a.txt"));
    program_->ExpandInTree(LocalComputer());
    HTREEITEM drive = nullptr;
    ASSERT_TRUE(program_->WaitFor([&] { return (drive = program_->FindInTree(LocalComputer(), L"C:\\")) != nullptr; }));
    PickUp(L"a.txt");
    CarryTo(OnNode(drive));
    HTREEITEM folder = nullptr;
    EXPECT_TRUE(program_->WaitFor([&] { return (folder = program_->FindInTree(drive, L"opens")) != nullptr; }));
    EXPECT_GE(program_->FindInList(L"a.txt"), 0) << "the list is to stay as it is";
    CarryTo(OnNode(folder));
    EXPECT_TRUE(IsHighlighted(folder));
    LetGo();
    EXPECT_TRUE(program_->WaitFor([] { return GetFileAttributesW(L"C:\\opens\\a.txt") != INVALID_FILE_ATTRIBUTES; }));
    ASSERT_TRUE(program_->WaitIdle());
    DeleteFileW(L"C:\\opens\\a.txt");
    RemoveDirectoryW(L"C:\\opens");
}

TEST_F(DragTest, LocalFilesAreSentToTheRemoteFolderTheyAreDroppedOn) {
    server_->AddFolder("/in");
    folder_->Write("up.txt", "sent by hand");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"in"));
    HTREEITEM root = program_->TreeNext(program_->FindInTree(nullptr, L"Test"), TVGN_CHILD);
    program_->ExpandInTree(root);
    ASSERT_NE(ShowLocalFolder(folder_->Path()), nullptr);
    ASSERT_TRUE(WaitListed(L"up.txt"));
    PickUp(L"up.txt");
    HTREEITEM target = program_->FindInTree(root, L"in");
    CarryTo(OnNode(target));
    EXPECT_TRUE(IsHighlighted(target));
    LetGo();
    EXPECT_TRUE(program_->WaitFor([this] { return server_->Exists("/in/up.txt"); }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(server_->FileBytes("/in/up.txt"), "sent by hand");
}

TEST_F(DragTest, ASiteThatIsNotConnectedTakesNothingAndSaysSo) {
    folder_->Write("up.txt", "x");
    StartProgram();
    ASSERT_NE(ShowLocalFolder(folder_->Path()), nullptr);
    ASSERT_TRUE(WaitListed(L"up.txt"));
    PickUp(L"up.txt");
    CarryTo(OnNode(program_->FindInTree(nullptr, L"Test")));
    LetGo();
    EXPECT_TRUE(AnswerDialog(L"", L"NOT CONNECTED!!", IDOK));
    EXPECT_EQ(server_->Connections(), 0);
}

class LinkTest : public UiTest {};

TEST_F(LinkTest, ALinkToAFolderIsFollowedOnDemandAndOpens) {
    settings_.RESOLVELINKS = 0;
    server_->AddFile("/usr/lib/libc.a", "x");
    server_->SetListing("/",
                        "lrwxrwxrwx   1 root root        7 Feb 14 1999 lib -> usr/lib\r\n"
                        "drwxr-xr-x   5 root root     4096 Feb 14 1999 usr\r\n");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"lib -> usr/lib"));
    program_->FocusPane(program_->List());
    program_->SelectInList(program_->FindInList(L"lib -> usr/lib"));
    program_->Command(IDM_LV_RESOLVE);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->FindInList(L"lib") >= 0; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(program_->ListSelected(), 1);
    // Opening it again lists the folder that it leads to.
    server_->AddFile("/lib/libc.a", "x");
    program_->PressKey(program_->List(), VK_RETURN);
    EXPECT_TRUE(WaitListed(L"libc.a"));
    EXPECT_GE(server_->CountCommands("CWD"), 2);
}

TEST_F(LinkTest, ALinkThatLeadsNowhereIsToldAndStays) {
    settings_.RESOLVELINKS = 0;
    server_->SetListing("/", "lrwxrwxrwx   1 root root        7 Feb 14 1999 gone -> nowhere\r\n");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"gone -> nowhere"));
    program_->FocusPane(program_->List());
    program_->SelectInList(0);
    program_->PressKey(program_->List(), VK_RETURN);
    EXPECT_TRUE(AnswerDialog(L"", L"symbolic link", IDOK));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_GE(program_->FindInList(L"gone -> nowhere"), 0);
}

// The names that another program drops: each ends with a NUL, the list with another one.
std::vector<char> DropOf(const std::vector<std::wstring>& names) {
    std::wstring list;
    for (const std::wstring& name : names) list += name + L'\0';
    list += L'\0';
    DROPFILES header{};
    header.pFiles = sizeof(header);
    header.fWide = TRUE;
    std::vector<char> drop(sizeof(header) + list.size() * sizeof(wchar_t));
    memcpy(drop.data(), &header, sizeof(header));
    memcpy(drop.data() + sizeof(header), list.data(), list.size() * sizeof(wchar_t));
    return drop;
}

class DropTest : public UiTest {
  protected:
    void DropOn(HWND window, const std::vector<std::wstring>& names) {
        const std::vector<char> drop = DropOf(names);
        HANDLE process = OpenProcess(PROCESS_VM_OPERATION | PROCESS_VM_WRITE, FALSE, program_->ProcessId());
        void* block = VirtualAllocEx(process, nullptr, drop.size(), MEM_COMMIT | MEM_RESERVE, PAGE_READWRITE);
        WriteProcessMemory(process, block, drop.data(), drop.size(), nullptr);
        PostMessageW(window, WM_DROPFILES, reinterpret_cast<WPARAM>(block), 0);
        CloseHandle(process);
    }
    static bool PutOnClipboard(const std::vector<std::wstring>& names) {
        const std::vector<char> drop = DropOf(names);
        if (!OpenClipboard(nullptr)) return false;
        EmptyClipboard();
        HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, drop.size());
        memcpy(GlobalLock(memory), drop.data(), drop.size());
        GlobalUnlock(memory);
        const bool put = SetClipboardData(CF_HDROP, memory) != nullptr;
        CloseClipboard();
        return put;
    }
    std::wstring Local(const std::string& name) { return Wide(folder_->PathOf(name)); }
};

TEST_F(DropTest, FilesOfAnotherProgramAreSentIntoTheFolderShown) {
    folder_->Write("one.txt", "1");
    folder_->Write("two.txt", "22");
    server_->AddFile("/there.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"there.txt"));
    DropOn(program_->List(), {Local("one.txt"), Local("two.txt")});
    EXPECT_TRUE(program_->WaitFor([this] { return server_->FileBytes("/two.txt") == "22"; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(server_->FileBytes("/one.txt"), "1");
    EXPECT_GE(program_->FindInList(L"one.txt"), 0);
    EXPECT_GE(program_->FindInList(L"two.txt"), 0);
    EXPECT_EQ(program_->ListCount(), 3);
}

TEST_F(DropTest, FilesDroppedOnAFolderOfTheTreeGoThereAndNotIntoTheList) {
    folder_->Write("one.txt", "1");
    server_->AddFolder("/other");
    server_->AddFile("/there.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"there.txt"));
    program_->ExpandInTree(RootItem());
    const HTREEITEM other = program_->FindInTree(RootItem(), L"other");
    ASSERT_NE(other, nullptr);
    const POINT place = program_->ToScreen(program_->Tree(), program_->TreePlace(other));
    POINT before{};
    GetCursorPos(&before);
    SetCursorPos(place.x, place.y);
    DropOn(program_->Main(), {Local("one.txt")});
    EXPECT_TRUE(program_->WaitFor([this] { return server_->FileBytes("/other/one.txt") == "1"; }));
    SetCursorPos(before.x, before.y);
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(program_->FindInList(L"one.txt"), -1);
    EXPECT_FALSE(server_->Exists("/one.txt"));
}

TEST_F(DropTest, AFileThatIsSentAgainTakesThePlaceOfItsEntry) {
    settings_.SENDUNIQUE = 0;
    folder_->Write("there.txt", "newer");
    server_->AddFile("/there.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"there.txt"));
    DropOn(program_->List(), {Local("there.txt")});
    EXPECT_TRUE(program_->WaitFor([this] { return server_->FileBytes("/there.txt") == "newer"; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(program_->ListCount(), 1);
}

TEST_F(DropTest, WithoutAConnectionTheFilesAreIgnored) {
    folder_->Write("one.txt", "1");
    StartProgram();
    program_->WaitIdle();
    DropOn(program_->Main(), {Local("one.txt")});
    EXPECT_TRUE(AnswerDialog(L"", L"NOT CONNECTED!! Files(s) ignored.", IDOK));
    EXPECT_EQ(server_->Connections(), 0);
}

TEST_F(DropTest, FilesOnTheClipboardArePasted) {
    folder_->Write("one.txt", "1");
    server_->AddFile("/there.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"there.txt"));
    ASSERT_TRUE(PutOnClipboard({Local("one.txt")}));
    program_->Command(IDM_LV_PASTE);
    EXPECT_TRUE(program_->WaitFor([this] { return server_->FileBytes("/one.txt") == "1"; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_GE(program_->FindInList(L"one.txt"), 0);
}

}  // namespace
