// Where the icon of a file type is: reading icon locations as the shell writes them, and the index of a type's icon.
// Extracting icons belongs to icon_lookup_window.h.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "config/file_type.h"

// Where icons come from; filled in by the window floor. Called on the window's thread, at most once a type.
struct IconView {
    std::uint16_t (*indexOf)(const char* iconInfo) = nullptr;  // the generic icon's index on failure
    std::uint16_t (*folderIndex)() = nullptr;
};
extern IconView gIconView;
inline constexpr std::uint16_t kGenericFileIcon = 0;  // the first icon of both image lists
// The type's index in both image lists. The window's thread only.
std::uint16_t IconOf(const FTobject* type);
// Splits an icon location into path and number as the shell writes it; false when there is no path to read.
bool ParseIconInfo(std::string_view iconInfo, std::string& path, int& number);
