// The icons of the list's entries. The image lists and the icons of file types belong to config/icon_lookup_window.h;
// the icon of drives is added here.
#pragma once

#include <windows.h>

#include "listing/directory_entry.h"

// Makes the image lists and gives them to the list view. False when that fails.
bool MakeListImages(HWND list);
// Replaces the icons by those for another resolution.
void ResizeListImages(HWND list, UINT dpi);
void DestroyListImages();
// The index of an entry's icon, the same in both image lists.
int ImageOf(const LVobject& entry);
