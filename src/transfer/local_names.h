// Local names for remote files. Every local path with a name from the server is made here, so that nothing is written
// outside the chosen folder. Not here: existing files and what happens to them (receive_target.h).
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// A file name in UTF-8 that the local system accepts unchanged, for `remoteName` as the server sent it:
// - separators, colons, control and hidden characters and < > " | ? * become "~";
// - trailing dots and blanks are dropped; if nothing is left, as of "." and "..", the name is "~";
// - device names (CON, NUL, COM1, with or without an extension) get a "~" in front;
// - a name that is too long is cut, keeping its extension.
std::string SafeLocalName(std::string_view remoteName);
// Cuts a safe name to `longest` bytes, keeping its extension. The result is safe, too.
std::string FitName(std::string_view name, std::size_t longest);
// True for the names of devices: con, prn, aux, nul, com1-9, lpt1-9, conin$, conout$, with or without an extension.
bool IsDeviceName(std::string_view name);
// `caseConversion` is the setting of that name: 0 leaves the case, 1 is upper case, 2 lower case. ASCII letters only.
std::string ConvertCase(std::string_view name, int caseConversion);
// Joins a folder and a safe name; empty when the path is too long for the system.
std::string BoundedLocalPath(std::string_view folder, std::string_view safeName);
// "name (2).txt" for "name.txt" and 2.
std::string NumberedName(std::string_view name, int number);
