#include "config/icon_info.h"

#include "foundation/foundation_view.h"
#include "foundation/number_text.h"
#include "foundation/trace.h"

IconView gIconView;

namespace {

constexpr std::string_view kOwnIcon = "%1";  // the file is its own icon
constexpr std::size_t kLongestInfo = 519;
constexpr std::size_t kNumberRead = 11;
constexpr std::size_t kNumberAccepted = 12;

int ReadNumber(std::string_view text) {
    if (text.size() > kNumberAccepted) {
        ShowMessageBox("IconInfo Stuff hosed", nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
    }
    return Zarn_atoi(text.substr(0, kNumberRead));
}

// Quirk: the text is read from an apostrophe to the next double quote, kept.
bool ReadQuoted(std::string_view info, std::size_t apostrophe, std::string& path) {
    const std::size_t end = info.find('"', apostrophe + 1);
    if (end == std::string_view::npos) {
        DbgVsprintf("GetIconFromIconInfo", "ERROR. Expecting a second Quote. Returning NULL");
        return false;
    }
    path = info.substr(apostrophe + 1, end - apostrophe - 1);
    return true;
}

// True when the index is final.
bool FindIcon(const FTobject& type, std::uint16_t& index) {
    if (type.isFolder) {
        if (gIconView.folderIndex == nullptr) return false;
        index = gIconView.folderIndex();
        return true;
    }
    if (type.pszIconInfo.empty() || type.pszIconInfo.view() == kOwnIcon) return true;
    if (gIconView.indexOf == nullptr) return false;
    index = gIconView.indexOf(type.pszIconInfo.c_str());
    return true;
}

}  // namespace

bool ParseIconInfo(std::string_view iconInfo, std::string& path, int& number) {
    const std::string_view info = iconInfo.substr(0, kLongestInfo);
    number = 0;
    const std::size_t comma = info.find(',');
    if (comma != std::string_view::npos) {
        path = info.substr(0, comma);
        number = ReadNumber(info.substr(comma + 1));
        return !path.empty();
    }
    const std::size_t apostrophe = info.find('\'');
    if (apostrophe != std::string_view::npos && info.find(' ') == std::string_view::npos) {
        return ReadQuoted(info, apostrophe, path);
    }
    path = info;
    return !path.empty();
}

std::uint16_t IconOf(const FTobject* type) {
    if (type == nullptr) return kGenericFileIcon;
    if (!type->iconKnown) {
        std::uint16_t index = kGenericFileIcon;
        type->iconKnown = FindIcon(*type, index);
        type->iIcon = index;
    }
    return type->iIcon;
}
