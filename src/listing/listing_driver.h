// Lists a folder of the tree into the list pane: LIST into the dump file, the file back line by line, parsed by host
// type, handed over in batches. Runs on the worker.
#pragma once

#include "listing/tree_node.h"

// Changes to the node's folder if need be, lists it and shows it. FTP_COMPLETE, FTP_ERROR, FTP_NOTCONNECTED or the
// listing command's result.
int LV_ListDirectory(TVobject* node);
// Shows what the dump file holds; one console line tells how many lines could not be read.
int LV_ParseObjects(TVobject* node);
// The road of a change of folder: busy flag, CWD when needed, listing, titles. The result of LV_ListDirectory, 0 when
// the change itself failed.
int LV_ChangeDir(TVobject* node);
// Changes the remote directory for a node before it is listed.
bool TV_PreSelect(TVobject* node);
