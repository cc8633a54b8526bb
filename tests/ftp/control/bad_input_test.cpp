// Servers that do not behave: each ends with a clear message, and the program connects again afterwards.
#include <gtest/gtest.h>

#include "ftp/control/keep_alive.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/login/connect_command.h"
#include "ftp/worker/session_state.h"
#include "platform/sockets.h"
#include "support/session_harness.h"

namespace {

// After the failure: the flags are clear, nothing is open, and a good server is still reached.
void ExpectUsableAfterwards(SessionHarness& h, Site* site) {
    EXPECT_FALSE(OperationRunning());
    EXPECT_FALSE(HasControlSocket(site));
    EXPECT_EQ(site->bConnected, 0);
    gZarn.port.ftpPort = h.server.Port();
    h.server.Forget(kWelcome);
    h.server.Forget("USER");
    h.server.SetPassword("");
    site->pszHost = OwnedText::Copy("127.0.0.1");
    SetTransferAbort(false);
    Zarn_IdmConnect(site);
    EXPECT_NE(site->bConnected, 0);
}

// The text of the one box that showed the failure.
std::string BoxText(const SessionHarness& h) {
    const auto boxes = h.console.Boxes();
    return boxes.size() == 1 ? boxes[0].text : "(" + std::to_string(boxes.size()) + " boxes)";
}

TEST(BadInput, UnknownHost) {
    SessionHarness h;
    Site* site = h.MakeSite("no-such-host.invalid");
    Zarn_IdmConnect(site);
    EXPECT_TRUE(h.console.HasLine("cannot get \"no-such-host.invalid\" host entry"));
    EXPECT_EQ(BoxText(h), "Connection failed\n\nConnection to no-such-host.invalid failed");
    ExpectUsableAfterwards(h, site);
}

TEST(BadInput, ClosedPort) {
    SessionHarness h;
    const platform::Socket reserved = platform::CreateSocket(platform::SocketKind::Stream);
    platform::Endpoint bound;
    ASSERT_TRUE(platform::BindLoopback(reserved, 0) && platform::GetLocalEndpoint(reserved, bound));
    gZarn.port.ftpPort = bound.port;  // bound, but nobody listens
    Site* site = h.MakeSite();
    Zarn_IdmConnect(site);
    EXPECT_TRUE(h.console.HasLine("Cannot connect to 127.0.0.1 ftp service port " + std::to_string(bound.port)));
    EXPECT_EQ(BoxText(h), "Connection failed\n\nConnection to 127.0.0.1 failed");
    platform::CloseSocket(reserved);
    ExpectUsableAfterwards(h, site);
}

TEST(BadInput, AServerThatSaysNothing) {
    SessionHarness h;
    gZarn.port.timeout = 1;
    h.server.On(kWelcome, {Stall()});
    Site* site = h.MakeSite();
    const TimeOutTimer timer;
    Zarn_IdmConnect(site);
    EXPECT_TRUE(h.console.HasLine("Timer cancelled a blocking call"));
    EXPECT_TRUE(h.console.HasLine("127.0.0.1 did not answer within 1 seconds."));
    EXPECT_EQ(BoxText(h).substr(0, 19), "Connection failed\n\n");
    ExpectUsableAfterwards(h, site);
}

TEST(BadInput, ASilentServerIsRetriedAsOftenAsTheSettingsSay) {
    SessionHarness h;
    gZarn.port.timeout = 1;
    gZarn.port.retries = 1;
    h.server.Once(kWelcome, {Stall()});
    Site* site = h.MakeSite();
    const TimeOutTimer timer;
    Zarn_IdmConnect(site);
    EXPECT_EQ(h.server.Connections(), 2);
    EXPECT_NE(site->bConnected, 0);
}

TEST(BadInput, AServerThatHangsUpBeforeTheWelcome) {
    SessionHarness h;
    h.server.On(kWelcome, {CloseControl()});
    Site* site = h.MakeSite();
    Zarn_IdmConnect(site);
    EXPECT_EQ(BoxText(h), "Connection failed\n\n127.0.0.1 closed the connection without a welcome message.");
    ExpectUsableAfterwards(h, site);
}

TEST(BadInput, AServerThatHangsUpAfterTheWelcome) {
    SessionHarness h;
    h.server.On("USER", {CloseControl()});
    Site* site = h.MakeSite();
    Zarn_IdmConnect(site);
    EXPECT_TRUE(h.console.HasLine("logon failure, so quitting"));
    EXPECT_NE(BoxText(h).find("Connection failed"), std::string::npos);
    ExpectUsableAfterwards(h, site);
}

TEST(BadInput, GarbageInsteadOfAWelcome) {
    SessionHarness h;
    h.server.SetWelcome("SSH-2.0-OpenSSH_9.2p1\r\n");
    Site* site = h.MakeSite();
    Zarn_IdmConnect(site);
    EXPECT_TRUE(h.console.HasLine("Not an FTP reply: SSH-2.0-OpenSSH_9.2p1"));
    EXPECT_TRUE(h.console.HasLine("Unknown open msg \"SSH-2.0-OpenSSH_9.2p1\" 0"));
    h.server.SetWelcome("220 ready\r\n");
    ExpectUsableAfterwards(h, site);
}

TEST(BadInput, BinaryGarbageInsteadOfAWelcome) {
    SessionHarness h;
    std::string bytes;
    for (int i = 0; i < 5000; ++i) bytes += static_cast<char>(i * 37 % 251);
    h.server.SetWelcome(bytes + "\n");
    Site* site = h.MakeSite();
    Zarn_IdmConnect(site);
    EXPECT_EQ(site->bConnected, 0);
    h.server.SetWelcome("220 ready\r\n");
    ExpectUsableAfterwards(h, site);
}

TEST(BadInput, AWelcomeOf100KilobytesInOneLine) {
    SessionHarness h;
    h.server.SetWelcome("220 " + std::string(100'000, 'w') + "\r\n");
    Site* site = h.MakeSite();
    Zarn_IdmConnect(site);
    EXPECT_EQ(site->bConnected, 0);
    EXPECT_TRUE(h.console.HasBox("Connection failed"));
    h.server.SetWelcome("220 ready\r\n");
    ExpectUsableAfterwards(h, site);
}

TEST(BadInput, WrongPassword) {
    SessionHarness h;
    h.server.SetPassword("another");
    Site* site = h.MakeSite();
    Zarn_IdmConnect(site);
    EXPECT_EQ(BoxText(h), "Connection failed\n\n530 Login incorrect.");
    ExpectUsableAfterwards(h, site);
}

TEST(BadInput, AServerThatIsFull) {
    SessionHarness h;
    h.server.SetWelcome("421 Too many users.\r\n");
    Site* site = h.MakeSite();
    Zarn_IdmConnect(site);
    EXPECT_EQ(BoxText(h), "Connection failed\n\n421 Too many users.");
    h.server.SetWelcome("220 ready\r\n");
    ExpectUsableAfterwards(h, site);
}

TEST(BadInput, A421InTheMiddleOfASession) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    h.server.Once("CWD", {Say("421 Timeout, closing.\r\n"), CloseControl()});
    EXPECT_FALSE(ChangeRemoteDirectory(site, "/x", h.reply, nullptr, true));
    ASSERT_EQ(h.view.ServerErrors().size(), 1u);
    EXPECT_EQ(h.view.ServerErrors()[0].reply, "421 Timeout, closing.");
    site->lastCommandTicks -= 2000;
    EXPECT_FALSE(ServerReadyForCmd(site, true));
    EXPECT_EQ(h.view.RunPostedDisconnects(), 1);
    ExpectUsableAfterwards(h, site);
}

TEST(BadInput, GarbageAsAReplyIsAFailureAndNoMore) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    h.server.Once("CWD", {Say("\x01\x02 what?\r\n")});
    EXPECT_EQ(DoCWD(site, "/x", h.reply, true), 0);
    EXPECT_EQ(DoNoop(site), FTP_COMPLETE);
}

}  // namespace
