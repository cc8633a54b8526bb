// One row per program value of the store: its name, where it lives in the settings, its value in a new store, the
// value read when it is absent, the value that the reset writes. The order of the rows is the order of writing. Reading
// and writing the store itself belongs to defaults_store.h.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "config/settings.h"

// Exactly one of the three fields is set.
struct ProgramSetting {
    const char* name = nullptr;
    std::uint32_t ZarnSettings::*unsignedField = nullptr;
    std::int32_t ZarnSettings::*signedField = nullptr;
    std::string ZarnSettings::*textField = nullptr;
    // Of numbers; texts are empty in all three cases.
    std::uint32_t firstRun = 0;
    std::uint32_t whenAbsent = 0;
    std::uint32_t reset = 0;
    // Of texts: bytes, terminator included.
    std::uint32_t longest = 0;

    bool IsText() const { return textField != nullptr; }
};

std::span<const ProgramSetting> ProgramSettings();
std::uint32_t GetNumber(const ZarnSettings& settings, const ProgramSetting& row);
void SetNumber(ZarnSettings& settings, const ProgramSetting& row, std::uint32_t value);

// The settings that have rows, as in a new store, or as the reset writes them; every other field is kept.
void SetFirstRunValues(ZarnSettings& settings);
void SetResetValues(ZarnSettings& settings);
