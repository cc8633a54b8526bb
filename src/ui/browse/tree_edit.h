// Changing nodes of the tree: renaming in place (sites in the store, folders on the server or the disk), naming a new
// folder, deleting a site.
#pragma once

#include <windows.h>

#include "listing/tree_node.h"

// True when the node's label may be edited.
bool TV_BeginLabelEdit(TVobject* node);
// Null text: cancelled. The label changes when the rename has succeeded.
void TV_HandleEndLabelEdit(TVobject* node, const wchar_t* newText);
// Inserts a new folder below `parent` and starts the edit of its name.
void NameNewFolderInTree(TVobject* parent);
// Asks, then deletes the site with all that is stored of it. False when nothing was deleted.
bool DeleteSiteNode(TVobject* node);
