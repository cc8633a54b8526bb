#include "ftp/login/login.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/login/connect_command.h"
#include "ftp/login/connect_site.h"
#include "ftp/login/local_host.h"

#include <gtest/gtest.h>

#include "config/host_types.h"
#include "ftp/login/welcome.h"
#include "ftp/worker/close_socket.h"
#include "ftp/worker/session_state.h"
#include "support/session_harness.h"

namespace {

using Lines = std::vector<std::string>;

TEST(Zarn_ConnectSite, ThePortSettingOverridesTheServiceWithAMessage) {
    SessionHarness h;
    Site* site = h.MakeSite();
    EXPECT_TRUE(Zarn_ConnectSite(site, "ftp", "tcp"));
    EXPECT_TRUE(h.console.HasLine("Overridding FTP port number with " + std::to_string(h.server.Port())));
    EXPECT_EQ(site->pSock->peerPort, h.server.Port());
}

TEST(Zarn_ConnectSite, ANumericServiceNameIsThePort) {
    SessionHarness h;
    gZarn.port.ftpPort = 2100;
    EXPECT_TRUE(Zarn_ConnectSite(h.MakeSite(), std::to_string(h.server.Port()).c_str(), "tcp"));
    EXPECT_FALSE(h.console.HasLine("Overridding"));
}

TEST(Zarn_ConnectSite, AnUnknownServiceFails) {
    SessionHarness h;
    gZarn.port.ftpPort = 21;
    EXPECT_FALSE(Zarn_ConnectSite(h.MakeSite(), "no-such-service", "tcp"));
    EXPECT_TRUE(h.console.HasLine("cannot get \"no-such-service\" service entry"));
}

TEST(Zarn_ConnectSite, AnUnknownProtocolFails) {
    SessionHarness h;
    EXPECT_FALSE(Zarn_ConnectSite(h.MakeSite(), "ftp", "no-such-protocol"));
    EXPECT_TRUE(h.console.HasLine("cannot get \"no-such-protocol\" protocol entry"));
}

TEST(Zarn_ConnectSite, AnUnknownHostFails) {
    SessionHarness h;
    EXPECT_FALSE(Zarn_ConnectSite(h.MakeSite("no-such-host.invalid"), "ftp", "tcp"));
    EXPECT_TRUE(h.console.HasLine("cannot get \"no-such-host.invalid\" host entry"));
}

TEST(Zarn_ConnectSite, RemembersThePeerAndItsOwnEnd) {
    SessionHarness h;
    Site* site = h.MakeSite();
    ASSERT_TRUE(Zarn_ConnectSite(site, "ftp", "tcp"));
    EXPECT_STREQ(site->pSock->PeerName, "127.0.0.1");
    EXPECT_EQ(gSession.localAddress, 0x7F000001u);
    EXPECT_TRUE(h.console.HasLine("connecting to 127.0.0.1 ..."));
    EXPECT_TRUE(h.console.HasLine("Connected to 127.0.0.1 port "));
}

TEST(Zarn_ConnectSite, ARememberedPeerIsUsedInsteadOfTheName) {
    SessionHarness h;
    Site* site = h.MakeSite("no-such-host.invalid");
    std::snprintf(site->pSock->PeerName, sizeof site->pSock->PeerName, "127.0.0.1");
    EXPECT_TRUE(Zarn_ConnectSite(site, "ftp", "tcp"));
}

TEST(Zarn_ConnectSite, ARememberedPeerThatIsNoAddressFails) {
    SessionHarness h;
    Site* site = h.MakeSite();
    std::snprintf(site->pSock->PeerName, sizeof site->pSock->PeerName, "not an address");
    EXPECT_FALSE(Zarn_ConnectSite(site, "ftp", "tcp"));
    EXPECT_EQ(h.server.Connections(), 0);
}

TEST(DetectHostType, TheFirstSignInTheListWins) {
    EXPECT_EQ(DetectHostType(7000, "220 unix box, Microsoft FTP Service"), 7002u);
    EXPECT_EQ(DetectHostType(7000, "220 Microsoft FTP Service (EXOS)"), 7014u);
    EXPECT_EQ(DetectHostType(7000, "220 Ambrel FTP server on UNIX"), 7004u);
    EXPECT_EQ(DetectHostType(7000, "220 a unix box"), 7001u);
    EXPECT_EQ(DetectHostType(7000, "220 a Unix box"), 7001u);
    EXPECT_EQ(DetectHostType(7000, "220 a UNIX box"), 7001u);
}

TEST(DetectHostType, CaseMatters) {
    EXPECT_EQ(DetectHostType(7000, "220 uNIX, microsoft ftp service, (exos"), 7000u);
}

TEST(DetectHostType, AConfiguredTypeStays) {
    EXPECT_EQ(DetectHostType(7003, "220 Microsoft FTP Service"), 7003u);
}

TEST(DoConnect2, LogsInDirectly) {
    SessionHarness h;
    Site* site = h.MakeSite();
    EXPECT_TRUE(DoConnect2(site));
    EXPECT_EQ(h.server.Commands(), (Lines{"USER user", "PASS secret"}));
    EXPECT_NE(site->bConnected, 0);
}

TEST(DoConnect2, TheWelcomeSetsTheTypeInForce) {
    SessionHarness h;
    h.server.SetWelcome("220 host Microsoft FTP Service (Version 3.0).\r\n");
    Site* site = h.MakeSite();
    ASSERT_TRUE(DoConnect2(site));
    EXPECT_EQ(site->dwType, 7000u);
    EXPECT_EQ(site->dwCurType, 7002u);
    EXPECT_TRUE(h.console.HasLine("Host type (7002): Microsoft Windows NT"));
}

TEST(DoConnect2, ASecondTimeSaysAlreadyConnected) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    EXPECT_FALSE(DoConnect2(site));
    EXPECT_TRUE(h.console.HasLine("Already connected!"));
    EXPECT_TRUE(HasControlSocket(site));
}

TEST(DoConnect2, AnAnonymousSiteSendsTheMailAddress) {
    SessionHarness h;
    gZarn.MAILADDR = "me@home";
    Site* site = h.MakeSite();
    site->bAnonymous = 1;
    EXPECT_TRUE(DoConnect2(site));
    EXPECT_EQ(h.server.Commands(), (Lines{"USER anonymous", "PASS me@home"}));
}

TEST(DoConnect2, AUserWithoutPasswordNeedsNone) {
    SessionHarness h;
    h.server.On("USER", {Say("230 welcome\r\n")});
    EXPECT_TRUE(DoConnect2(h.MakeSite()));
    EXPECT_EQ(h.server.CountCommands("PASS"), 0);
    EXPECT_TRUE(h.console.HasLine("User logged on, proceed."));
}

TEST(DoConnect2, AnEmptyPasswordIsAskedForAndKept) {
    SessionHarness h;
    Site* site = h.MakeSite("127.0.0.1", "user", "");
    h.view.AnswerNext("typed");
    EXPECT_TRUE(DoConnect2(site));
    ASSERT_EQ(h.view.Questions().size(), 1u);
    EXPECT_EQ(h.view.Questions()[0].prompt, "Need a password:");
    EXPECT_TRUE(h.view.Questions()[0].isSecret);
    EXPECT_EQ(h.view.Questions()[0].longest, 80u);
    EXPECT_EQ(h.server.Commands().back(), "PASS typed");
    EXPECT_STREQ(site->pszPWD.c_str(), "typed");
}

TEST(DoConnect2, A332AsksForTheAccount) {
    SessionHarness h;
    h.server.AskAccount(true);
    h.view.AnswerNext("acme");
    EXPECT_TRUE(DoConnect2(h.MakeSite()));
    ASSERT_EQ(h.view.Questions().size(), 1u);
    EXPECT_EQ(h.view.Questions()[0].caption, "Account required to connect");
    EXPECT_EQ(h.view.Questions()[0].prompt, "Need an account:");
    EXPECT_EQ(h.server.Commands().back(), "ACCT acme");
}

TEST(DoConnect2, AWrongPasswordClosesTheConnection) {
    SessionHarness h;
    h.server.SetPassword("another");
    Site* site = h.MakeSite();
    EXPECT_FALSE(DoConnect2(site));
    EXPECT_TRUE(h.console.HasLine("530 Login incorrect."));
    EXPECT_TRUE(h.console.HasLine("logon failure, so quitting"));
    EXPECT_FALSE(HasControlSocket(site));
    EXPECT_EQ(site->bConnected, 0);
    EXPECT_TRUE(h.server.WaitForConnections(0));
}

void UseGateway(Site* site) {
    site->bUseGateway = 1;
    site->pszGateHost = OwnedText::Copy("gate.example");
    site->pszGateUID = OwnedText::Copy("gateuser");
    site->pszGatePWD = OwnedText::Copy("gatepass");
}

TEST(DoConnect2, AGatewayIsLoggedInToFirst) {
    SessionHarness h;
    Site* site = h.MakeSite();
    UseGateway(site);
    EXPECT_TRUE(DoConnect2(site));
    EXPECT_EQ(h.server.Commands(),
              (Lines{"USER gateuser", "PASS gatepass", "site 127.0.0.1", "USER user", "PASS secret"}));
}

TEST(DoConnect2, AGatewayWithoutUserIsNotUsed) {
    SessionHarness h;
    Site* site = h.MakeSite();
    UseGateway(site);
    site->pszGateUID.reset();
    EXPECT_TRUE(DoConnect2(site));
    EXPECT_EQ(h.server.Commands(), (Lines{"USER user", "PASS secret"}));
    EXPECT_EQ(site->bUseGateway, 0);
}

TEST(DoConnect2, AnAnonymousSiteUsesNoGateway) {
    SessionHarness h;
    gZarn.MAILADDR = "me@home";
    Site* site = h.MakeSite();
    UseGateway(site);
    site->bAnonymous = 1;
    EXPECT_TRUE(DoConnect2(site));
    EXPECT_EQ(h.server.CountCommands("site"), 0);
}

TEST(DoConnect2, AGatewayThatDoesNotAnswerEndsTheLogin) {
    SessionHarness h;
    gZarn.port.timeout = 1;
    const TimeOutTimer timer;
    Site* site = h.MakeSite();
    UseGateway(site);
    h.server.On("SITE", {Stall()});
    EXPECT_FALSE(DoConnect2(site));
    // What comes late must not be taken for the answer to the next command.
    EXPECT_EQ(h.server.CountCommands("USER"), 1);
    EXPECT_FALSE(HasControlSocket(site));
}

TEST(DoConnect2, AGatewayThatRefusesTheUserEndsTheLogin) {
    SessionHarness h;
    h.server.On("PASS", {Say("530 no\r\n")});
    Site* site = h.MakeSite();
    UseGateway(site);
    EXPECT_FALSE(DoConnect2(site));
    EXPECT_TRUE(h.console.HasLine("Gateway logon failure, so quitting"));
    EXPECT_FALSE(HasControlSocket(site));
}

TEST(DoConnect2, AGatewayThatCannotReachTheHostEndsTheLogin) {
    SessionHarness h;
    h.server.On("SITE", {Say("500 no route\r\n")});
    Site* site = h.MakeSite();
    UseGateway(site);
    EXPECT_FALSE(DoConnect2(site));
    EXPECT_TRUE(h.console.HasLine("Connect to final destination failed, so quitting"));
}

TEST(DoConnect2, AnyOtherAnswerToSiteGoesOn) {
    SessionHarness h;
    h.server.On("SITE", {Say("421 hm\r\n")});
    Site* site = h.MakeSite();
    UseGateway(site);
    EXPECT_TRUE(DoConnect2(site));
}

TEST(DoConnect2, APasswordAskedForThroughAGatewayIsNotTheGateways) {
    SessionHarness h;
    Site* site = h.MakeSite("127.0.0.1", "user", "");
    UseGateway(site);
    h.view.AnswerNext("typed");
    EXPECT_TRUE(DoConnect2(site));
    // Kept as the gateway's only where that has none, as wanted.
    EXPECT_STREQ(site->pszGatePWD.c_str(), "gatepass");
    EXPECT_TRUE(site->pszPWD.empty());
}

TEST(DoConnect, WithoutRetriesAFailureIsNotRepeated) {
    SessionHarness h;
    h.server.SetWelcome("421 busy\r\n");
    EXPECT_FALSE(DoConnect(h.MakeSite()));
    EXPECT_EQ(h.server.Connections(), 1);
    EXPECT_FALSE(h.console.HasLine("Retrying"));
    EXPECT_FALSE(h.console.HasLine("Retries failed"));
}

TEST(DoConnect, TwoRetriesMakeThreeAttempts) {
    SessionHarness h;
    gZarn.port.retries = 2;
    h.server.SetWelcome("421 busy\r\n");
    EXPECT_FALSE(DoConnect(h.MakeSite()));
    EXPECT_EQ(h.server.Connections(), 3);
    EXPECT_EQ(h.console.CountLines("Retrying"), 2);
    EXPECT_TRUE(h.console.HasLine("Connection failed ... Retrying (1 of 2)"));
    EXPECT_TRUE(h.console.HasLine("Connection failed ... Retrying (2 of 2)"));
    EXPECT_TRUE(h.console.HasLine("All 2 Retries failed ... Connection to 127.0.0.1 Failed."));
}

TEST(DoConnect, ARetryCanSucceed) {
    SessionHarness h;
    gZarn.port.retries = 1;
    h.server.Once(kWelcome, {CloseControl()});
    EXPECT_TRUE(DoConnect(h.MakeSite()));
    EXPECT_FALSE(h.console.HasLine("Retries failed"));
}

TEST(DoConnect, ACancelledQuestionIsNotAskedAgain) {
    SessionHarness h;
    gZarn.port.retries = 3;
    EXPECT_FALSE(DoConnect(h.MakeSite("127.0.0.1", "user", "")));
    EXPECT_EQ(h.view.Questions().size(), 1u);
    EXPECT_EQ(h.server.Connections(), 1);
}

TEST(Zarn_ReConnect, ClosesAndConnectsAnew) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    EXPECT_TRUE(Zarn_ReConnect(site));
    EXPECT_EQ(h.server.Connections(), 2);
    EXPECT_TRUE(h.server.WaitForConnections(1));
    EXPECT_FALSE(gSession.connecting);
}

TEST(Zarn_HandleConnect, RefusesTheLocalComputerAndSitesWithoutNode) {
    SessionHarness h;
    Site* site = h.MakeSite();
    EXPECT_FALSE(Zarn_HandleConnect(nullptr));
    site->dwCurType = HOST_TYPE_LOCAL;
    EXPECT_FALSE(Zarn_HandleConnect(site));
    site->dwCurType = HOST_TYPE_AUTO;
    h.view.SetSiteHasNode(false);
    EXPECT_FALSE(Zarn_HandleConnect(site));
    EXPECT_EQ(h.server.Connections(), 0);
}

TEST(Zarn_HandleConnect, AsksTheServerForTheFirstDirectory) {
    SessionHarness h;
    h.server.SetHome("/home/u");
    h.server.AddFolder("/home/u");
    Site* site = h.MakeSite();
    EXPECT_TRUE(Zarn_HandleConnect(site));
    EXPECT_STREQ(site->pszCurrentDir.c_str(), "/home/u");
    EXPECT_EQ(site->chSeparator, '/');
    EXPECT_EQ(h.view.StatusTexts().front(), "Connecting to: Test site");
}

TEST(Zarn_HandleConnect, ChangesToTheSitesInitialDirectory) {
    SessionHarness h;
    h.server.AddFolder("/pub");
    Site* site = h.MakeSite();
    site->pszDir = OwnedText::Copy("/pub");
    EXPECT_TRUE(Zarn_HandleConnect(site));
    EXPECT_STREQ(site->pszCurrentDir.c_str(), "/pub");
    EXPECT_EQ(h.server.CountCommands("PWD"), 0);
}

TEST(Zarn_HandleConnect, AnInitialDirectoryThatIsNotThereFallsBack) {
    SessionHarness h;
    Site* site = h.MakeSite();
    site->pszDir = OwnedText::Copy("/gone");
    EXPECT_TRUE(Zarn_HandleConnect(site));
    EXPECT_STREQ(site->pszCurrentDir.c_str(), "/");
    EXPECT_TRUE(h.view.ServerErrors().empty());
}

TEST(Zarn_HandleConnect, AFailedQueryFailsButLeavesTheConnection) {
    SessionHarness h;
    h.server.On("PWD", {Say("502 never heard of it\r\n")});
    Site* site = h.MakeSite();
    EXPECT_FALSE(Zarn_HandleConnect(site));
    EXPECT_TRUE(HasControlSocket(site));
    EXPECT_TRUE(h.console.HasBox("obtain the current remote directory"));
}

TEST(Zarn_HandleConnect, ASecondConnectionIsRefusedInABox) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    EXPECT_FALSE(Zarn_HandleConnect(site));
    EXPECT_TRUE(h.console.HasBox("Already connected!"));
    EXPECT_EQ(h.view.StatusTexts().back(), "Already connected!");
}

TEST(Zarn_HandleConnect, AFailureIsShownWithItsReason) {
    SessionHarness h;
    h.server.SetPassword("another");
    EXPECT_FALSE(Zarn_HandleConnect(h.MakeSite()));
    EXPECT_EQ(h.view.StatusTexts().back(), "Connection failed");
    EXPECT_TRUE(h.console.HasBox("Connection failed"));
    EXPECT_TRUE(h.console.HasBox("530 Login incorrect."));
}

TEST(Zarn_IdmConnect, ShowsTheFirstDirectoryAndEndsConnecting) {
    SessionHarness h;
    Site* site = h.MakeSite();
    Zarn_IdmConnect(site);
    EXPECT_EQ(h.view.FirstDirectories(), (Lines{"/"}));
    EXPECT_FALSE(gSession.connecting);
    EXPECT_EQ(gSession.activeSite, site);
    const Lines status = h.view.StatusTexts();
    EXPECT_EQ(status, (Lines{"Connecting...", "Connecting to: Test site", "Determining Root directory...", ""}));
}

TEST(Zarn_IdmConnect, AFailureEndsConnectingToo) {
    SessionHarness h;
    h.server.On(kWelcome, {CloseControl()});
    Zarn_IdmConnect(h.MakeSite());
    EXPECT_TRUE(h.view.FirstDirectories().empty());
    EXPECT_FALSE(gSession.connecting);
}

TEST(RemoteSeparator, IsABackslashOnlyWhenNothingElseIsUsed) {
    EXPECT_EQ(RemoteSeparator("/home/u"), '/');
    EXPECT_EQ(RemoteSeparator("C:\\inetpub\\ftproot"), '\\');
    EXPECT_EQ(RemoteSeparator("/C:\\odd"), '/');
    EXPECT_EQ(RemoteSeparator("SYS$DISK"), '/');
    EXPECT_EQ(RemoteSeparator(nullptr), '/');
}

TEST(DoClose, AlwaysReturnsNoSocket) {
    SessionHarness h;
    EXPECT_EQ(DoClose(platform::kNoSocket, CloseHow::Both), platform::kNoSocket);
    const platform::Socket socket = platform::CreateSocket(platform::SocketKind::Stream);
    EXPECT_EQ(DoClose(socket, CloseHow::Send), platform::kNoSocket);
}

TEST(GetLocalInfo, NamesTheMachine) {
    SessionHarness h;
    GetLocalInfo("Some sockets");
    EXPECT_TRUE(h.console.HasLine("Local Host name: "));
    EXPECT_TRUE(h.console.HasLine("Windows Sockets: Some sockets"));
    EXPECT_STRNE(LocalHostName(), "");
}

}  // namespace
