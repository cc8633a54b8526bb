#include "ftp/errors/error_texts.h"

#include <gtest/gtest.h>

#include "foundation/trace.h"
#include "support/session_harness.h"

namespace {

TEST(GetWsaErrorText, KnowsTheTable) {
    EXPECT_STREQ(GetWsaErrorText(10061).c_str(), "Connection refused");
    EXPECT_STREQ(GetWsaErrorText(10063).c_str(), "Name too long");  // first row
    EXPECT_STREQ(GetWsaErrorText(11001).c_str(), "Host not found");
    EXPECT_STREQ(GetWsaErrorText(10059).c_str(), "Too many references");  // last row
}

TEST(GetWsaErrorText, AnUnknownErrorHasNone) {
    EXPECT_FALSE(GetWsaErrorText(10099));
    EXPECT_FALSE(GetWsaErrorText(0));
}

TEST(DbgPrintSocketError, NamesCallAndError) {
    SessionHarness h;
    gTrace.debug = true;
    DbgPrintSocketError("Caller", "connect", 0x1f, 10061);
    EXPECT_TRUE(
        h.console.HasLine("Caller() A Socket error has occured. connect(1f). Error is 10061:Connection refused."));
    DbgPrintSocketError("Caller", "connect", 0x1f, 10099);
    EXPECT_TRUE(h.console.HasLine("Error is 10099:Bad Error String."));
}

TEST(CommonDialogMessage, FollowsTheTable) {
    EXPECT_EQ(CommonDialogMessage(0), 0u);
    EXPECT_EQ(CommonDialogMessage(1), 7129u);
    EXPECT_EQ(CommonDialogMessage(11), 7139u);
    EXPECT_EQ(CommonDialogMessage(12), 7155u);
    EXPECT_EQ(CommonDialogMessage(4097), 7140u);
    EXPECT_EQ(CommonDialogMessage(4107), 7150u);
    EXPECT_EQ(CommonDialogMessage(8193), 7151u);
    EXPECT_EQ(CommonDialogMessage(12289), 7152u);
    EXPECT_EQ(CommonDialogMessage(12291), 7154u);
    EXPECT_EQ(CommonDialogMessage(65535), 7128u);
    EXPECT_EQ(CommonDialogMessage(777), 7155u);
}

TEST(ShowCommonDialogError, ShowsABoxOrNothing) {
    SessionHarness h;
    ShowCommonDialogError(0);
    EXPECT_TRUE(h.console.Boxes().empty());
    ShowCommonDialogError(4107);
    EXPECT_TRUE(h.console.HasBox("Printer not found"));
}

}  // namespace
