// The local computer in the tree: drives, folders, what they list, and renaming, making and deleting there.
#include "ui/ui_fixture.h"

#include "resources/resource.h"

namespace {

class LocalComputerTest : public UiTest {
  protected:
    static constexpr wchar_t kName[] = L"zarn-local-test";

    void SetUp() override {
        UiTest::SetUp();
        if (IsSkipped()) return;
        RemoveAll();
        CreateDirectoryW(Path(L"").c_str(), nullptr);
        CreateDirectoryW(Path(L"sub").c_str(), nullptr);
        WriteFileAt(L"sub\\inner.txt", "inner");
        WriteFileAt(L"file.txt", std::string(3000, 'f'));
        WriteFileAt(L"Grüße.txt", "x");
    }
    void TearDown() override {
        UiTest::TearDown();
        RemoveAll();
    }
    static std::wstring Path(const std::wstring& name) {
        return std::wstring(L"C:\\") + kName + (name.empty() ? L"" : L"\\" + name);
    }
    static bool ExistsAt(const std::wstring& name) {
        return GetFileAttributesW(Path(name).c_str()) != INVALID_FILE_ATTRIBUTES;
    }
    static void WriteFileAt(const std::wstring& name, const std::string& bytes) {
        HANDLE file =
            CreateFileW(Path(name).c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
        DWORD written = 0;
        WriteFile(file, bytes.data(), static_cast<DWORD>(bytes.size()), &written, nullptr);
        CloseHandle(file);
    }
    static void RemoveAll() {
        for (const wchar_t* folder : {L"sub", L"", L"fresh", L"renamed"}) {
            const std::wstring base = Path(folder);
            WIN32_FIND_DATAW found{};
            HANDLE search = FindFirstFileW((base + L"\\*").c_str(), &found);
            if (search == INVALID_HANDLE_VALUE) continue;
            do {
                const std::wstring name = base + L"\\" + found.cFileName;
                if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0) DeleteFileW(name.c_str());
            } while (FindNextFileW(search, &found));
            FindClose(search);
        }
        for (const wchar_t* folder : {L"sub", L"fresh", L"renamed", L""}) RemoveDirectoryW(Path(folder).c_str());
    }
    HTREEITEM Computer() {
        HTREEITEM node = program_->TreeNext(nullptr, TVGN_ROOT);
        while (HTREEITEM next = program_->TreeNext(node, TVGN_NEXT)) node = next;
        return node;
    }
    // A node below another one, which is opened for it.
    HTREEITEM Below(HTREEITEM parent, const std::wstring& name) {
        HTREEITEM child = nullptr;
        program_->ExpandInTree(parent);
        program_->WaitFor([&] { return (child = program_->FindInTree(parent, name)) != nullptr; });
        program_->WaitIdle();
        return child;
    }
    HTREEITEM TestFolder() { return Below(Below(Computer(), L"C:\\"), kName); }
    void Enter() {
        StartProgram();
        HTREEITEM folder = TestFolder();
        ASSERT_NE(folder, nullptr);
        program_->FocusPane(program_->Tree());
        program_->SelectInTree(folder);
        program_->PressKey(program_->Tree(), VK_RETURN);
        ASSERT_TRUE(WaitListed(L"file.txt"));
        ASSERT_TRUE(program_->WaitFor([this] { return program_->ListCount() == 3; }));
    }
};

TEST_F(LocalComputerTest, ItsNodeOpensIntoTheDrivesAndListsThem) {
    StartProgram();
    EXPECT_NE(Below(Computer(), L"C:\\"), nullptr);
    program_->FocusPane(program_->Tree());
    program_->SelectInTree(Computer());
    program_->PressKey(program_->Tree(), VK_RETURN);
    EXPECT_TRUE(WaitListed(L"C:\\"));
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Title().starts_with(L"Zarn : "); }));
}

TEST_F(LocalComputerTest, AFolderListsItsFilesAndFoldersAndBecomesTheLocalFolder) {
    Enter();
    EXPECT_GE(program_->FindInList(L"sub"), 0);
    EXPECT_GE(program_->FindInList(L"Grüße.txt"), 0);
    EXPECT_EQ(program_->ListText(program_->FindInList(L"file.txt"), 2), L"2KB");
    EXPECT_TRUE(program_->WaitFor([this] { return program_->StatusPart(5) == Path(L""); }));
    EXPECT_EQ(program_->Title(), L"Zarnish Ftp");
}

TEST_F(LocalComputerTest, AFolderOfTheListIsOpenedByEnter) {
    Enter();
    SelectEntries({L"sub"});
    program_->PressKey(program_->List(), VK_RETURN);
    EXPECT_TRUE(WaitListed(L"inner.txt"));
    EXPECT_EQ(program_->TreeText(program_->TreeSelected()), L"sub");
}

TEST_F(LocalComputerTest, EnterOnALocalFileDoesNothing) {
    Enter();
    SelectEntries({L"file.txt"});
    program_->PressKey(program_->List(), VK_RETURN);
    ASSERT_TRUE(Settle());
    EXPECT_EQ(program_->Dialog(), nullptr);
    EXPECT_TRUE(program_->WaitIdle());
    EXPECT_EQ(program_->ListCount(), 3);
}

TEST_F(LocalComputerTest, AFileIsRenamedOnTheDisk) {
    Enter();
    SelectEntries({L"file.txt"});
    program_->Command(IDM_RENAME);
    TypeLabel(program_->List(), L"other.txt");
    EXPECT_TRUE(program_->WaitFor([this] { return program_->FindInList(L"other.txt") >= 0; }));
    EXPECT_TRUE(ExistsAt(L"other.txt"));
    EXPECT_FALSE(ExistsAt(L"file.txt"));
}

TEST_F(LocalComputerTest, AFileIsNotRenamedOntoAnother) {
    Enter();
    SelectEntries({L"file.txt"});
    program_->Command(IDM_RENAME);
    HWND edit = WaitLabelEdit(program_->List());
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"Grüße.txt"));
    program_->PressKey(edit, VK_RETURN);
    EXPECT_TRUE(AnswerDialog(L"", L"", IDOK));
    EXPECT_TRUE(program_->WaitIdle());
    EXPECT_GE(program_->FindInList(L"file.txt"), 0);
    EXPECT_TRUE(ExistsAt(L"file.txt"));
    EXPECT_TRUE(ExistsAt(L"Grüße.txt"));
}

TEST_F(LocalComputerTest, AFolderIsRenamedInTheTree) {
    Enter();
    HTREEITEM sub = Below(program_->TreeSelected(), L"sub");
    ASSERT_NE(sub, nullptr);
    program_->FocusPane(program_->Tree());
    program_->SelectInTree(sub);
    program_->PressKey(program_->Tree(), VK_RETURN);
    ASSERT_TRUE(WaitListed(L"inner.txt"));
    program_->Command(IDM_RENAME);
    TypeLabel(program_->Tree(), L"renamed");
    EXPECT_TRUE(program_->WaitFor([] { return ExistsAt(L"renamed\\inner.txt"); }));
    EXPECT_FALSE(ExistsAt(L"sub"));
    EXPECT_TRUE(program_->WaitFor([&] { return program_->TreeText(sub) == L"renamed"; }));
}

TEST_F(LocalComputerTest, ANewFolderIsMadeOnTheDisk) {
    Enter();
    program_->Command(IDM_NEWFOLDER);
    TypeLabel(program_->List(), L"fresh");
    EXPECT_TRUE(program_->WaitFor([] { return ExistsAt(L"fresh"); }));
    EXPECT_TRUE(program_->WaitFor([this] { return program_->FindInList(L"fresh") >= 0; }));
    EXPECT_NE(Below(program_->TreeSelected(), L"fresh"), nullptr);
}

TEST_F(LocalComputerTest, AFileIsDeletedFromTheDisk) {
    Enter();
    SelectEntries({L"file.txt"});
    program_->Command(IDM_LV_DELETE);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ListCount() == 2; }));
    EXPECT_TRUE(program_->WaitIdle());
    EXPECT_FALSE(ExistsAt(L"file.txt"));
    EXPECT_TRUE(ExistsAt(L"Grüße.txt"));
}

TEST_F(LocalComputerTest, AReceivedFileGoesToTheFolderThatIsShown) {
    server_->AddFile("/remote.txt", "from the server");
    Enter();
    program_->SelectInTree(SiteItem());
    ASSERT_TRUE(WaitTitle(L"Zarn Test"));
    ASSERT_TRUE(program_->WaitIdle());
    Connect();
    ASSERT_TRUE(WaitListed(L"remote.txt"));
    SelectEntries({L"remote.txt"});
    ReceiveSelected();
    EXPECT_TRUE(program_->WaitFor([] { return ExistsAt(L"remote.txt"); }));
    EXPECT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalFileCount(), 0u);
}

TEST_F(LocalComputerTest, AFolderThatIsGoneIsToldAndThePreviousNodeIsSelectedAgain) {
    Enter();
    HTREEITEM folder = program_->TreeSelected();
    HTREEITEM sub = Below(folder, L"sub");
    ASSERT_NE(sub, nullptr);
    DeleteFileW(Path(L"sub\\inner.txt").c_str());
    ASSERT_TRUE(RemoveDirectoryW(Path(L"sub").c_str()));
    program_->SelectInTree(sub);
    program_->PressKey(program_->Tree(), VK_RETURN);
    EXPECT_TRUE(AnswerDialog(L"", L"Unable to open the local folder", IDOK));
    EXPECT_TRUE(program_->WaitFor([&] { return program_->TreeSelected() == folder; }));
    EXPECT_TRUE(program_->WaitIdle());
}

}  // namespace
