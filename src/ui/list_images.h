// The icons of the list pane: a large and a small image list that are kept in step, one index for both. The tree's
// icons are its own (tree_pane.h); which icon a file type has is found by the configuration.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include "listing/directory_entry.h"

// Makes both lists for a resolution and gives them to the list view; icons met before are taken along. False when an
// icon of the program is missing.
bool MakeListImages(HWND list, UINT dpi);
void DestroyListImages();
// Index of an entry's icon in both lists.
int ImageOf(const LVobject& entry);
