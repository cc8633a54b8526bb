#include "ftp/login/local_host.h"

#include <gtest/gtest.h>

#include "ftp/worker/session_state.h"
#include "support/session_harness.h"

namespace {

TEST(GetLocalInfo, NamesTheMachine) {
    SessionHarness h;
    GetLocalInfo("Some sockets");
    EXPECT_TRUE(h.console.HasLine("Local Host name: "));
    EXPECT_TRUE(h.console.HasLine("Windows Sockets: Some sockets"));
    EXPECT_STRNE(LocalHostName(), "");
}

}  // namespace
