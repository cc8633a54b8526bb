#include "ftp/login/connect_command.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "config/host_types.h"
#include "ftp/worker/session_state.h"
#include "support/session_harness.h"

namespace {

using Lines = std::vector<std::string>;

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

}  // namespace
