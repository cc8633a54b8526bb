#include "config/site_login.h"

#include <mutex>
#include <utility>

namespace {

// One for all sites: it is held for the time of a short copy.
std::mutex gLoginLock;

OwnedText CopyOf(const OwnedText& text) {
    return text ? OwnedText::Copy(text.view()) : OwnedText();
}

void Replace(OwnedText& text, OwnedText replacement) {
    const std::lock_guard guard(gLoginLock);
    std::swap(text, replacement);
}

}  // namespace

SiteLogin LoginOf(const Site& site) {
    const std::lock_guard guard(gLoginLock);
    SiteLogin login;
    login.user = CopyOf(site.pszUID);
    login.password = CopyOf(site.pszPWD);
    login.gatewayPassword = CopyOf(site.pszGatePWD);
    return login;
}

void SetUser(Site& site, OwnedText user) {
    Replace(site.pszUID, std::move(user));
}

void SetPassword(Site& site, std::string_view password) {
    Replace(site.pszPWD, OwnedText::Copy(password));
}

void SetGatewayPassword(Site& site, std::string_view password) {
    Replace(site.pszGatePWD, OwnedText::Copy(password));
}
