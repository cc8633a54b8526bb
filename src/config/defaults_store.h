// Program defaults, port and mode values, last session and column widths in the store. Every operation opens its own
// key, flushes after writing and closes. A key that can be neither opened nor created is shown (message 7096) and the
// operation ends without effect; a missing or damaged value falls back to its default.
#pragma once

#include <string>
#include <string_view>

#include "config/settings.h"
#include "platform/registry.h"

inline constexpr char kRootKey[] = "Software\\Ambrel\\Corvane\\CurrentVersion\\Zarn32";
inline constexpr char kDefaultsKey[] = "Defaults";
// Another root than kRootKey, for tests; null returns to kRootKey. Before anything else is called.
void SetStoreRoot(const char* root);
// Full path of a key below the root; the root itself for an empty name.
std::string StoreKeyPath(const std::string& subkey);
// Opens or creates a key below the root; a failure is shown. `created` (may be null) tells whether the key is new.
platform::RegistryKey OpenStoreKey(const std::string& subkey, bool* created);
// Traces a failed write, `error` being its result, under the name of the value.
void ReportFailedWrite(const char* callerName, std::string_view valueName, int error);

// The order of start-up: program defaults first, then session, port and mode. Hands the log file to the trace.
void LoadConfiguration();
// The log file's name and switch, from the settings to the trace facility.
void ApplyLogSettings();

// Reads the program values into gZarn. A new "Defaults" key gets the first-run values, ports and modes included.
void LoadDefaults();
void SaveDefaults();
// The second set of defaults, used when "Defaults" is found new while the session is read.
void ResetDefaults();
// Name of the last session used, empty when there is none; at most 63 characters.
std::string GetLastSession();
// An empty name writes nothing.
void SetLastSession(const char* name);

// `keyName` is a site's key, or empty for "Defaults". Values from a site key are range checked, others are not: who
// takes a number from "Defaults" to size something checks it.
PortInfo LoadPortInfo(const char* keyName);
PortInfo LoadDefaultPortInfo();
void SavePortInfo(const char* keyName, const PortInfo& port);
ModeInfo LoadModeInfo(const char* keyName);
ModeInfo LoadDefaultModeInfo();
void SaveModeInfo(const char* keyName, const ModeInfo& mode);
// Puts a site's own port and mode values in force before it is connected; a site whose key holds none of the one or
// the other takes those of "Defaults", and so does a port that cannot be used.
void ApplySiteConnectionSettings(const char* siteName);

// Widths of the layout that gZarn.COLUMNS names; false for another layout. `widths` are pixels, first column first.
bool SaveColumnInfo(const std::int32_t* widths, int count);
// Reads into gZarn.iColumnLengths until a value is missing; true when all `count` were there.
bool LoadColumnInfo(int count);
