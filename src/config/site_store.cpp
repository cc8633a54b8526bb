#include "config/site_store.h"

#include <new>

#include "config/defaults_store.h"
#include "config/password_form.h"
#include "config/site_login.h"
#include "config/store_key.h"
#include "foundation/catalogue.h"
#include "foundation/error_report.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/text_compare.h"
#include "foundation/text_copy.h"
#include "foundation/trace.h"
#include "foundation/trace_address.h"
#include "platform/registry.h"
#include "platform/system.h"

using platform::RegistryKey;
using platform::RegistryRoot;

namespace {

// Bytes read, terminator included; a longer stored text is taken for a missing one.
constexpr std::size_t kHostBytes = 64;
constexpr std::size_t kUserBytes = 80;
constexpr std::size_t kPasswordBytes = 80;
constexpr std::size_t kDirectoryBytes = 520;
constexpr std::size_t kLongestUser = 80;
constexpr std::size_t kLongestKeyName = 259;

bool IsSiteKey(std::string_view name) {
    return !name.empty() && name.find('\\') == std::string_view::npos && !EqualsIgnoringCase(name, kDefaultsKey);
}

void ShowNameTaken(const char* name) {
    const OwnedText text = Zarn_ResVsprintf(MSG_SITE_EXISTS, name);
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
}

OwnedText LoggedOnUser(const char* callerName) {
    const std::string user = platform::UserName();
    if (user.empty()) {
        DbgPrintApiError(callerName, "GetUserName(UID)", platform::LastSystemError());
        return {};
    }
    return OwnedText::Copy(std::string_view(user).substr(0, kLongestUser));
}

OwnedText ReadField(const RegistryKey& key, const char* name, std::size_t longest) {
    const auto text = key.ReadText(name, longest);
    return text ? OwnedText::Copy(*text) : OwnedText();
}

OwnedText ReadPassword(const RegistryKey& key, const char* name, const OwnedText& user) {
    if (user.empty()) return {};
    const auto stored = key.ReadText(name, kPasswordBytes);
    if (!stored || stored->empty()) return {};
    return OwnedText::Copy(DecodePassword(*stored, user.view()));
}

std::int32_t ReadSwitch(const RegistryKey& key, const char* name) {
    return static_cast<std::int32_t>(key.ReadNumber(name).value_or(0));
}

void WriteField(RegistryKey& key, const char* name, const OwnedText& text) {
    if (!text) {
        key.DeleteValue(name);
        return;
    }
    ReportFailedWrite("SaveSiteInfo", name, key.WriteText(name, text.c_str()));
}

void WriteNumberField(RegistryKey& key, const char* name, std::uint32_t value) {
    ReportFailedWrite("SaveSiteInfo", name, key.WriteNumber(name, value));
}

void WriteUserAndPassword(RegistryKey& key, Site& site) {
    SiteLogin login = LoginOf(site);
    if (!login.user) {
        SetUser(site, LoggedOnUser("SaveSiteInfo"));
        login = LoginOf(site);
    }
    WriteField(key, "UID", login.user);
    WriteNumberField(key, "SAVEPWD", static_cast<std::uint32_t>(site.bSavePwd));
    if (!login.user || !login.password) {
        key.DeleteValue("PWD");
        return;
    }
    // Quirk: without the switch or the password, what was stored before stays, kept.
    if (site.bSavePwd == 0 || login.password.empty()) return;
    ReportFailedWrite("SaveSiteInfo", "PWD",
                      key.WriteText("PWD", EncodePassword(login.password.view(), login.user.view())));
}

void WriteGateway(RegistryKey& key, const Site& site) {
    WriteField(key, "GATEHOST", site.pszGateHost);
    WriteField(key, "GATEUID", site.pszGateUID);
    const OwnedText password = LoginOf(site).gatewayPassword;
    if (!site.pszGateUID || !password) {
        key.DeleteValue("GATEPWD");
        return;
    }
    if (password.empty()) return;
    // Quirk: only the first byte of the stored form is written, kept.
    const std::string stored = EncodePassword(password.view(), site.pszGateUID.view());
    ReportFailedWrite("SaveSiteInfo", "GATEPWD", key.WriteText("GATEPWD", stored, 1));
}

void ReadGateway(const RegistryKey& key, Site& site) {
    site.pszGateHost = ReadField(key, "GATEHOST", kHostBytes);
    if (site.pszGateHost.empty()) return;
    site.pszGateUID = ReadField(key, "GATEUID", kUserBytes);
    site.pszGatePWD = ReadPassword(key, "GATEPWD", site.pszGateUID);
}

void ReadSite(const RegistryKey& key, Site& site) {
    site.pszHost = ReadField(key, "HOST", kHostBytes);
    site.dwType = key.ReadNumber("TYPE").value_or(site.dwType);
    site.dwCurType = site.dwType;
    site.pszUID = ReadField(key, "UID", kUserBytes);
    if (!site.pszUID) site.pszUID = LoggedOnUser("Zarn_GetSiteInfo");
    site.pszPWD = ReadPassword(key, "PWD", site.pszUID);
    site.pszDir = ReadField(key, "DIR", kDirectoryBytes);
    site.bUseGateway = ReadSwitch(key, "USEGATEWAY");
    site.bAnonymous = ReadSwitch(key, "ANONYMOUS");
    site.bSavePwd = ReadSwitch(key, "SAVEPWD");
    ReadGateway(key, site);
}

// An unused key to pass through when only the case of the name changes.
std::string TemporaryKeyPath(const std::string& oldName) {
    std::string path = StoreKeyPath("") + "\\" + oldName + "_Tmp";
    while (platform::RegistryKeyExists(RegistryRoot::CurrentUser, path)) path += "_Tmp";
    return path;
}

bool MoveSiteKey(const std::string& oldName, const std::string& newName) {
    const std::string from = StoreKeyPath(oldName);
    const std::string to = StoreKeyPath(newName);
    if (!EqualsIgnoringCase(oldName, newName)) return platform::MoveRegistryTree(from, to);
    // The store ignores case, so the key has to be moved away first.
    const std::string temporary = TemporaryKeyPath(oldName);
    if (!platform::MoveRegistryTree(from, temporary)) return false;
    if (platform::MoveRegistryTree(temporary, to)) return true;
    platform::MoveRegistryTree(temporary, from);
    return false;
}

}  // namespace

void SaveSiteInfo(Site* site) {
    if (site == nullptr || site->pszSessionName.empty()) {
        DbgVsprintf("SaveSiteInfo", "ERROR. SessionName is NULL. Returning");
        return;
    }
    if (!IsSiteKey(site->pszSessionName.view())) {
        ShowNameTaken(site->pszSessionName.c_str());
        return;
    }
    if (site->pszHost.empty()) site->pszHost = DupString(site->pszSessionName.c_str());
    if (!site->pszHost) {
        DbgVsprintf("SaveSiteInfo", "ERROR. Memory Problems. Returning");
        return;
    }
    RegistryKey key = OpenStoreKey(site->pszSessionName.c_str(), nullptr);
    if (!key.IsOpen()) return;
    WriteField(key, "HOST", site->pszHost);
    WriteNumberField(key, "TYPE", site->dwType);
    WriteUserAndPassword(key, *site);
    WriteField(key, "DIR", site->pszDir);
    WriteNumberField(key, "USEGATEWAY", static_cast<std::uint32_t>(site->bUseGateway.load()));
    WriteNumberField(key, "ANONYMOUS", static_cast<std::uint32_t>(site->bAnonymous));
    WriteGateway(key, *site);
}

SitePtr Zarn_GetSiteInfo(const char* sessionName) {
    if (sessionName == nullptr) {
        DbgVsprintf("Zarn_GetSiteInfo", "ERROR. Arg: pszSite was NULL. Returning NULL");
        return nullptr;
    }
    DbgVsprintf("Zarn_GetSiteInfo", "Entered: Loading Reg Data for %s", sessionName);
    if (!IsSiteKey(sessionName)) return nullptr;
    const RegistryKey key = OpenStoreKey(sessionName, nullptr);
    if (!key.IsOpen()) return nullptr;
    SitePtr site(new (std::nothrow) Site);
    if (site == nullptr) return nullptr;
    site->pSock.reset(new (std::nothrow) SocketRecord);
    site->pszSessionName = DupString(sessionName);
    if (site->pSock == nullptr || !site->pszSessionName) return nullptr;
    ReadSite(key, *site);
    DbgVsprintf("Zarn_GetSiteInfo", "Done. Returning %x", TraceAddress(site.get()));
    return site;
}

std::vector<SitePtr> LoadSites() {
    std::vector<SitePtr> sites;
    std::vector<std::string> names;
    {
        const RegistryKey root = OpenStoreKey("", nullptr);
        if (!root.IsOpen()) return sites;
        if (!root.ListSubkeys(names)) {
            ShowMessageBox(CatalogueText(MSG_CANNOT_ENUMERATE_CONFIGURATION).c_str(), nullptr, BoxButtons::Ok,
                           BoxIcon::Exclamation);
        }
    }
    for (const std::string& name : names) {
        if (!IsSiteKey(name) || name.size() > kLongestKeyName) continue;
        if (SitePtr site = Zarn_GetSiteInfo(name.c_str())) sites.push_back(std::move(site));
    }
    return sites;
}

void RegDeleteSiteInfo(const char* sessionName) {
    if (sessionName == nullptr || !IsSiteKey(sessionName)) return;
    platform::DeleteRegistryTree(StoreKeyPath(sessionName));
}

bool RenameSiteInfo(const char* oldName, const char* newName, bool makeLastSession, bool (*nameTaken)(const char*)) {
    if (oldName == nullptr || newName == nullptr || *oldName == '\0' || *newName == '\0') return false;
    if (std::string_view(oldName) == newName) {
        DbgVsprintf("RenameSiteInfo", "ERROR. Strings are EQUAL : %s : %s. Returning FALSE", oldName, newName);
        return false;
    }
    if (!IsSiteKey(oldName)) return false;
    if (!IsSiteKey(newName) || (nameTaken != nullptr && nameTaken(newName))) {
        ShowNameTaken(newName);
        DbgVsprintf("RenameSiteInfo", "ERROR. %s already exist in tree.", newName);
        return false;
    }
    if (!MoveSiteKey(oldName, newName)) return false;
    if (makeLastSession) SetLastSession(newName);
    return true;
}
