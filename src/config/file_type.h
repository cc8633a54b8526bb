// One file type: what an extension is called, its icon and its transfer mode. The list of all types: file_types.h.
#pragma once

#include <cstdint>

#include "foundation/owned_text.h"

struct FTobject {
    OwnedText pszType;         // upper-cased extension with its dot; "File Folder" for folders
    OwnedText pszDescription;  // shown in the Type column
    OwnedText pszIconInfo;     // "path,number" as registered, or null
    // Index in both image lists. Only IconOf touches these two: icons belong to the window's thread, while types are
    // made on the worker, too.
    mutable std::uint16_t iIcon = 0;
    mutable bool iconKnown = false;
    char TransferMode[2] = {'A', '\0'};
    bool bFromModeMap = false;
    bool isFolder = false;
    FTobject* pNext = nullptr;
    FTobject* pPrev = nullptr;
};
