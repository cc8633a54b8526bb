// Lists a folder of the local disk, or the drives, the way remote folders are listed: as entries handed to the listing
// view. Which node is selected and how the tree shows it belongs to the windows.
#pragma once

#include <string>

#include "listing/directory_entry.h"
#include "listing/tree_node.h"
#include "platform/files.h"

bool IsLocalNode(const TVobject* node);
// Full path of a drive's or folder's node; empty for the computer itself.
std::string LocalNodePath(const TVobject* node);

// Null when memory is short. Quirk: a size of 4 GiB or more becomes 4 GiB less one byte, kept.
LVobjectPtr MakeLocalEntry(const platform::FileInfo& info);
LVobjectPtr MakeDriveEntry(const std::string& name);

// Lists a drive or folder, which becomes the process's current folder, or the drives of the computer; runs on the
// worker. False, with a message for the user, when the folder cannot be read.
bool ListLocalNode(TVobject* node);
