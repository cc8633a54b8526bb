// Receiving files: where they arrive, what is asked, and that nothing is lost.
#include "resources/resource.h"
#include "ui/ui_fixture.h"

#include "platform/files.h"

namespace {

constexpr int kYesToAll = 1249;

class ReceiveTest : public UiTest {
  protected:
    void PutLocalFile(const std::string& name, const std::string& bytes) { folder_->Write(name, bytes); }
    void SelectAndReceive(const std::wstring& name) {
        program_->SelectInList(program_->FindInList(name));
        ReceiveSelected();
    }
};

TEST_F(ReceiveTest, OneFileArrivesByteForByte) {
    std::string bytes;
    for (int i = 0; i < 100000; ++i) bytes += static_cast<char>(i * 7);
    server_->AddFile("/data.bin", bytes);
    StartConnected();
    ASSERT_TRUE(WaitListed(L"data.bin"));
    SelectAndReceive(L"data.bin");
    ASSERT_TRUE(program_->WaitFor([this] { return server_->CountCommands("RETR") == 1; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalBytes("data.bin"), bytes);
    EXPECT_EQ(LocalFileCount(), 1u);
}

TEST_F(ReceiveTest, AnExistingFileIsAskedForAndNoKeepsIt) {
    server_->AddFile("/a.txt", "from the server");
    PutLocalFile("a.txt", "mine");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a.txt"));
    SelectAndReceive(L"a.txt");
    EXPECT_TRUE(AnswerDialog(L"Confirm File Replace", L"This folder already contains a file called 'a.txt'.", IDNO));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalBytes("a.txt"), "mine");
    EXPECT_EQ(LocalFileCount(), 1u);
}

TEST_F(ReceiveTest, YesToAllReplacesTheFollowingOnesWithoutAsking) {
    for (const char* name : {"a.txt", "b.txt", "c.txt"}) {
        server_->AddFile(std::string("/") + name, std::string("new ") + name);
        PutLocalFile(name, "old");
    }
    StartConnected();
    ASSERT_TRUE(WaitListed(L"c.txt"));
    program_->Command(IDM_SELECTALL);
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ListSelected() == 3; }));
    ReceiveSelected();
    EXPECT_TRUE(AnswerDialog(L"Confirm File Replace", L"a.txt", kYesToAll));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalBytes("a.txt"), "new a.txt");
    EXPECT_EQ(LocalBytes("c.txt"), "new c.txt");
}

TEST_F(ReceiveTest, AFailedTransferNeverCostsTheFileThatWasThere) {
    server_->AddFile("/a.txt", "from the server");
    PutLocalFile("a.txt", "mine");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"a.txt"));
    server_->Once("RETR", {Say("150 coming\r\n"), OpenData(), DataBytes("from th"), ResetData(), Say("426 lost\r\n")});
    SelectAndReceive(L"a.txt");
    EXPECT_TRUE(AnswerDialog(L"Confirm File Replace", L"a.txt", IDYES));
    EXPECT_TRUE(AnswerDialog(L"Zarn Transfer Error", L"", IDIGNORE));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalBytes("a.txt"), "mine");
    EXPECT_EQ(LocalFileCount(), 1u);
}

TEST_F(ReceiveTest, AFileRefusedWith550IsToldAndTheOthersGoOn) {
    server_->AddFile("/no.txt", "x");
    server_->AddFile("/yes.txt", "y");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"yes.txt"));
    server_->Once("RETR", {Say("550 no.txt: Permission denied\r\n")});
    program_->Command(IDM_SELECTALL);
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ListSelected() == 2; }));
    ReceiveSelected();
    EXPECT_TRUE(AnswerDialog(L"Zarn Transfer Error", L"Permission denied", IDIGNORE));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalFileCount(), 1u);
}

TEST_F(ReceiveTest, HostileNamesStayInsideTheChosenFolder) {
    const std::string listing =
        "-rw-r--r-- 1 ftp ftp 4 Dec 31 1999 ..\\..\\x\r\n"
        "-rw-r--r-- 1 ftp ftp 4 Dec 31 1999 C:x\r\n"
        "-rw-r--r-- 1 ftp ftp 4 Dec 31 1999 a:b\r\n"
        "-rw-r--r-- 1 ftp ftp 4 Dec 31 1999 %n%s\r\n"
        "-rw-r--r-- 1 ftp ftp 4 Dec 31 1999 com1.txt\r\n"
        "-rw-r--r-- 1 ftp ftp 4 Dec 31 1999 " +
        std::string(300, 'n') + ".txt\r\n";
    server_->SetListing("/", listing);
    server_->On("RETR", {Say("150 coming\r\n"), OpenData(), DataBytes("data"), CloseData(), Say("226 done\r\n")});
    StartConnected();
    ASSERT_TRUE(WaitListed(L"%n%s"));
    ASSERT_EQ(program_->ListCount(), 6);
    program_->Command(IDM_SELECTALL);
    ASSERT_TRUE(program_->WaitFor([this] { return program_->ListSelected() == 6; }));
    ReceiveSelected();
    ASSERT_TRUE(program_->WaitFor([this] { return server_->CountCommands("RETR") == 6; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalFileCount(), 6u);
    EXPECT_EQ(LocalBytes("%n%s"), "data");
    platform::FileInfo info;
    EXPECT_FALSE(platform::GetFileInfo(folder_->PathOf("../../x").c_str(), info));
}

TEST_F(ReceiveTest, AReservedNameIsRefusedWithOnlyAnOkButton) {
    server_->SetListing("/", "-rw-r--r-- 1 ftp ftp 4 Dec 31 1999 con.txt\r\n");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"con.txt"));
    SelectAndReceive(L"con.txt");
    EXPECT_TRUE(AnswerDialog(L"Zarn Transfer Error", L"are reserved", IDOK));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(server_->CountCommands("RETR"), 0);
    EXPECT_EQ(LocalFileCount(), 0u);
}

TEST_F(ReceiveTest, AbortInTheMiddleLeavesNothingAndTheConnectionUsable) {
    server_->AddFile("/big.bin", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"big.bin"));
    server_->Once("RETR", {Say("150 coming\r\n"), OpenData(), DataBytes(std::string(50000, 'x')), WaitDataClosed(),
                           Say("426 aborted\r\n")});
    SelectAndReceive(L"big.bin");
    ASSERT_TRUE(program_->WaitFor([this] { return server_->CountCommands("RETR") == 1; }));
    HWND dialog = nullptr;
    ASSERT_TRUE(program_->WaitFor([&] { return (dialog = program_->Dialog(L"Tessmir File Transfers")) != nullptr; }));
    Picture("receive-progress");
    Program::PressButton(dialog, 1029);
    ASSERT_TRUE(program_->WaitFor([&] { return !IsWindow(dialog); }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalFileCount(), 0u);
    SelectAndReceive(L"big.bin");
    ASSERT_TRUE(program_->WaitFor([this] { return LocalFileCount() == 1u; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalBytes("big.bin"), "x");
}

TEST_F(ReceiveTest, TheWindowAnswersWhileATransferHangs) {
    server_->AddFile("/slow.bin", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"slow.bin"));
    server_->Once("RETR", {Say("150 coming\r\n"), OpenData(), Stall()});
    SelectAndReceive(L"slow.bin");
    ASSERT_TRUE(program_->WaitFor([this] { return server_->CountCommands("RETR") == 1; }));
    for (int i = 0; i < 20; ++i) {
        DWORD_PTR result = 0;
        EXPECT_NE(SendMessageTimeoutW(program_->Main(), WM_NULL, 0, 0, SMTO_ABORTIFHUNG, 500, &result), 0);
    }
}

TEST_F(ReceiveTest, ExitWhileATransferRunsEndsTheProgramInOrder) {
    server_->AddFile("/slow.bin", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"slow.bin"));
    server_->Once("RETR", {Say("150 coming\r\n"), OpenData(), DataBytes("half"), Stall()});
    SelectAndReceive(L"slow.bin");
    ASSERT_TRUE(program_->WaitFor([this] { return server_->CountCommands("RETR") == 1; }));
    EXPECT_TRUE(program_->Close());
    EXPECT_EQ(LocalFileCount(), 0u);
}

TEST_F(ReceiveTest, ASelectedFolderIsReceivedWithAllBelowIt) {
    server_->AddFile("/pub/a.txt", "A");
    server_->AddFile("/pub/sub/b.txt", "B");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"pub"));
    SelectAndReceive(L"pub");
    ASSERT_TRUE(program_->WaitFor([this] { return server_->CountCommands("RETR") == 2; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalBytes("pub/a.txt"), "A");
    EXPECT_EQ(LocalBytes("pub/sub/b.txt"), "B");
}

}  // namespace
