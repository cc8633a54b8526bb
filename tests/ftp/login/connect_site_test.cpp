#include "ftp/login/connect_site.h"

#include <gtest/gtest.h>

#include <cstdio>

#include "ftp/worker/session_state.h"
#include "support/session_harness.h"

namespace {

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

}  // namespace
