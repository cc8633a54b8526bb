#include "config/defaults_store.h"

#include "config/connection_defaults.h"
#include "config/settings.h"
#include "config/settings_table.h"
#include "config/store_key.h"
#include "foundation/log_file.h"
#include "foundation/trace.h"

using platform::RegistryKey;

namespace {

constexpr char kSessionValue[] = "SESSION";
constexpr std::size_t kSessionSize = 64;

// False when the value is missing or damaged.
bool ReadSetting(const RegistryKey& key, const ProgramSetting& row) {
    if (row.IsText()) {
        const auto text = key.ReadText(row.name, row.longest);
        gZarn.*row.textField = text.value_or(std::string());
        return text.has_value();
    }
    const auto number = key.ReadNumber(row.name);
    SetNumber(gZarn, row, number.value_or(row.whenAbsent));
    return number.has_value();
}

int WriteSetting(RegistryKey& key, const ProgramSetting& row) {
    if (row.IsText()) return key.WriteText(row.name, gZarn.*row.textField);
    return key.WriteNumber(row.name, GetNumber(gZarn, row));
}

// Writes a new "Defaults" key: the program values, ports and modes, and empty keys for the column widths.
void WriteNewDefaultsKey() {
    SaveDefaults();
    SavePortInfo("", PortInfo());
    SaveModeInfo("", ModeInfo());
    // Empty, so that the first look at the widths finds its key.
    OpenStoreKey(std::string(kDefaultsKey) + "\\View\\Windows", nullptr);
    OpenStoreKey(std::string(kDefaultsKey) + "\\View\\Unix", nullptr);
}

}  // namespace

void LoadConfiguration() {
    LoadDefaults();
    gZarn.SESSION = GetLastSession();
    gZarn.port = gZarn.defaultPort = LoadPortInfo("");
    gZarn.mode = gZarn.defaultMode = LoadModeInfo("");
    ApplyLogSettings();
}

void ApplyLogSettings() {
    SetLogFileName(gZarn.LOGFILE.c_str());
    gTrace.logging = gZarn.LOGGING != 0 && !gZarn.LOGFILE.empty();
}

void LoadDefaults() {
    bool created = false;
    const RegistryKey key = OpenStoreKey(kDefaultsKey, &created);
    if (!key.IsOpen()) return;
    if (created) {
        SetFirstRunValues(gZarn);
        WriteNewDefaultsKey();
        return;
    }
    bool hasLogFile = true;
    for (const ProgramSetting& row : ProgramSettings()) {
        if (!ReadSetting(key, row) && row.textField == &ZarnSettings::LOGFILE) hasLogFile = false;
    }
    // LOGGING counts only with a file name that could be read, even an empty one.
    if (!hasLogFile) gZarn.LOGGING = 0;
}

void SaveDefaults() {
    RegistryKey key = OpenStoreKey(kDefaultsKey, nullptr);
    if (!key.IsOpen()) return;
    for (const ProgramSetting& row : ProgramSettings()) {
        ReportFailedWrite("SaveDefaults", row.name, WriteSetting(key, row));
    }
}

void ResetDefaults() {
    SetResetValues(gZarn);
    WriteNewDefaultsKey();
}

std::string GetLastSession() {
    bool created = false;
    const RegistryKey key = OpenStoreKey(kDefaultsKey, &created);
    if (!key.IsOpen()) return {};
    if (created) ResetDefaults();
    return key.ReadText(kSessionValue, kSessionSize).value_or(std::string());
}

void SetLastSession(const char* name) {
    if (name == nullptr || *name == '\0') return;
    RegistryKey key = OpenStoreKey(kDefaultsKey, nullptr);
    if (!key.IsOpen()) return;
    ReportFailedWrite("SetLastSession", kSessionValue, key.WriteText(kSessionValue, name));
    gZarn.SESSION = name;
}
