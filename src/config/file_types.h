// File types by extension: description, icon and transfer mode, taken from the user's mode map, else from the shell's
// classes, else from built-in texts. One list for the process, built as names are met; used by the window's thread and
// by the worker, so it has a lock of its own. Types live, unchanged but for their icons, until FreeFileTypes.
#pragma once

#include <string_view>

#include "config/file_type.h"
#include "foundation/owned_text.h"

// Transfer mode of a file name; the default mode when it has no extension. Quirk: the extension begins at the first
// dot, kept.
char GetTransferMode(const char* fileName);
// The type of an extension already in the list, or null. Case does not matter.
FTobject* LookupFileType(std::string_view extension);
// The object of that name, new at the head of the list if need be; null when memory is short.
FTobject* InsertFileType(OwnedText extension);
// Builds the type from the mode map or the shell's classes; null when neither describes it.
FTobject* AddFileType(std::string_view extension);
// Builds the type from the built-in descriptions; null for an extension that is only a dot.
FTobject* GetDefaultType(std::string_view extension);
FTobject* AddFolderType();
// The type of an entry: the folder type, the type of its extension (which begins at the last dot, as users expect), or
// the type of names without one. Null only when memory is short. Registrations are read once, so an unknown
// extension costs no system call; a class registered while the program runs is not seen. After
// kMostUnknownTypes of them, further unknown extensions share the type of names without one.
FTobject* FileTypeOf(std::string_view name, bool isFolder);
inline constexpr int kMostUnknownTypes = 4096;
// Makes FileTypeOf look up an extension that has just been registered.
void RememberExtension(std::string_view extension);
int GetFileTypeCount();
// Frees a type that is in no list; null is accepted.
void Zarn_FreeFileType(FTobject* type);
// Frees every type, so only when no entry points at one any more.
void FreeFileTypes();
