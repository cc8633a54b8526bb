// The icons of the list pane: a large and a small image list kept in step, the program's own icons in them from the
// start, the icons of registered file types as they are first shown. The window's thread only.
#pragma once

#include <windows.h>

#include <commctrl.h>

#include <cstdint>

struct IconPair {
    HICON largeIcon = nullptr;  // owned; either may be missing
    HICON smallIcon = nullptr;
};

// Indexes in both lists of the icons that entries take by their kind.
struct EntryIcons {
    std::uint16_t file = 0;
    std::uint16_t folder = 0;
    std::uint16_t link = 0;
    std::uint16_t device = 0;
    std::uint16_t pipe = 0;
};
extern EntryIcons gEntryIcons;

// Creates both image lists, puts the program's icons in and fills gIconView. A missing icon is reported and
// replaced by the generic one; false when there are no lists or no generic icon. Once, before entries are shown.
bool CreateIconLists(HINSTANCE resources);
void DestroyIconLists();
// Makes both lists again with icons of other sizes in pixels, after the window's resolution has changed; indexes stay.
// False, with nothing changed, on failure.
bool ResizeIconLists(HINSTANCE resources, int largeSide, int smallSide);
HIMAGELIST LargeIconList();
HIMAGELIST SmallIconList();

// Extracts the icon of a location such as "path,number". No icons when there is none; the caller destroys them.
IconPair GetIconFromIconInfo(const char* iconInfo);
void DestroyIcons(IconPair& icons);
// Appends to the large and the small list. The common index, or -1 with both lists unchanged.
int AddIconToImageList(const IconPair& icons);
