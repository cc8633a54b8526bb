#include "ftp/control/keep_alive.h"

#include <gtest/gtest.h>

#include "ftp/control/control_connection.h"
#include "platform/clock.h"
#include "support/session_harness.h"

#ifndef _WIN32
#include "host/recorded_calls.h"
#endif

namespace {

TEST(LastCmdTicks, ANullSiteIsTheActiveOne) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    site->lastCommandTicks = platform::TickCount() - 70'000;
    EXPECT_GE(LastCmdTicks(nullptr), 70'000u);
}

TEST(ServerReadyForCmd, Within1000MillisecondsSendsNothing) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    // The clock may step while this runs: the whole margin of the rule is not needed.
    site->lastCommandTicks = platform::TickCount() - 500;
    EXPECT_TRUE(ServerReadyForCmd(site, true));
    EXPECT_EQ(h.server.CountCommands("NOOP"), 0);
}

#ifndef _WIN32
TEST(ServerReadyForCmd, TheLimitLiesBetween1000And1001Milliseconds) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    constexpr std::uint32_t kNow = 5'000'000;
    const recorded_calls::StoppedClock clock(kNow);
    site->lastCommandTicks = kNow - 1000;
    EXPECT_TRUE(ServerReadyForCmd(site, true));
    EXPECT_EQ(h.server.CountCommands("NOOP"), 0);
    site->lastCommandTicks = kNow - 1001;
    EXPECT_TRUE(ServerReadyForCmd(site, true));
    EXPECT_EQ(h.server.CountCommands("NOOP"), 1);
}

TEST(LastCmdTicks, CountsAcrossTheTurnOfTheClock) {
    SessionHarness h;
    Site* site = h.MakeSite();
    const recorded_calls::StoppedClock clock(300);
    site->lastCommandTicks = 0xFFFFFFFF - 199;
    EXPECT_EQ(LastCmdTicks(site), 500u);
}
#endif

TEST(ServerReadyForCmd, After1001MillisecondsSendsNoop) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    site->lastCommandTicks = platform::TickCount() - 1001;
    EXPECT_TRUE(ServerReadyForCmd(site, true));
    EXPECT_EQ(h.server.CountCommands("NOOP"), 1);
}

TEST(ServerReadyForCmd, AFailedNoopTellsTheUserAndDisconnects) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    h.server.On("NOOP", {Say("421 Timeout.\r\n"), CloseControl()});
    site->lastCommandTicks = platform::TickCount() - 1500;
    EXPECT_FALSE(ServerReadyForCmd(site, true));
    EXPECT_TRUE(h.console.HasBox("The FTP Server has aborted your connection"));
    EXPECT_EQ(h.view.RunPostedDisconnects(), 1);
    EXPECT_FALSE(HasControlSocket(site));
    EXPECT_EQ(site->bConnected, 0);
}

TEST(ServerReadyForCmd, WithoutCloseOnFailureNothingIsTold) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    h.server.On("NOOP", {CloseControl()});
    site->lastCommandTicks = platform::TickCount() - 1500;
    EXPECT_FALSE(ServerReadyForCmd(site, false));
    EXPECT_TRUE(h.console.Boxes().empty());
    EXPECT_TRUE(HasControlSocket(site));
}

}  // namespace
