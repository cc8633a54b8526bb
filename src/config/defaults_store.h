// The program's defaults and the last session in the store. Every operation opens its own key, flushes after writing
// and closes. A key that can be neither opened nor created is shown (message 7096) and the operation ends without
// effect; a missing or damaged value falls back to its default. Port and mode values belong to connection_defaults.h.
#pragma once

#include <string>

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
