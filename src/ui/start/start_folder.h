// Whether the folder that the program was started in suits as its local folder. Pure; finding the folders of the system
// and the user is known_folders.h.
#pragma once

#include <string_view>

// False for the program's own folder, and for the system's folder and everything below it. Ignores case and trailing
// separators.
bool IsFolderToStartIn(std::string_view folder, std::string_view programFolder, std::string_view systemFolder);
// The part of a file's path before its last separator; a drive's root keeps its separator.
std::string_view FolderOfPath(std::string_view path);
