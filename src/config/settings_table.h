// One row per program value of the store: its name, where it lives in the settings, what a new store holds, what an
// absent value reads as, what the reset writes. The order of the rows is the order of writing.
#pragma once

#include <cstdint>
#include <span>

#include "config/settings.h"

struct NumberSetting {
    const char* name;
    std::uint32_t ZarnSettings::* unsignedField;  // one of the two fields is set
    std::int32_t ZarnSettings::* signedField;
    std::uint32_t firstRun;
    std::uint32_t whenAbsent;
    std::uint32_t reset;
};
struct TextSetting {
    const char* name;
    std::string ZarnSettings::* field;
    std::uint32_t longest;  // bytes, terminator included
};

std::span<const NumberSetting> NumberSettings();
std::span<const TextSetting> TextSettings();
std::uint32_t GetNumber(const ZarnSettings& settings, const NumberSetting& row);
void SetNumber(ZarnSettings& settings, const NumberSetting& row, std::uint32_t value);
