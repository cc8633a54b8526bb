#include "ftp/control/control_connection.h"

#include <gtest/gtest.h>

#include <string>

#include "foundation/trace.h"
#include "ftp/control/keep_alive.h"
#include "platform/clock.h"
#include "support/session_harness.h"

namespace {

TEST(sendstr, 2500BytesGoOutInThreePieces) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    ASSERT_NE(site, nullptr);
    gTrace.debug = true;
    h.console.Clear();
    EXPECT_EQ(sendstr(site, std::string(2498, 'x') + "\r\n", h.reply), 0);
    EXPECT_EQ(h.console.CountLines("Bytes sent: 1024"), 2);
    EXPECT_EQ(h.console.CountLines("Bytes sent: 452"), 1);
    EXPECT_EQ(h.console.CountLines("sendstr() Socket["), 3);
    EXPECT_TRUE(h.server.WaitForCommand(std::string(2498, 'x')));
}

TEST(sendstr, SetsTheTimeOfTheLastCommand) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    site->lastCommandTicks = platform::TickCount() - 5000;
    EXPECT_GE(LastCmdTicks(site), 5000u);
    EXPECT_EQ(SendPacket(site, "NOOP", h.reply), 0);
    EXPECT_LT(LastCmdTicks(site), 2000u);
}

TEST(SendPacket, RefusesNothingToSend) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    EXPECT_EQ(SendPacket(site, nullptr, h.reply), FTP_ERROR);
    EXPECT_EQ(SendPacket(site, "", h.reply), FTP_ERROR);
    EXPECT_EQ(SendPacket(h.MakeSite(), "NOOP", h.reply), FTP_ERROR);
}

TEST(getreply, WithoutAConnectionSaysNotConnected) {
    SessionHarness h;
    EXPECT_EQ(getreply(h.MakeSite(), "NOOP", h.reply), FTP_ERROR);
    EXPECT_TRUE(h.console.HasLine("Not connected"));
}

TEST(command, APasswordIsHiddenByGetreplyAndTracedByCommand) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    gTrace.debug = true;
    h.console.Clear();
    command(site, h.reply, "PASS %s", "s3cret");
    EXPECT_TRUE(h.console.HasLine("Sending Password."));
    EXPECT_FALSE(h.console.HasLine("Sending: PASS"));
    EXPECT_TRUE(h.console.HasLine("CMD:PASS s3cret, Returning 2"));
}

TEST(command, OnlyTheCapitalsHideThePassword) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    gTrace.debug = true;
    h.console.Clear();
    command(site, h.reply, "pass %s", "s3cret");
    EXPECT_TRUE(h.console.HasLine("Sending: pass s3cret."));
}

TEST(command, ThePasswordReachesNoConsoleWithoutTheDebugSwitch) {
    SessionHarness h;
    ASSERT_NE(h.ConnectedSite(), nullptr);
    EXPECT_FALSE(h.console.HasLine("secret"));
}

TEST(command, RefusesLineEndsInAnArgument) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    EXPECT_EQ(command(site, h.reply, "DELE %s", "a\r\nDELE b"), FTP_ERROR);
    EXPECT_EQ(command(site, h.reply, "DELE %s", "a\nb"), FTP_ERROR);
    EXPECT_EQ(commandf(site, h.reply, "site %s", "a\rb"), FTP_ERROR);
    EXPECT_TRUE(h.server.Commands().empty());
}

TEST(command, RefusesWhatDoesNotFitInsteadOfCuttingIt) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    command(site, h.reply, "DELE %s", std::string(2042, 'n').c_str());  // 2047 characters
    EXPECT_EQ(command(site, h.reply, "DELE %s", std::string(2043, 'n').c_str()), FTP_ERROR);
    EXPECT_EQ(h.server.CountCommands("DELE"), 1);
}

TEST(command, ArgumentsAreNotExpandedAgain) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    command(site, h.reply, "DELE %s", "%n%s%%");
    EXPECT_EQ(h.server.Commands().back(), "DELE %n%s%%");
}

TEST(commandf, ExpandsItsTextASecondTime) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    commandf(site, h.reply, "site %s", "a%%b%s");
    EXPECT_EQ(h.server.Commands().back(), "site a%b%s");
}

}  // namespace
