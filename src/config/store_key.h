// Keys of the configuration store: where the root is, opening a key below it, and reporting a value that could not be
// written. What the keys hold belongs to the files that read and write them.
#pragma once

#include <string>
#include <string_view>

#include "platform/registry.h"

inline constexpr char kRootKey[] = "Software\\Ambrel\\Corvane\\CurrentVersion\\Zarn32";
inline constexpr char kDefaultsKey[] = "Defaults";
// Another root than kRootKey, for tests; null returns to kRootKey. Before anything else is called.
void SetStoreRoot(const char* root);
// Full path of a key below the root; the root itself for an empty name.
std::string StoreKeyPath(const std::string& subkey);
// Opens or creates a key below the root; not open on failure, which is shown (message 7096). `created` (may be null)
// receives whether the key is new.
platform::RegistryKey OpenStoreKey(const std::string& subkey, bool* created);
// Traces a failed write under the name of the value. `error` is the result of the write; 0 does nothing.
void ReportFailedWrite(const char* callerName, std::string_view valueName, int error);
