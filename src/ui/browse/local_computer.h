// The local computer in the tree: its node opens into drives and these into folders. Listing them belongs to
// listing/local_listing.h.
#pragma once

#include "listing/tree_node.h"

// Adds the top-level node and its drives.
TVobject* AddLocalComputer();
// Puts the folders below a drive or folder into the tree and opens it there; the list stays as it is.
void OpenLocalNodeInPlace(TVobject* node);
