#include "transfer/drop_actions.h"

#include "foundation/trace.h"
#include "ftp/worker/session_state.h"
#include "transfer/transfer_fixture.h"

namespace {

class DropActions : public TransferTest {};

TEST_F(DropActions, ConnectedSiteTakesADrop) {
    EXPECT_TRUE(ReadyForDrop(site));
    EXPECT_TRUE(harness.console.Boxes().empty());
    EXPECT_EQ(site, gSession.activeSite);
}

TEST_F(DropActions, SiteThatIsNotConnectedIsToldAndTakesNothing) {
    Site* other = harness.MakeSite();
    gSession.activeSite = site;
    for (Site* refused : {other, static_cast<Site*>(nullptr)}) {
        harness.console.Clear();
        EXPECT_FALSE(ReadyForDrop(refused));
        ASSERT_EQ(1u, harness.console.Boxes().size());
        EXPECT_EQ("NOT CONNECTED!! Files(s) ignored.", harness.console.Boxes()[0].text);
    }
    EXPECT_EQ(site, gSession.activeSite);
    EXPECT_TRUE(harness.server.Commands().empty());
}

TEST_F(DropActions, SiteOfTheDropBecomesTheActiveOneWithAWarningInTheTrace) {
    Site* other = harness.ConnectedSite();
    gSession.activeSite = other;
    gTrace.debug = true;
    EXPECT_TRUE(ReadyForDrop(site));
    EXPECT_EQ(site, gSession.activeSite);
    EXPECT_TRUE(harness.console.HasLine("(WARNING) Sites Dont match!(Global:"));
}

TEST_F(DropActions, RunningOperationRefusesTheDropAndKeepsItsSite) {
    Site* other = harness.ConnectedSite();
    SetBusy(true);
    EXPECT_FALSE(ReadyForDrop(site));
    SetBusy(false);
    EXPECT_EQ(other, gSession.activeSite);
    EXPECT_TRUE(harness.console.HasLine("Currently busy with another remote operation"));
}

}  // namespace
