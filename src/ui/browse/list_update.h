// Entries of the list brought up to date from the server: a link followed on demand, an entry after it was renamed or
// made. Not here: what a listing follows by itself.
#pragma once

#include "listing/directory_entry.h"

// Follows the link at `index` on the worker; it then shows as what it leads to, focused and selected. The user is told
// when it leads nowhere.
void LV_ResolveObject(int index);
// Takes the entry's attributes from the server, or from the disk for a local one. Runs on the worker; an entry that is
// not found keeps what it has.
void LV_UpdateObject(LVobject* entry);
