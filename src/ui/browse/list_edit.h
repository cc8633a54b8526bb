// Changing the entries of the list: renaming in place, the new folder that is named in place, deleting. Remote work
// runs on the worker; the entry changes when the server has agreed.
#pragma once

#include <windows.h>

#include "listing/tree_node.h"

// True when the entry's name may be edited. Prepares the edit field (limit, a link's own name).
bool LV_BeginLabelEdit(int index);
// Null: cancelled. Renames the entry, or makes the new folder under the name that was typed.
void LV_HandleEndLabelEdit(int index, const wchar_t* newText);

// Starts the naming of a new folder below `folder`: in the list when it shows that folder, else in the tree.
void newfolder_fx(TVobject* folder);
// Deletes the selected entries one by one on the worker and stops at the first failure. Asks before each where the
// settings say so. False when nothing was selected or the worker is busy.
bool delete_fx();
