#include "ftp/login/host_lookup.h"

#include <gtest/gtest.h>

#include "support/session_harness.h"

namespace {

constexpr std::uint32_t kLoopback = 0x7F000001;

TEST(LookUpHost, FindsTheAddressThatADottedNameSays) {
    SessionHarness h;
    const LookupResult found = LookUpHost("127.0.0.1", 0, LookupFor::StartUp);
    EXPECT_EQ(found.end, LookupEnd::Found);
    EXPECT_EQ(found.addresses, std::vector<std::uint32_t>{kLoopback});
}

TEST(LookUpHost, AnUnknownNameFailsWithItsSocketError) {
    SessionHarness h;
    const LookupResult found = LookUpHost("no such host", 0, LookupFor::StartUp);
    EXPECT_EQ(found.end, LookupEnd::Failed);
    EXPECT_NE(found.error, 0);
    EXPECT_TRUE(found.addresses.empty());
}

}  // namespace
