// File types by extension: description, icon and transfer mode, taken from the user's mode map, else from the shell's
// classes, else from built-in texts. One list for the process, built as names are met; used by the window's thread and
// by the worker, so it has a lock of its own. Types live until FreeFileTypes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/owned_text.h"

struct FTobject {
    OwnedText pszType;         // upper-cased extension with its dot; "File Folder" for folders
    OwnedText pszDescription;  // shown in the Type column
    OwnedText pszIconInfo;     // "path,number" as registered, or null
    std::uint16_t iIcon = 0;   // index in both image lists
    char TransferMode[2] = {'A', '\0'};
    bool bFromModeMap = false;
    FTobject* pNext = nullptr;
    FTobject* pPrev = nullptr;
};

// Transfer mode of a file name, by its part from the first dot on (as wanted); the default mode when it has none.
char GetTransferMode(const char* fileName);
// The type of an extension already in the list, or null. Case does not matter.
FTobject* LookupFileType(std::string_view extension);
// The object of that name, new at the head of the list if need be.
FTobject* InsertFileType(OwnedText extension);
// Builds the type from the mode map or the shell's classes; null when neither describes it.
FTobject* AddFileType(std::string_view extension);
// Builds the type from the built-in descriptions; null for an extension that is only a dot.
FTobject* GetDefaultType(std::string_view extension);
FTobject* AddFolderType();
// The type of an entry: the folder type, the type of its extension (from the last dot on when `lastDot`), or the type
// of names without one. Never null, never slow: what is not registered is remembered.
FTobject* FileTypeOf(std::string_view name, bool isFolder);
int GetFileTypeCount();
void FreeFileTypes();

// Values of the mode map for one extension.
bool GetZarnMapMode(std::string_view extension, char& mode);
std::string GetZarnMapDescription(std::string_view extension);
std::string GetZarnIconInfo(std::string_view extension);
// "DefaultIcon" of the extension's shell class.
std::string GetRootIconInfo(std::string_view extension);

// The icon index for an icon location; filled in by the window floor, generic icon (0) until then. Called once a type.
struct IconView {
    std::uint16_t (*indexOf)(const char* iconInfo) = nullptr;
    std::uint16_t (*folderIndex)() = nullptr;
};
extern IconView gIconView;
// Splits an icon location into path and number as the shell writes it; false when there is no path to read.
bool ParseIconInfo(std::string_view iconInfo, std::string& path, int& number);
