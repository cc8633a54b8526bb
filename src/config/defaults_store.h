// Program defaults, port and mode values, last session and column widths in the store. Every operation opens its own
// key, flushes after writing and closes. A key that can be neither opened nor created is shown (message 7096) and the
// operation ends without effect; a missing or damaged value falls back to its default.
#pragma once

#include <string>

#include "config/settings.h"

inline constexpr char kRootKey[] = "Software\\Ambrel\\Corvane\\CurrentVersion\\Zarn32";
inline constexpr char kDefaultsKey[] = "Defaults";
// Full path of a key below the root.
std::string StoreKeyPath(const std::string& subkey);

// The order of start-up: program defaults first, then session, port and mode.
void LoadDefaults();
void SaveDefaults();
// The second set of defaults, used when "Defaults" is found new while the session is read.
void ResetDefaults();
// Name of the last session used, empty when there is none; at most 63 characters.
std::string GetLastSession();
// An empty name writes nothing.
void SetLastSession(const char* name);

// `keyName` is a site's key, or empty for "Defaults". Values from a site key are range checked, others are not.
PortInfo LoadPortInfo(const char* keyName);
PortInfo LoadDefaultPortInfo();
void SavePortInfo(const char* keyName, const PortInfo& port);
ModeInfo LoadModeInfo(const char* keyName);
ModeInfo LoadDefaultModeInfo();
void SaveModeInfo(const char* keyName, const ModeInfo& mode);

// Widths of the layout that gZarn.COLUMNS names; false for another layout. `widths` are pixels, first column first.
bool SaveColumnInfo(const std::int32_t* widths, int count);
// Reads into gZarn.iColumnLengths until a value is missing; true when all `count` were there.
bool LoadColumnInfo(int count);
