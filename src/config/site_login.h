// The user and the passwords of a site, which a log-in and a save of the same site touch from two threads: both go
// through these functions. The stored form of a password is password_form.h.
#pragma once

#include <string_view>

#include "config/site.h"

// A copy; a text that the site does not have is null here, too.
struct SiteLogin {
    OwnedText user;
    OwnedText password;
    OwnedText gatewayPassword;
};
SiteLogin LoginOf(const Site& site);

void SetUser(Site& site, OwnedText user);
void SetPassword(Site& site, std::string_view password);
void SetGatewayPassword(Site& site, std::string_view password);
