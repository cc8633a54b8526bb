// Lists a remote folder into the list pane: receives LIST into the dump file, parses the file line by line for the host
// type, and hands the entries over in batches. Runs on the worker. Parsing one line belongs to line_parser.h.
#pragma once

#include "listing/tree_node.h"

// Changes to the node's folder if need be, lists it and shows it. FTP_COMPLETE, FTP_ERROR, FTP_NOTCONNECTED or the
// listing command's result.
int LV_ListDirectory(TVobject* node);
// Shows the contents of the dump file; one console line says how many lines could not be read.
int LV_ParseObjects(TVobject* node);
// Changes to the node's folder and lists it, with busy flag and status text. The result of LV_ListDirectory, or 0 when
// the change itself failed.
int LV_ChangeDir(TVobject* node);
// Changes the remote directory to a node's before it is listed; false when it failed or the node has no path.
bool TV_PreSelect(TVobject* node);
