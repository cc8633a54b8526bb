// Misbehaving servers: each ends in a clear message, and the program can be used afterwards.
#include "resources/resource.h"
#include "ui/ui_fixture.h"

#include "config/store_key.h"
#include "platform/registry.h"
#include "platform/sockets.h"

namespace {

class BadServerTest : public UiTest {
  protected:
    // After a failure the site connects again as soon as the server behaves.
    void ExpectUsableAfterwards() {
        ASSERT_TRUE(program_->WaitIdle());
        Connect();
        EXPECT_TRUE(program_->WaitFor([this] { return program_->Title() == L"Zarn Test::/"; }));
    }
};

TEST_F(BadServerTest, WrongPasswordIsToldAndTheSiteCanBeTriedAgain) {
    server_->Once("PASS", {Say("530 Login incorrect.\r\n")});
    StartProgram();
    Connect();
    EXPECT_TRUE(AnswerDialog(L"", L"Connection failed", IDOK));
    EXPECT_TRUE(ConsoleHas(L"530 Login incorrect."));
    EXPECT_TRUE(ConsoleHas(L"logon failure, so quitting"));
    ExpectUsableAfterwards();
}

TEST_F(BadServerTest, UnknownHostIsTold) {
    host_ = "no-such-host.invalid";
    StartProgram();
    Connect();
    EXPECT_TRUE(AnswerDialog(L"", L"Connection failed", IDOK));
    EXPECT_TRUE(ConsoleHas(L"cannot get \"no-such-host.invalid\" host entry"));
    EXPECT_TRUE(program_->WaitIdle());
}

TEST_F(BadServerTest, ClosedPortIsTold) {
    platform::Socket probe = platform::CreateSocket(platform::SocketKind::Stream);
    ASSERT_TRUE(platform::BindLoopback(probe, 0));
    platform::Endpoint place;
    ASSERT_TRUE(platform::GetLocalEndpoint(probe, place));
    platform::CloseSocket(probe);
    port_ = place.port;
    StartProgram();
    Connect();
    EXPECT_TRUE(AnswerDialog(L"", L"Connection failed", IDOK));
    EXPECT_TRUE(ConsoleHas(L"Cannot connect to 127.0.0.1"));
    EXPECT_TRUE(program_->WaitIdle());
}

TEST_F(BadServerTest, AServerThatSaysNothingEndsWithTheTimeOut) {
    portInfo_.timeout = 2;
    server_->Once(kWelcome, {Stall()});
    StartProgram();
    Connect();
    EXPECT_TRUE(ConsoleHas(L"Timer cancelled a blocking call"));
    EXPECT_TRUE(AnswerDialog(L"", L"Connection failed", IDOK));
    ExpectUsableAfterwards();
}

TEST_F(BadServerTest, AServerThatHangsUpAfterTheWelcomeIsTold) {
    server_->Once("USER", {CloseControl()});
    StartProgram();
    Connect();
    EXPECT_TRUE(AnswerDialog(L"", L"Connection failed", IDOK));
    ExpectUsableAfterwards();
}

TEST_F(BadServerTest, GarbageInsteadOfAWelcomeIsTold) {
    server_->Once(kWelcome, {Say("SSH-2.0-whatever\r\n"), Stall()});
    StartProgram();
    Connect();
    EXPECT_TRUE(AnswerDialog(L"", L"Connection failed", IDOK));
    EXPECT_TRUE(ConsoleHas(L"Unknown open msg"));
    ExpectUsableAfterwards();
}

TEST_F(BadServerTest, AWelcomeOfAHundredKilobytesInOneLineIsToldAndTheNextOneWorks) {
    server_->Once(kWelcome, {Say("220 " + std::string(100 * 1024, 'w') + "\r\n")});
    StartProgram();
    Connect();
    EXPECT_TRUE(AnswerDialog(L"", L"Connection failed", IDOK));
    EXPECT_TRUE(ConsoleHas(L"The reply is longer than"));
    ExpectUsableAfterwards();
}

TEST_F(BadServerTest, AReplyOfAHundredKilobytesInOneLineLeavesTheConnectionInStep) {
    server_->AddFile("/pub/a.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"pub"));
    server_->Once("TYPE", {Say("200 " + std::string(100 * 1024, 't') + "\r\n")});
    program_->SelectInList(program_->FindInList(L"pub"));
    ReceiveSelected();
    ASSERT_TRUE(program_->WaitFor([this] { return server_->CountCommands("RETR") == 1; }));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_EQ(LocalBytes("pub/a.txt"), "x");
}

TEST_F(BadServerTest, AListingCutOffInTheMiddleIsToldAndTheNextOneWorks) {
    server_->AddFile("/pub/a.txt", "x");
    StartConnected();
    ASSERT_TRUE(WaitListed(L"pub"));
    server_->Once("LIST", {Say("150 here\r\n"), OpenData(), DataBytes("-rw-r--r-- 1 ftp ftp 1024 Dec 31 1999 half"),
                           ResetData(), Say("426 lost\r\n")});
    ASSERT_NE(EnterFolder(L"pub"), nullptr);
    EXPECT_TRUE(AnswerDialog(L"Ftp Port Command Failure", L"426", IDOK));
    ASSERT_TRUE(program_->WaitIdle());
    EXPECT_LT(program_->FindInList(L"half"), 0);
    ASSERT_NE(EnterFolder(L"pub"), nullptr);
    EXPECT_TRUE(WaitListed(L"a.txt"));
}

TEST_F(BadServerTest, EscapeStopsAConnectionThatHangs) {
    server_->Once(kWelcome, {Stall()});
    StartProgram();
    Connect();
    ASSERT_TRUE(program_->WaitFor([this] { return server_->Connections() == 1; }));
    program_->PressKey(program_->Tree(), VK_ESCAPE);
    EXPECT_TRUE(ConsoleHas(L"Aborting Remote thread"));
    EXPECT_TRUE(ConsoleHas(L"Remote Connect Aborted"));
    program_->WaitFor([this] { return program_->Dialog() != nullptr || program_->ToolbarEnabled(IDM_CONNECT); });
    if (HWND dialog = program_->Dialog()) Program::PressButton(dialog, IDOK);
    ExpectUsableAfterwards();
}

TEST_F(BadServerTest, DamagedRegistryValuesFallBackToDefaults) {
    {
        bool created = false;
        auto defaults =
            platform::RegistryKey::Create(platform::RegistryRoot::CurrentUser, StoreKeyPath("Defaults"), &created);
        defaults.WriteText("nSplit", "not a number");
        defaults.WriteText("xPos", std::string(3000, 'x'));
        defaults.WriteNumber("MAILADDR", 7);
        auto site =
            platform::RegistryKey::Create(platform::RegistryRoot::CurrentUser, StoreKeyPath("Damaged"), &created);
        site.WriteNumber("HOST", 1);
        site.WriteText("TYPE", "Unix");
        site.WriteText("UID", std::string(500, 'u'));
        site.WriteText("PWD", "zz");
        site.WriteNumber("DIR", 3);
    }
    program_ = std::make_unique<Program>();
    ASSERT_TRUE(program_->Start());
    EXPECT_TRUE(program_->WaitFor([this] { return program_->FindInTree(nullptr, L"Damaged") != nullptr; }));
    program_->SelectInTree(program_->FindInTree(nullptr, L"Damaged"));
    EXPECT_TRUE(program_->WaitFor([this] { return program_->Title() == L"Zarn Damaged"; }));
}

}  // namespace
