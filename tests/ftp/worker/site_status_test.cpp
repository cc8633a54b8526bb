#include "ftp/worker/site_status.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <iterator>

#include "support/session_harness.h"

namespace {

TEST(StatusOf, IsWhatTheSessionSet) {
    SessionHarness h;
    Site* site = h.MakeSite();
    EXPECT_FALSE(StatusOf(*site).connected);
    EXPECT_EQ(StatusOf(*site).currentDirectory, "");
    EXPECT_EQ(StatusOf(*site).peer, "");
    SetConnected(*site, true);
    SetSessionDirectory(*site, "/pub");
    SetPeerName(*site, "10.0.0.1");
    EXPECT_TRUE(StatusOf(*site).connected);
    EXPECT_EQ(StatusOf(*site).currentDirectory, "/pub");
    EXPECT_EQ(StatusOf(*site).peer, "10.0.0.1");
    EXPECT_STREQ(site->pszCurrentDir.get(), "/pub");
    ForgetSessionDirectory(*site);
    SetConnected(*site, false);
    EXPECT_FALSE(StatusOf(*site).connected);
    EXPECT_EQ(StatusOf(*site).currentDirectory, "");
    EXPECT_FALSE(site->pszCurrentDir);
}

TEST(StatusOf, ASiteWithoutAConnectionBlockHasNoPeer) {
    const SitePtr site(Zarn_CreateDefaultSite(nullptr));
    EXPECT_EQ(StatusOf(*site).peer, "");
}

TEST(SetSessionDirectory, TakesTheSitesOwnText) {
    SessionHarness h;
    Site* site = h.MakeSite();
    SetSessionDirectory(*site, "/pub/docs");
    SetSessionDirectory(*site, site->pszCurrentDir.view().substr(0, 4));
    EXPECT_STREQ(site->pszCurrentDir.get(), "/pub");
}

TEST(SetPeerName, IsCutToItsField) {
    SessionHarness h;
    Site* site = h.MakeSite();
    SetPeerName(*site, std::string(100, '1'));
    EXPECT_EQ(StatusOf(*site).peer, std::string(64, '1'));
}

// Two threads, as the worker and the window: what is read is never half of one and half of the other.
TEST(StatusOf, IsWholeWhileTheSessionChangesIt) {
    constexpr int kChanges = 20'000;
    SessionHarness h;
    Site* site = h.MakeSite();
    const std::string directories[] = {"/", "/pub/" + std::string(200, 'd'), "/incoming"};
    const std::string peers[] = {"10.0.0.1", "192.168.100.200"};
    SetSessionDirectory(*site, directories[0]);
    SetPeerName(*site, peers[0]);
    std::atomic<bool> ended{false};
    OtherThread session([&] {
        for (std::size_t number = 0; number < kChanges; ++number) {
            SetConnected(*site, number % 2 != 0);
            SetSessionDirectory(*site, directories[number % 3]);
            SetPeerName(*site, peers[number % 2]);
            if (number % 7 == 0) ForgetSessionDirectory(*site);
        }
        ended = true;
    });
    int reads = 0;
    int strange = 0;
    do {
        const SiteStatus status = StatusOf(*site);
        const std::string& folder = status.currentDirectory;
        const bool known = folder.empty() ||
                           std::find(std::begin(directories), std::end(directories), folder) != std::end(directories);
        if (!known || std::find(std::begin(peers), std::end(peers), status.peer) == std::end(peers)) ++strange;
        ++reads;
    } while (!ended);
    session.Join();
    EXPECT_EQ(strange, 0) << "of " << reads;
}

}  // namespace
