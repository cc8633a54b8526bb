// Port values, mode values and column widths of defaults_store.h.
#include <algorithm>
#include <iterator>

#include "config/defaults_store.h"
#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/text_compare.h"
#include "foundation/trace.h"

using platform::RegistryKey;
using platform::RegistryRoot;

namespace {

struct PortValue {
    const char* name;
    std::uint32_t PortInfo::*field;
    std::uint32_t least;
    std::uint32_t most;
    std::uint32_t replacement;
};
// The replacements of the port and the packet size differ from their defaults, as wanted.
constexpr PortValue kPortValues[] = {
    {"TIMEOUT", &PortInfo::timeout, 0, 500, 65},
    {"RETRIES", &PortInfo::retries, 0, 10, 0},
    {"FTPPORT", &PortInfo::ftpPort, 1, 3000, 0},
    {"PACKETSIZE", &PortInfo::packetSize, 256, 8096, 1024},
};

PortInfo ReadPort(const RegistryKey& key, bool checkRange) {
    PortInfo port;
    for (const PortValue& value : kPortValues) {
        const std::optional<std::uint32_t> stored = key.ReadNumber(value.name);
        if (!stored) continue;
        const bool replace = checkRange && (*stored < value.least || *stored > value.most);
        port.*value.field = replace ? value.replacement : *stored;
    }
    return port;
}

ModeInfo ReadMode(const RegistryKey& key) {
    ModeInfo mode;
    const auto caseConversion = static_cast<std::int32_t>(key.ReadNumber("CASE").value_or(0));
    mode.caseConversion = caseConversion < 0 ? 0 : caseConversion;
    const auto character = key.ReadBytes("MODE", 1);
    if (character && character->size() == 1 && (character->front() == 'I' || character->front() == 'L')) {
        mode.mode = static_cast<char>(character->front());
    }
    mode.useModeMapping = static_cast<std::int32_t>(key.ReadNumber("USEMODEMAPPING").value_or(0));
    return mode;
}

struct ColumnLayout {
    std::uint32_t columns;
    const char* key;
};
constexpr ColumnLayout kLayouts[] = {{kColumnsWindows, "View\\Windows"}, {kColumnsUnix, "View\\Unix"}};

// The key of the layout in use, below the root; empty when no layout has that many columns.
std::string LayoutKey() {
    for (const ColumnLayout& layout : kLayouts) {
        if (layout.columns == gZarn.COLUMNS) return std::string(kDefaultsKey) + "\\" + layout.key;
    }
    return {};
}

std::string ColumnValueName(const char* callerName, int index) {
    constexpr std::size_t kNameBuffer = 5;  // four characters and the terminator
    return FormatBounded(callerName, kNameBuffer, "Col%d", index + 1);
}

}  // namespace

PortInfo LoadDefaultPortInfo() {
    bool created = false;
    {
        const RegistryKey key = OpenStoreKey(kDefaultsKey, &created);
        if (!key.IsOpen()) return {};
        if (!created) return ReadPort(key, false);
    }
    SavePortInfo("", PortInfo());
    return {};
}

PortInfo LoadPortInfo(const char* keyName) {
    if (IsMissing(keyName)) return LoadDefaultPortInfo();
    bool created = false;
    {
        const RegistryKey key = OpenStoreKey(keyName, &created);
        if (!key.IsOpen()) return {};
        if (!created) return ReadPort(key, true);
    }
    const PortInfo port = LoadDefaultPortInfo();
    SavePortInfo(keyName, port);
    return port;
}

void SavePortInfo(const char* keyName, const PortInfo& port) {
    RegistryKey key = OpenStoreKey(IsMissing(keyName) ? kDefaultsKey : keyName, nullptr);
    if (!key.IsOpen()) return;
    for (const PortValue& value : kPortValues) {
        ReportFailedWrite("SavePortInfo", value.name, key.WriteNumber(value.name, port.*value.field));
    }
}

ModeInfo LoadDefaultModeInfo() {
    bool created = false;
    {
        const RegistryKey key = OpenStoreKey(kDefaultsKey, &created);
        if (!key.IsOpen()) return {};
        if (!created) return ReadMode(key);
    }
    SaveModeInfo("", ModeInfo());
    return {};
}

ModeInfo LoadModeInfo(const char* keyName) {
    if (IsMissing(keyName)) return LoadDefaultModeInfo();
    bool created = false;
    {
        const RegistryKey key = OpenStoreKey(keyName, &created);
        if (!key.IsOpen()) return {};
        if (!created) return ReadMode(key);
    }
    const ModeInfo mode = LoadDefaultModeInfo();
    SaveModeInfo(keyName, mode);
    return mode;
}

void SaveModeInfo(const char* keyName, const ModeInfo& mode) {
    RegistryKey key = OpenStoreKey(IsMissing(keyName) ? kDefaultsKey : keyName, nullptr);
    if (!key.IsOpen()) return;
    const auto character = static_cast<std::uint8_t>(mode.mode);
    ReportFailedWrite("SaveModeInfo", "CASE", key.WriteNumber("CASE", static_cast<std::uint32_t>(mode.caseConversion)));
    ReportFailedWrite("SaveModeInfo", "MODE", key.WriteBytes("MODE", std::span(&character, 1)));
    ReportFailedWrite("SaveModeInfo", "USEMODEMAPPING",
                      key.WriteNumber("USEMODEMAPPING", static_cast<std::uint32_t>(mode.useModeMapping)));
}

bool SaveColumnInfo(const std::int32_t* widths, int count) {
    const std::string layout = LayoutKey();
    if (layout.empty() || widths == nullptr) return false;
    RegistryKey key = OpenStoreKey(layout, nullptr);
    if (!key.IsOpen()) return false;
    for (int index = 0; index < count && index < static_cast<int>(gZarn.COLUMNS); ++index) {
        const std::string name = ColumnValueName("SaveColumnInfo", index);
        ReportFailedWrite("SaveColumnInfo", name,
                          key.WriteNumber(name.c_str(), static_cast<std::uint32_t>(widths[index])));
    }
    return true;
}

bool LoadColumnInfo(int count) {
    const std::string layout = LayoutKey();
    if (layout.empty() || count > kMostColumns) return false;
    const std::string path = StoreKeyPath(layout);
    const RegistryKey key = RegistryKey::Open(RegistryRoot::CurrentUser, path);
    if (!key.IsOpen()) {
        // The text of a failed creation, although nothing is created here, as wanted.
        const OwnedText text = Zarn_ResVsprintf(MSG_CANNOT_CREATE_KEY, path);
        ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
        return false;
    }
    for (int index = 0; index < count; ++index) {
        const auto width = key.ReadNumber(ColumnValueName("LoadColumnInfo", index).c_str());
        if (!width) return false;
        gZarn.iColumnLengths[index] = static_cast<std::int32_t>(*width);
    }
    return true;
}

void ApplySiteConnectionSettings(const char* siteName) {
    DbgVsprintf("ApplySiteConnectionSettings", "Entered");
    gZarn.port = gZarn.defaultPort;
    gZarn.mode = gZarn.defaultMode;
    const RegistryKey key = RegistryKey::Open(RegistryRoot::CurrentUser, StoreKeyPath(siteName));
    if (!key.IsOpen()) return;
    const auto isStored = [&key](const PortValue& value) { return key.ReadNumber(value.name).has_value(); };
    if (std::any_of(std::begin(kPortValues), std::end(kPortValues), isStored)) gZarn.port = ReadPort(key, true);
    if (gZarn.port.ftpPort == 0) gZarn.port.ftpPort = gZarn.defaultPort.ftpPort;
    if (key.ReadBytes("MODE", 1)) gZarn.mode = ReadMode(key);
}
