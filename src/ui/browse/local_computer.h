// The local computer in the tree: its node opens into drives and these into folders, shown in the list like remote
// ones. Selecting a folder makes it the process's current one, which is where files are received.
#pragma once

#include <string>

#include "listing/tree_node.h"

// Adds the top-level node and its drives.
TVobject* AddLocalComputer();
bool IsLocalNode(const TVobject* node);
// Full path of a drive's or folder's node; empty for the computer itself.
std::string LocalNodePath(const TVobject* node);
// Puts the folders below a drive or folder into the tree and opens it there; the list stays as it is.
void OpenLocalNodeInPlace(TVobject* node);
// Lists a local node; runs on the worker. False, with a message for the user, when the folder cannot be read.
bool ListLocalNode(TVobject* node);
