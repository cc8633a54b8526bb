#include "ui/list_images.h"

#include <array>

#include "foundation/trace.h"
#include "ui/app.h"

namespace {

enum Image { kGeneric, kFolder, kLink, kDevice, kPipe, kDrive, kImages };

struct NamedIcon {
    const wchar_t* resource;
    const char* name;  // for the trace
};
constexpr std::array<NamedIcon, kImages> kIcons = {{
    {L"IDI_FILE", "Generic File"},
    {L"IDI_FOLDER", "Folder"},
    {L"IDI_LINK", "Symlink"},
    {L"IDI_DEVICE", "Device File"},
    {L"IDI_PIPE", "Fifo File"},
    {L"IDI_DRIVE", "Drive"},
}};

constexpr int kLargeSize = 32;  // pixels at 96 dpi
constexpr int kSmallSize = 16;

HIMAGELIST gLarge = nullptr;
HIMAGELIST gSmall = nullptr;

bool AddProgramIcon(HIMAGELIST images, const NamedIcon& icon, int size) {
    HICON handle =
        static_cast<HICON>(LoadImageW(gApp.instance, icon.resource, IMAGE_ICON, size, size, LR_DEFAULTCOLOR));
    const bool added = handle != nullptr && ImageList_AddIcon(images, handle) >= 0;
    if (handle != nullptr) DestroyIcon(handle);
    if (!added) {
        DbgVsprintf("MakeListImages", "Zarn was unable to add a %s Icon to the ListView Imagelist!", icon.name);
    }
    return added;
}

HIMAGELIST MakeImages(int size) {
    HIMAGELIST images = ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, kImages, 32);
    if (images == nullptr) return nullptr;
    for (const NamedIcon& icon : kIcons) {
        if (!AddProgramIcon(images, icon, size)) {
            ImageList_Destroy(images);
            return nullptr;
        }
    }
    return images;
}

}  // namespace

bool MakeListImages(HWND list, UINT dpi) {
    HIMAGELIST large = MakeImages(MulDiv(kLargeSize, static_cast<int>(dpi), 96));
    HIMAGELIST small = MakeImages(MulDiv(kSmallSize, static_cast<int>(dpi), 96));
    if (large == nullptr || small == nullptr) {
        if (large != nullptr) ImageList_Destroy(large);
        if (small != nullptr) ImageList_Destroy(small);
        return false;
    }
    ListView_SetImageList(list, large, LVSIL_NORMAL);
    ListView_SetImageList(list, small, LVSIL_SMALL);
    DestroyListImages();
    gLarge = large;
    gSmall = small;
    return true;
}

void DestroyListImages() {
    if (gLarge != nullptr) ImageList_Destroy(gLarge);
    if (gSmall != nullptr) ImageList_Destroy(gSmall);
    gLarge = nullptr;
    gSmall = nullptr;
}

int ImageOf(const LVobject& entry) {
    switch (entry.type) {
        case kKindLink:
            return kLink;
        case kKindDevice:
            return kDevice;
        case kKindPipe:
            return kPipe;
        case kKindLocalRoot:
            return kDrive;
        case kKindSiteRoot:
        case kKindFolder:
        case kKindLocalFolder:
            return kFolder;
        default:
            return entry.fileType != nullptr ? entry.fileType->iIcon : static_cast<int>(kGeneric);
    }
}
