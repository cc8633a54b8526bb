// Walking through a server's folders in the tree and the list, by mouse and by keys.
#include "resources/resource.h"
#include "ui/ui_fixture.h"

namespace {

class BrowseTest : public UiTest {};

TEST_F(BrowseTest, SelectingAFolderInTheTreeListsItAndTitlesIt) {
    server_->AddFile("/pub/inner.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"pub"));
    ASSERT_NE(EnterFolder(L"pub"), nullptr);
    EXPECT_TRUE(WaitListed(L"inner.txt"));
    EXPECT_EQ(program_->Title(), L"Zarn Test::/pub");
}

TEST_F(BrowseTest, HoldingTheDownArrowThroughTenFoldersChangesTheDirectoryOnce) {
    for (int i = 0; i < 10; ++i) server_->AddFile("/d" + std::to_string(i) + "/f" + std::to_string(i), "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"d9"));
    HTREEITEM root = program_->TreeNext(program_->FindInTree(nullptr, L"Test"), TVGN_CHILD);
    program_->ExpandInTree(root);
    server_->ForgetCommands();
    program_->FocusPane(program_->Tree());
    for (int i = 0; i < 10; ++i) program_->PressKey(program_->Tree(), VK_DOWN);
    EXPECT_TRUE(WaitListed(L"f9"));
    EXPECT_EQ(server_->CountCommands("CWD"), 1);
    EXPECT_EQ(program_->Title(), L"Zarn Test::/d9");
}

TEST_F(BrowseTest, AFailedChangeOfDirectorySelectsThePreviousNodeAgain) {
    server_->AddFolder("/open");
    server_->AddFolder("/closed");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"closed"));
    HTREEITEM root = program_->TreeNext(program_->FindInTree(nullptr, L"Test"), TVGN_CHILD);
    server_->Once("CWD", {Say("550 closed: Permission denied\r\n")});
    ASSERT_NE(EnterFolder(L"closed"), nullptr);
    EXPECT_TRUE(AnswerDialog(L"Ftp Port Command Failure", L"550", IDOK));
    EXPECT_TRUE(program_->WaitFor([&] { return program_->TreeSelected() == root; }));
    EXPECT_TRUE(program_->WaitIdle());
    EXPECT_EQ(program_->Title(), L"Zarn Test::/");
    ASSERT_NE(EnterFolder(L"open"), nullptr);
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Title() == L"Zarn Test::/open"; }));
}

TEST_F(BrowseTest, EnterOnAFolderInTheListOpensIt) {
    server_->AddFile("/pub/inner.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"pub"));
    program_->FocusPane(program_->List());
    program_->SelectInList(program_->FindInList(L"pub"));
    program_->PressKey(program_->List(), VK_RETURN);
    EXPECT_TRUE(WaitListed(L"inner.txt"));
}

TEST_F(BrowseTest, TabAndBackspaceMoveTheFocusBetweenThePanes) {
    StartConnected();
    const auto focusIs = [this](HWND pane) {
        return program_->WaitFor([&] {
            GUITHREADINFO info{};
            info.cbSize = sizeof(info);
            GetGUIThreadInfo(GetWindowThreadProcessId(program_->Main(), nullptr), &info);
            return info.hwndFocus == pane;
        });
    };
    program_->FocusPane(program_->Tree());
    ASSERT_TRUE(focusIs(program_->Tree()));
    program_->PressKey(program_->Tree(), VK_TAB);
    EXPECT_TRUE(focusIs(program_->List()));
    program_->PressKey(program_->List(), VK_BACK);
    EXPECT_TRUE(focusIs(program_->Tree()));
}

TEST_F(BrowseTest, RefreshShowsWhatIsNewOnTheServer) {
    server_->AddFile("/old.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"old.txt"));
    server_->AddFile("/new.txt", "x");
    program_->Command(IDM_TV_REFRESH);
    EXPECT_TRUE(WaitListed(L"new.txt"));
}

TEST_F(BrowseTest, LinesThatParseAsNothingAreCountedOnTheConsole) {
    server_->SetListing("/",
                        "-rw-r--r-- 1 ftp ftp 1024 Dec 31 1999 old.txt\r\nnonsense\r\ncrw-rw-rw- 1 root sys 4, 0 Jan "
                        "1 12:00 tty0\r\n");
    StartConnected();
    EXPECT_TRUE(WaitListed(L"old.txt"));
    EXPECT_EQ(program_->ListCount(), 1);
    EXPECT_TRUE(ConsoleHas(L"2 lines of the listing could not be read."));
}

TEST_F(BrowseTest, AnOperationAfterAPauseFirstSendsNoopAndALostServerIsToldAndDisconnected) {
    server_->AddFile("/pub/inner.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"pub"));
    server_->On("NOOP", {CloseControl()});
    server_->On("CWD", {CloseControl()});
    ASSERT_NE(EnterFolder(L"pub"), nullptr);
    EXPECT_TRUE(AnswerDialog(L"", L"aborted your connection", IDOK));
    EXPECT_TRUE(
        program_->WaitFor([this] { return program_->ToolbarEnabled(IDM_CONNECT) || program_->Dialog() != nullptr; }));
}

}  // namespace
