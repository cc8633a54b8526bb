// The extensions that a user can choose a transfer mode for: those of the mode map, then those that the shell
// registers. Makes file types as it meets them (file_types.h); writes nothing.
#pragma once

#include <vector>

#include "config/mode_map_store.h"

// Adds every extension of the mode map to `list`, unchanged; returns how many were added. One without a description
// gets the built-in one.
int RegQueryZarnDefaults(std::vector<ModeMapItem>& list);
// Adds every extension that the shell registers and `list` lacks, whatever its case; returns how many were added.
int RegQueryRootClasses(std::vector<ModeMapItem>& list);
