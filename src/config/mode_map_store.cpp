#include "config/mode_map_store.h"

#include "config/store_key.h"
#include "foundation/trace.h"

using platform::RegistryKey;
using platform::RegistryRoot;

namespace {

constexpr char kModeMapKey[] = "Defaults\\ModeMap";
constexpr char kModeValue[] = "TransferMode";
constexpr char kDescriptionValue[] = "Description";
constexpr char kIconValue[] = "DefaultIcon";
constexpr std::size_t kModeBytes = 2;  // the character and a zero byte
constexpr std::size_t kLongestExtension = 255;

std::optional<std::string> ReadText(std::string_view extension, const char* name, std::size_t longest) {
    const RegistryKey key = GetModeMapSubKey(extension);
    if (!key.IsOpen()) return std::nullopt;
    return key.ReadText(name, longest);
}

void Save(RegistryKey& key, const FTobject& type, std::uint32_t changed) {
    if ((changed & kModeChanged) != 0) {
        const std::uint8_t mode[kModeBytes] = {static_cast<std::uint8_t>(type.TransferMode[0]), 0};
        ReportFailedWrite("RegSaveFileType", kModeValue, key.WriteBytes(kModeValue, mode));
    }
    if ((changed & kDescriptionChanged) != 0) {
        ReportFailedWrite("RegSaveFileType", kDescriptionValue,
                          key.WriteText(kDescriptionValue, type.pszDescription.c_str()));
    }
    if ((changed & kIconChanged) != 0) {
        ReportFailedWrite("RegSaveFileType", kIconValue, key.WriteText(kIconValue, type.pszIconInfo.c_str()));
    }
}

}  // namespace

bool IsExtensionKey(std::string_view extension) {
    return extension.size() > 1 && extension.size() <= kLongestExtension && extension.front() == '.' &&
           extension.find('\\') == std::string_view::npos;
}

RegistryKey GetModeMapKey() {
    return RegistryKey::Open(RegistryRoot::CurrentUser, StoreKeyPath(kModeMapKey));
}

RegistryKey GetModeMapSubKey(std::string_view extension) {
    if (!IsExtensionKey(extension)) return {};
    return RegistryKey::Open(RegistryRoot::CurrentUser, StoreKeyPath(kModeMapKey) + "\\" + std::string(extension));
}

std::vector<std::string> ModeMapExtensions() {
    std::vector<std::string> names;
    const RegistryKey key = GetModeMapKey();
    if (key.IsOpen()) key.ListSubkeys(names);
    std::erase_if(names, [](const std::string& name) { return !IsExtensionKey(name); });
    return names;
}

bool GetZarnMapMode(const RegistryKey& key, char& mode) {
    const auto bytes = key.ReadBytes(kModeValue, kModeBytes);
    if (!bytes || bytes->empty()) return false;
    const char stored = static_cast<char>(bytes->front());
    if (stored != 'A' && stored != 'I' && stored != 'L') return false;
    mode = stored;
    return true;
}

bool GetZarnMapMode(std::string_view extension, char& mode) {
    const RegistryKey key = GetModeMapSubKey(extension);
    return key.IsOpen() && GetZarnMapMode(key, mode);
}

std::optional<std::string> GetZarnMapDescription(std::string_view extension) {
    return ReadText(extension, kDescriptionValue, kDescriptionBytes);
}

std::optional<std::string> GetZarnIconInfo(std::string_view extension) {
    return ReadText(extension, kIconValue, kIconInfoBytes);
}

bool RegSaveFileType(const ModeMapItem& item) {
    if (item.type == nullptr || !IsExtensionKey(item.type->pszType.view())) return false;
    const std::string path =
        FormatBounded("RegSaveFileType", kPathBuffer, "%s\\%s", kModeMapKey, item.type->pszType.c_str());
    RegistryKey key = OpenStoreKey(path, nullptr);
    if (!key.IsOpen()) return false;
    Save(key, *item.type, item.changed);
    return true;
}
