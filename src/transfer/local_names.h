// The one place where a local path is made from a remote name. Nothing is ever written outside the chosen folder.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

// A file name that the local system accepts unchanged: separators, drive colons, control characters and the characters
// < > " | ? * become "~", trailing dots and blanks go, "." and ".." and nothing become "~", device names (CON, NUL,
// COM1 with or without an extension) get a "~" in front, and too long a name is cut keeping its extension. `remoteName`
// is what the server sent; the result is UTF-8.
std::string SafeLocalName(std::string_view remoteName);
// A safe name cut to `longest` bytes, keeping its extension; still safe.
std::string FitName(std::string_view name, std::size_t longest);
// True when the system would take the name for a device (con, prn, aux, nul, com1-9, lpt1-9, conin$, conout$).
bool IsDeviceName(std::string_view name);
// At most `longest` bytes of UTF-8 without splitting a character.
std::string_view CutWhole(std::string_view text, std::size_t longest);
// 0 none, 1 to upper, 2 to lower.
std::string ConvertCase(std::string_view name, int caseConversion);
// Folder and safe name joined; empty when the path is too long for the system.
std::string BoundedLocalPath(std::string_view folder, std::string_view safeName);
// "name (2).txt", "name (3).txt", ...: the `number`-th alternative of a name.
std::string NumberedName(std::string_view name, int number);
