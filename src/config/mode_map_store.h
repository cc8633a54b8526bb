// The user's choices by file extension in the store: one key per extension below "Defaults\ModeMap", named by the
// extension with its dot. Knows nothing of the list of types in memory (file_types.h).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "config/file_type.h"
#include "platform/registry.h"

inline constexpr std::size_t kDescriptionBytes = 260;
inline constexpr std::size_t kIconInfoBytes = 520;

// Read only; not open when there is none.
platform::RegistryKey GetModeMapKey();
platform::RegistryKey GetModeMapSubKey(std::string_view extension);
// Extensions that have a key, in the store's order and spelling.
std::vector<std::string> ModeMapExtensions();

// True when a text can name an extension in the store: a dot, more than that, and nothing that leads to another key.
bool IsExtensionKey(std::string_view extension);

// One value each; nothing when it is missing or damaged. `mode` is 'A', 'I' or 'L'.
bool GetZarnMapMode(const platform::RegistryKey& key, char& mode);
bool GetZarnMapMode(std::string_view extension, char& mode);
std::optional<std::string> GetZarnMapDescription(std::string_view extension);
std::optional<std::string> GetZarnIconInfo(std::string_view extension);

enum ModeMapChange : std::uint32_t { kModeChanged = 1, kDescriptionChanged = 2, kIconChanged = 4 };
struct ModeMapItem {
    const FTobject* type = nullptr;  // not owned
    std::uint32_t changed = 0;       // ModeMapChange bits
};
// Writes the changed values. False when the key cannot be opened or created (shown, message 7096). After a success call
// RememberExtension (file_types.h), so that the list of types looks at the extension again.
bool RegSaveFileType(const ModeMapItem& item);
