#include "ftp/control/connection_loss.h"

#include <gtest/gtest.h>

#include "ftp/worker/session_state.h"
#include "ftp/working_session.h"

namespace {

TEST(Zarn_HandleFtpReset, IsToldOnce) {
    Working w;
    Zarn_HandleFtpReset("test", nullptr);  // the active site
    EXPECT_EQ(w.h.console.Boxes().size(), 1u);
    EXPECT_EQ(w.h.console.Boxes()[0].icon, BoxIcon::Stop);
    w.h.view.RunPostedDisconnects();
    Zarn_HandleFtpReset("test", w.site);
    EXPECT_EQ(w.h.console.Boxes().size(), 1u);
    EXPECT_EQ(gSession.activeSite, w.site);
}

}  // namespace
