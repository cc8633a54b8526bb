// Port and transfer-mode values in the store: those of "Defaults" and a site's own. Loading the rest of "Defaults"
// belongs to defaults_store.h, the site itself to site_store.h.
#pragma once

#include "config/settings.h"

// `keyName` is a site's key, or empty for "Defaults". Values from a site key are range checked, others are not:
// check a number from "Defaults" before it sizes anything.
PortInfo LoadPortInfo(const char* keyName);
PortInfo LoadDefaultPortInfo();
void SavePortInfo(const char* keyName, const PortInfo& port);
ModeInfo LoadModeInfo(const char* keyName);
ModeInfo LoadDefaultModeInfo();
void SaveModeInfo(const char* keyName, const ModeInfo& mode);
// Puts a site's own port and mode values in force before it is connected. The values of "Defaults" are used for
// what its key lacks and for a port that cannot be used.
void ApplySiteConnectionSettings(const char* siteName);
