// Brings entries of the list up to date from the server: follows a link on demand, reads an entry's attributes after it
// was renamed or made. Links that a listing follows by itself are listing/symlinks.h.
#pragma once

#include "listing/directory_entry.h"

// Follows the link at `index` on the worker; the entry then shows the target, focused and selected. Shows a message
// when the link cannot be resolved.
void LV_ResolveObject(int index);
// Takes the entry's attributes from the server, or from the disk for a local one. Runs on the worker; an entry that is
// not found keeps what it has.
void LV_UpdateObject(LVobject* entry);
