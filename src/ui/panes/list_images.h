// Which icon an entry of the list has. The image lists and the icons of file types are the configuration's; drives get
// theirs here.
#pragma once

#include <windows.h>

#include "listing/directory_entry.h"

// Makes the lists and gives them to the list view. False, the user being told, when there are none.
bool MakeListImages(HWND list);
// Icons for another resolution.
void ResizeListImages(HWND list, UINT dpi);
void DestroyListImages();
// Index of an entry's icon in both lists.
int ImageOf(const LVobject& entry);
