#include "config/icon_lookup_window.h"

#include <shellapi.h>

#include <string>

#include "config/file_types.h"
#include "config/icon_info.h"
#include "foundation/foundation_view.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"

EntryIcons gEntryIcons;

namespace {

constexpr int kFirstRoom = 32;
constexpr int kMoreRoom = 32;

HIMAGELIST gLargeList = nullptr;
HIMAGELIST gSmallList = nullptr;

struct OwnIcon {
    const char* resource;
    std::uint16_t EntryIcons::*index;
    const char* failure;
};
// The generic icon first: its index is kGenericFileIcon.
constexpr OwnIcon kOwnIcons[] = {
    {"IDI_FILE", &EntryIcons::file, "Zarn was unable to add a Generic File Icon to the ListView Imagelist!"},
    {"IDI_LINK", &EntryIcons::link, "Zarn was unable to add a Symlink Icon to the ListView Imagelist!"},
    {"IDI_DEVICE", &EntryIcons::device, "Zarn was unable to add a Device File Icon to the ListView Imagelist!"},
    {"IDI_PIPE", &EntryIcons::pipe, "Zarn was unable to add a Fifo File Icon to the ListView Imagelist!"},
    {"IDI_FOLDER", &EntryIcons::folder, "Zarn was unable to add a Folder Icon to the ListView Imagelist!"},
};

HIMAGELIST CreateList(int widthMetric, int heightMetric) {
    return ::ImageList_Create(::GetSystemMetrics(widthMetric), ::GetSystemMetrics(heightMetric), ILC_COLOR32 | ILC_MASK,
                              kFirstRoom, kMoreRoom);
}

HICON LoadOwnIcon(HINSTANCE resources, const char* name, int widthMetric, int heightMetric) {
    return static_cast<HICON>(::LoadImageA(resources, name, IMAGE_ICON, ::GetSystemMetrics(widthMetric),
                                           ::GetSystemMetrics(heightMetric), LR_DEFAULTCOLOR));
}

bool AddOwnIcon(HINSTANCE resources, const OwnIcon& own) {
    IconPair icons{LoadOwnIcon(resources, own.resource, SM_CXICON, SM_CYICON),
                   LoadOwnIcon(resources, own.resource, SM_CXSMICON, SM_CYSMICON)};
    const int index = AddIconToImageList(icons);
    DestroyIcons(icons);
    gEntryIcons.*own.index = index >= 0 ? static_cast<std::uint16_t>(index) : kGenericFileIcon;
    if (index < 0) ShowMessageBox(own.failure, nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
    return index >= 0;
}

// An icon of the program's own exactly in that size, any other one scaled.
HICON IconInSize(HINSTANCE resources, HIMAGELIST from, int index, int side) {
    for (const OwnIcon& own : kOwnIcons) {
        if (gEntryIcons.*own.index != index) continue;
        return static_cast<HICON>(::LoadImageA(resources, own.resource, IMAGE_ICON, side, side, LR_DEFAULTCOLOR));
    }
    HICON icon = ::ImageList_GetIcon(from, index, ILD_TRANSPARENT);
    if (icon == nullptr) return nullptr;
    const auto scaled = static_cast<HICON>(::CopyImage(icon, IMAGE_ICON, side, side, 0));
    if (scaled == nullptr) return icon;
    ::DestroyIcon(icon);
    return scaled;
}

HIMAGELIST ResizedList(HINSTANCE resources, HIMAGELIST from, int side) {
    const int count = ::ImageList_GetImageCount(from);
    HIMAGELIST list = ::ImageList_Create(side, side, ILC_COLOR32 | ILC_MASK, count, kMoreRoom);
    for (int index = 0; list != nullptr && index < count; ++index) {
        HICON icon = IconInSize(resources, from, index, side);
        const bool added = icon != nullptr && ::ImageList_AddIcon(list, icon) == index;
        if (icon != nullptr) ::DestroyIcon(icon);
        if (added) continue;
        ::ImageList_Destroy(list);
        return nullptr;
    }
    return list;
}

std::uint16_t IndexOfIconInfo(const char* iconInfo) {
    IconPair icons = GetIconFromIconInfo(iconInfo);
    const int index = icons.largeIcon != nullptr || icons.smallIcon != nullptr ? AddIconToImageList(icons) : -1;
    DestroyIcons(icons);
    if (index >= 0 && index <= UINT16_MAX) return static_cast<std::uint16_t>(index);
    DbgVsprintf("AddFileType", "WARNING. Call to GetIconFromIconInfo(%s) Failed. Using Generic Icon", iconInfo);
    return kGenericFileIcon;
}

std::uint16_t FolderIndex() {
    return gEntryIcons.folder;
}

// Locations may name folders of the system as "%SystemRoot%".
std::wstring ExpandedPath(const std::string& path) {
    const std::wstring source = Wide(path);
    wchar_t expanded[MAX_PATH * 2] = {};
    const DWORD length = ::ExpandEnvironmentStringsW(source.c_str(), expanded, MAX_PATH * 2);
    return length == 0 || length > MAX_PATH * 2 ? source : std::wstring(expanded);
}

}  // namespace

bool CreateIconLists(HINSTANCE resources) {
    DestroyIconLists();
    gLargeList = CreateList(SM_CXICON, SM_CYICON);
    gSmallList = CreateList(SM_CXSMICON, SM_CYSMICON);
    if (gLargeList == nullptr || gSmallList == nullptr) {
        DestroyIconLists();
        return false;
    }
    bool hasGenericIcon = false;
    for (const OwnIcon& own : kOwnIcons) {
        const bool added = AddOwnIcon(resources, own);
        if (own.index == &EntryIcons::file) hasGenericIcon = added;
    }
    gIconView = {IndexOfIconInfo, FolderIndex};
    return hasGenericIcon;
}

bool ResizeIconLists(HINSTANCE resources, int largeSide, int smallSide) {
    if (gLargeList == nullptr || gSmallList == nullptr) return false;
    HIMAGELIST large = ResizedList(resources, gLargeList, largeSide);
    HIMAGELIST little = ResizedList(resources, gSmallList, smallSide);
    if (large == nullptr || little == nullptr) {
        if (large != nullptr) ::ImageList_Destroy(large);
        if (little != nullptr) ::ImageList_Destroy(little);
        return false;
    }
    ::ImageList_Destroy(gLargeList);
    ::ImageList_Destroy(gSmallList);
    gLargeList = large;
    gSmallList = little;
    return true;
}

void DestroyIconLists() {
    gIconView = {};
    if (gLargeList != nullptr) ::ImageList_Destroy(gLargeList);
    if (gSmallList != nullptr) ::ImageList_Destroy(gSmallList);
    gLargeList = nullptr;
    gSmallList = nullptr;
    gEntryIcons = {};
}

HIMAGELIST LargeIconList() {
    return gLargeList;
}

HIMAGELIST SmallIconList() {
    return gSmallList;
}

IconPair GetIconFromIconInfo(const char* iconInfo) {
    IconPair icons;
    std::string path;
    int number = 0;
    if (iconInfo == nullptr || !ParseIconInfo(iconInfo, path, number)) return icons;
    const UINT found = ::ExtractIconExW(ExpandedPath(path).c_str(), number, &icons.largeIcon, &icons.smallIcon, 1);
    if (found == UINT_MAX || (icons.largeIcon == nullptr && icons.smallIcon == nullptr)) {
        DbgVsprintf("GetIconFromIconInfo", "ERROR. No ICONS in %s. Returning NULL", path.c_str());
        DestroyIcons(icons);
    }
    return icons;
}

void DestroyIcons(IconPair& icons) {
    if (icons.largeIcon != nullptr) ::DestroyIcon(icons.largeIcon);
    if (icons.smallIcon != nullptr) ::DestroyIcon(icons.smallIcon);
    icons = {};
}

int AddIconToImageList(const IconPair& icons) {
    // A file with one size only gives it to both lists, which scale it.
    HICON const bigger = icons.largeIcon != nullptr ? icons.largeIcon : icons.smallIcon;
    HICON const smaller = icons.smallIcon != nullptr ? icons.smallIcon : icons.largeIcon;
    if (bigger == nullptr || gLargeList == nullptr || gSmallList == nullptr) return -1;
    const int largeIndex = ::ImageList_AddIcon(gLargeList, bigger);
    if (largeIndex < 0) return -1;
    const int smallIndex = ::ImageList_AddIcon(gSmallList, smaller);
    if (smallIndex == largeIndex) return largeIndex;
    DbgVsprintf("AddIconToImageList", "ERROR. Image list are NOT syncronized, (%d != %d) Returing -1", largeIndex,
                smallIndex);
    ::ImageList_Remove(gLargeList, largeIndex);
    if (smallIndex >= 0) ::ImageList_Remove(gSmallList, smallIndex);
    return -1;
}
