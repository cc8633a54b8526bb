// Changing a server's files and folders from list and tree: new folders, renaming in place, deleting.
#include "resources/resource.h"
#include "ui/ui_fixture.h"

namespace {

class ChangeTest : public UiTest {
  protected:
    void SelectForChange(const std::wstring& name) {
        program_->FocusPane(program_->List());
        program_->SelectInList(program_->FindInList(name));
        ASSERT_TRUE(program_->WaitFor([this] { return program_->ToolbarEnabled(IDM_DELETE); }));
    }
};

TEST_F(ChangeTest, RenamingAnEntryRenamesItOnTheServer) {
    server_->AddFile("/old.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"old.txt"));
    SelectForChange(L"old.txt");
    program_->Command(IDM_RENAME);
    TypeLabel(program_->List(), L"Grüße.txt");
    EXPECT_TRUE(program_->WaitFor([this] { return program_->FindInList(L"Grüße.txt") >= 0; }));
    EXPECT_TRUE(server_->Exists("/Grüße.txt"));
    EXPECT_FALSE(server_->Exists("/old.txt"));
}

TEST_F(ChangeTest, RenamingAnEntryToItsOwnNameSendsNothing) {
    server_->AddFile("/same.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"same.txt"));
    SelectForChange(L"same.txt");
    server_->ForgetCommands();
    program_->Command(IDM_RENAME);
    TypeLabel(program_->List(), L"same.txt");
    EXPECT_EQ(server_->CountCommands("RNFR"), 0);
    EXPECT_GE(program_->FindInList(L"same.txt"), 0);
}

TEST_F(ChangeTest, ARefusedRenameIsToldAndKeepsTheOldName) {
    server_->AddFile("/old.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"old.txt"));
    SelectForChange(L"old.txt");
    server_->Once("RNFR", {Say("550 old.txt: Permission denied\r\n")});
    program_->Command(IDM_RENAME);
    HWND edit = WaitLabelEdit(program_->List());
    ASSERT_NE(edit, nullptr);
    SendMessageW(edit, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"new.txt"));
    program_->PressKey(edit, VK_RETURN);
    EXPECT_TRUE(AnswerDialog(L"Ftp Port Command Failure", L"Permission denied", IDOK));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_GE(program_->FindInList(L"old.txt"), 0);
    EXPECT_EQ(server_->CountCommands("RNTO"), 0);
}

TEST_F(ChangeTest, ANewFolderIsNamedInPlaceAndMadeOnTheServer) {
    server_->AddFile("/a.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a.txt"));
    program_->Command(IDM_NEWFOLDER);
    HWND edit = WaitLabelEdit(program_->List());
    ASSERT_NE(edit, nullptr);
    EXPECT_EQ(Program::TextOf(edit), L"New_Folder");
    TypeLabel(program_->List(), L"fresh");
    EXPECT_TRUE(program_->WaitFor([this] { return program_->FindInList(L"fresh") >= 0; }));
    EXPECT_TRUE(server_->Exists("/fresh"));
    HTREEITEM root = program_->TreeNext(program_->FindInTree(nullptr, L"Test"), TVGN_CHILD);
    program_->ExpandInTree(root);
    EXPECT_NE(program_->FindInTree(root, L"fresh"), nullptr);
}

TEST_F(ChangeTest, ANewFolderLeftWithItsFirstNameDisappears) {
    server_->AddFile("/a.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a.txt"));
    server_->ForgetCommands();
    program_->Command(IDM_NEWFOLDER);
    TypeLabel(program_->List(), L"New_Folder");
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ListCount() == 1; }));
    EXPECT_EQ(server_->CountCommands("MKD"), 0);
}

TEST_F(ChangeTest, ThreeSelectedFilesAreDeletedOneByOne) {
    for (const char* name : {"/a", "/b", "/c", "/keep"}) server_->AddFile(name, "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"keep"));
    SelectForChange(L"a");
    program_->SelectInList(program_->FindInList(L"b"), true);
    program_->SelectInList(program_->FindInList(L"c"), true);
    program_->Command(IDM_DELETE);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ListCount() == 1; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(server_->CountCommands("DELE"), 3);
    EXPECT_TRUE(server_->Exists("/keep"));
    EXPECT_EQ(program_->ListSelected(), 1);
}

TEST_F(ChangeTest, ARefusedSecondDeletionStopsWithTheFirstAlreadyGone) {
    for (const char* name : {"/a", "/b", "/c"}) server_->AddFile(name, "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"c"));
    program_->Command(IDM_SELECTALL);
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ListSelected() == 3; }));
    server_->Once("DELE", {Answer()});
    server_->Once("DELE", {Say("550 b: Permission denied\r\n")});
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ToolbarEnabled(IDM_DELETE); }));
    program_->Command(IDM_DELETE);
    EXPECT_TRUE(AnswerDialog(L"Ftp Port Command Failure", L"Permission denied", IDOK));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(program_->ListCount(), 2);
    EXPECT_FALSE(server_->Exists("/a"));
    EXPECT_TRUE(server_->Exists("/c"));
}

TEST_F(ChangeTest, AFolderIsDeletedWithRmd) {
    server_->AddFolder("/empty");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"empty"));
    SelectForChange(L"empty");
    program_->Command(IDM_DELETE);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->ListCount() == 0; }));
    EXPECT_FALSE(server_->Exists("/empty"));
}

TEST_F(ChangeTest, ASiteIsDeletedOnlyAfterAQuestion) {
    StartProgram();
    program_->FocusPane(program_->Tree());
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ToolbarEnabled(IDM_DELETE); }));
    program_->Command(IDM_DELETE);
    EXPECT_TRUE(AnswerDialog(L"", L"Do you want to delete the site 'Test'", IDNO));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_NE(program_->FindInTree(nullptr, L"Test"), nullptr);
    program_->Command(IDM_DELETE);
    EXPECT_TRUE(AnswerDialog(L"", L"Do you want to delete the site 'Test'", IDYES));
    EXPECT_TRUE(program_->WaitFor([this] { return program_->FindInTree(nullptr, L"Test") == nullptr; }));
}

TEST_F(ChangeTest, ASiteIsRenamedInTheTree) {
    StartProgram();
    program_->FocusPane(program_->Tree());
    program_->Command(IDM_RENAME);
    TypeLabel(program_->Tree(), L"Renamed");
    EXPECT_TRUE(program_->WaitFor([this] { return program_->FindInTree(nullptr, L"Renamed") != nullptr; }));
    EXPECT_EQ(program_->FindInTree(nullptr, L"Test"), nullptr);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Title() == L"Zarn Renamed"; }));
}

}  // namespace
