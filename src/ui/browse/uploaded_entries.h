// Uploaded files and folders join the list while it shows the folder that they are sent to. Starting an upload is
// drag/drops.h. Window's thread only.
#pragma once

#include <string>

#include "config/site.h"
#include "listing/directory_entry.h"

// An upload starts. A worker that ended late may have left the names of an earlier one.
void BeginUploadedEntries();
// Adds an entry that was sent to `targetFolder` of the site (empty: its current folder), or replaces the entry of the
// same name. Frees the entry when the list shows another folder.
void LV_AddTransferItem(const Site* site, const std::string& targetFolder, LVobjectPtr entry);
// The upload has ended, or none began.
void EndUploadedEntries();
