#include "config/settings_table.h"

namespace {

constexpr std::uint32_t kPlacement = static_cast<std::uint32_t>(kDefaultPlacement);
constexpr std::uint32_t kMailAddressSize = 129;
constexpr std::uint32_t kLogFileSize = 127;

constexpr ProgramSetting Switch(const char* name, std::uint32_t ZarnSettings::*field, std::uint32_t firstRun,
                                std::uint32_t whenAbsent, std::uint32_t reset) {
    return {.name = name, .unsignedField = field, .firstRun = firstRun, .whenAbsent = whenAbsent, .reset = reset};
}

constexpr ProgramSetting Position(const char* name, std::int32_t ZarnSettings::*field, std::uint32_t value) {
    return {.name = name, .signedField = field, .firstRun = value, .whenAbsent = value, .reset = value};
}

constexpr ProgramSetting Text(const char* name, std::string ZarnSettings::*field, std::uint32_t longest) {
    return {.name = name, .textField = field, .longest = longest};
}

// Quirk: first run and reset differ in VERBOSE, SENDUNIQUE and ICONS; an absent COLUMNS names no layout and an absent
// ICONS is on, kept.
constexpr ProgramSetting kSettings[] = {
    Switch("AUTOSTART", &ZarnSettings::AUTOSTART, 0, 0, 0),
    Switch("SAVEONEXIT", &ZarnSettings::SAVEONEXIT, 1, 1, 1),
    Switch("AUTOSIZE", &ZarnSettings::AUTOSIZE, 0, 0, 0),
    Switch("BELL", &ZarnSettings::BELL, 0, 0, 0),
    Switch("RESOLVELINKS", &ZarnSettings::RESOLVELINKS, 0, 0, 0),
    Switch("SENDUNIQUE", &ZarnSettings::SENDUNIQUE, 1, 1, 0),
    Switch("RECVUNIQUE", &ZarnSettings::RECVUNIQUE, 0, 0, 0),
    Switch("VERBOSE", &ZarnSettings::VERBOSE, 0, 0, 1),
    Switch("PROMPT", &ZarnSettings::PROMPT, 0, 0, 0),
    Switch("bMaximized", &ZarnSettings::bMaximized, 0, 0, 0),
    Switch("bMinimized", &ZarnSettings::bMinimized, 0, 0, 0),
    Text("MAILADDR", &ZarnSettings::MAILADDR, kMailAddressSize),
    Switch("COLUMNS", &ZarnSettings::COLUMNS, kColumnsWindows, 0, kColumnsWindows),
    Switch("ICONS", &ZarnSettings::ICONS, 0, 1, 1),
    Position("xPos", &ZarnSettings::xPos, kPlacement),
    Position("yPos", &ZarnSettings::yPos, kPlacement),
    Position("nWidth", &ZarnSettings::nWidth, kPlacement),
    Position("nHeight", &ZarnSettings::nHeight, kPlacement),
    Position("nSplit", &ZarnSettings::nSplit, 180),
    Text("LOGFILE", &ZarnSettings::LOGFILE, kLogFileSize),
    Switch("LOGGING", &ZarnSettings::LOGGING, 0, 0, 0),
};

void SetAll(ZarnSettings& settings, std::uint32_t ProgramSetting::*value) {
    for (const ProgramSetting& row : kSettings) {
        if (row.IsText()) {
            (settings.*row.textField).clear();
        } else {
            SetNumber(settings, row, row.*value);
        }
    }
}

}  // namespace

std::span<const ProgramSetting> ProgramSettings() {
    return kSettings;
}

std::uint32_t GetNumber(const ZarnSettings& settings, const ProgramSetting& row) {
    if (row.unsignedField != nullptr) return settings.*row.unsignedField;
    if (row.signedField != nullptr) return static_cast<std::uint32_t>(settings.*row.signedField);
    return 0;
}

void SetNumber(ZarnSettings& settings, const ProgramSetting& row, std::uint32_t value) {
    if (row.unsignedField != nullptr) settings.*row.unsignedField = value;
    if (row.signedField != nullptr) settings.*row.signedField = static_cast<std::int32_t>(value);
}

void SetFirstRunValues(ZarnSettings& settings) {
    SetAll(settings, &ProgramSetting::firstRun);
}

void SetResetValues(ZarnSettings& settings) {
    SetAll(settings, &ProgramSetting::reset);
}
