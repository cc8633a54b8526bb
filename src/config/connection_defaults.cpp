#include "config/connection_defaults.h"

#include <algorithm>
#include <iterator>

#include "config/store_key.h"
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
// Quirk: the replacements of the port and the packet size differ from their defaults, kept.
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
