#include "ftp/control/late_reply.h"

#include <gtest/gtest.h>

#include "ftp/control/control_connection.h"
#include "ftp/worker/session_state.h"
#include "support/session_harness.h"

namespace {

TEST(IsRestOfLine, OnlyAfterAnUnfinishedLineAndOnlyWithoutACode) {
    EXPECT_TRUE(IsRestOfLine(true, kNoUsableReply, "ged on"));
    EXPECT_FALSE(IsRestOfLine(false, kNoUsableReply, "ged on"));
    EXPECT_FALSE(IsRestOfLine(true, kNoUsableReply, "226 done"));
    EXPECT_FALSE(IsRestOfLine(true, FTP_COMPLETE, "ged on"));
}

TEST(SettleCancelledTransfer, TakesTheLastWordSoThatTheNextCommandGetsItsOwn) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    h.server.On("NOOP", {Say("200 OK.\r\n426 Transfer aborted.\r\n")});
    ASSERT_EQ(command(site, h.reply, "NOOP"), FTP_COMPLETE);
    SettleCancelledTransfer("test", site, h.reply);
    EXPECT_STREQ(h.replyText, "426 Transfer aborted.");
    EXPECT_TRUE(HasControlSocket(site));
    h.server.On("NOOP", {Say("200 mine\r\n")});
    command(site, h.reply, "NOOP");
    EXPECT_STREQ(h.replyText, "200 mine");
}

TEST(SettleCancelledTransfer, WithoutALastWordTheConnectionIsClosedAndTold) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    SettleCancelledTransfer("test", site, h.reply);
    EXPECT_FALSE(HasControlSocket(site));
    EXPECT_TRUE(h.console.HasBox("The FTP Server has aborted your connection"));
    EXPECT_EQ(h.view.PostedDisconnects(), 1);
}

TEST(SettleCancelledTransfer, AClosingProgramDoesNotWait) {
    SessionHarness h;
    Site* site = h.ConnectedSite();
    h.server.On("NOOP", {Say("200 OK.\r\n426 Transfer aborted.\r\n")});
    ASSERT_EQ(command(site, h.reply, "NOOP"), FTP_COMPLETE);
    SetExiting();
    SettleCancelledTransfer("test", site, h.reply);
    EXPECT_FALSE(HasControlSocket(site));
}

}  // namespace
