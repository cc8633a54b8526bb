#include "config/site_validation.h"

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "platform/system.h"

namespace {

constexpr unsigned char kFirstPrintable = 32;
constexpr unsigned char kFirstAccepted = 125;  // the closing brace, the tilde and all bytes of other alphabets
constexpr std::string_view kNeverInNames = "\"*,;<>?|";
constexpr std::string_view kSeparators = "/:\\";

bool IsValidName(std::string_view name, NameField field) {
    for (const char character : name) {
        if (!IsValidNameChar(character, field)) return false;
    }
    return true;
}

bool Refuse(const std::string& text) {
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
    return false;
}

bool Refuse(unsigned id) {
    return Refuse(CatalogueText(id));
}

bool RefuseMissingUser() {
    const std::string user = platform::UserName();
    const std::string reason = CatalogueText(MSG_NULL_REASON);
    const MessageInsert inserts[] = {user, reason};
    return Refuse(FormatCatalogueText(MSG_INVALID_USER_NAME, inserts));
}

}  // namespace

bool IsValidNameChar(char character, NameField field) {
    const auto byte = static_cast<unsigned char>(character);
    if (byte >= kFirstAccepted) return true;
    if (byte < kFirstPrintable) return false;
    if (field == NameField::SiteName) return character != '\\';
    if (kNeverInNames.find(character) != std::string_view::npos) return false;
    return field == NameField::Directory || kSeparators.find(character) == std::string_view::npos;
}

bool IsSiteValid(Site* site) {
    if (site == nullptr) return false;
    if (site->pszHost.empty()) return Refuse(MSG_HOST_NAME_NULL);
    if (!IsValidName(site->pszHost.view(), NameField::Host)) return Refuse(MSG_HOST_NAME_INVALID);
    if (site->pszSessionName && site->pszSessionName.empty()) {
        site->pszSessionName = OwnedText::Copy(site->pszHost.view());
    } else if (!IsValidName(site->pszSessionName.view(), NameField::SiteName)) {
        return Refuse(MSG_SITE_NAME_INVALID);
    }
    if (site->pszUID.empty()) return RefuseMissingUser();
    // Quirk: the message is the one for a site name, kept.
    if (!IsValidName(site->pszUID.view(), NameField::User)) return Refuse(MSG_SITE_NAME_INVALID);
    if (site->bAnonymous != 0 && gZarn.MAILADDR.empty()) return Refuse(MSG_ANONYMOUS_NEEDS_MAIL_ADDRESS);
    if (!IsValidName(site->pszDir.view(), NameField::Directory)) return Refuse(MSG_DIRECTORY_NAME_INVALID);
    DbgVsprintf("IsSiteValid", "Returning TRUE");
    return true;
}

std::string MakeSafeLocalName(std::string_view name) {
    std::string safe(name);
    for (char& character : safe) {
        if (!IsValidNameChar(character, NameField::Directory)) character = '~';
    }
    return safe;
}
