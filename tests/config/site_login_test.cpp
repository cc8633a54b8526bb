#include "config/site_login.h"

#include <atomic>

#include "config/password_form.h"
#include "config/site_store.h"
#include "config/store_fixture.h"
#include "support/session_harness.h"

namespace {

class SiteLoginTest : public StoreTest {};

TEST_F(SiteLoginTest, IsACopyInWhichAnAbsentTextStaysAbsent) {
    const SitePtr site = MakeSite("lab");
    SetPassword(*site, "secret");
    const SiteLogin login = LoginOf(*site);
    EXPECT_STREQ(login.user.get(), "kim");
    EXPECT_STREQ(login.password.get(), "secret");
    EXPECT_NE(login.password.get(), site->pszPWD.get());
    EXPECT_FALSE(login.gatewayPassword);
    SetGatewayPassword(*site, "gate");
    SetUser(*site, OwnedText::Copy("lee"));
    EXPECT_STREQ(site->pszGatePWD.get(), "gate");
    EXPECT_STREQ(site->pszUID.get(), "lee");
}

// Two threads, as the log-in that keeps a password and the window that saves the site.
TEST_F(SiteLoginTest, ASaveStoresAWholePasswordWhileALogInReplacesIt) {
    constexpr int kSaves = 200;
    const std::string passwords[] = {"a", "a much longer password than the other"};
    const SitePtr site = MakeSite("lab");
    site->bSavePwd = 1;
    SetPassword(*site, passwords[0]);
    std::atomic<bool> ended{false};
    OtherThread login([&] {
        for (std::size_t number = 0; !ended; ++number) SetPassword(*site, passwords[number % 2]);
    });
    int strange = 0;
    for (int number = 0; number < kSaves; ++number) {
        SaveSiteInfo(site.get());
        const std::string stored = DecodePassword(Open("lab").ReadText("PWD", 260).value_or(""), "kim");
        if (stored != passwords[0] && stored != passwords[1]) ++strange;
    }
    ended = true;
    login.Join();
    EXPECT_EQ(strange, 0);
}

}  // namespace
