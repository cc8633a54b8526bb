#include "ui/panes/list_images.h"

#include <commctrl.h>

#include "config/icon_info.h"
#include "config/icon_lookup_window.h"
#include "foundation/trace.h"
#include "ui/screen/app.h"
#include "ui/screen/dpi.h"

namespace {

int gDriveIcon = 0;

HICON LoadDriveIcon(int side) {
    return static_cast<HICON>(LoadImageW(gApp.instance, L"IDI_DRIVE", IMAGE_ICON, side, side, LR_DEFAULTCOLOR));
}

int SideOf(HIMAGELIST images) {
    int width = 0;
    int height = 0;
    ImageList_GetIconSize(images, &width, &height);
    return width;
}

int AddDriveIcon() {
    IconPair icons{LoadDriveIcon(SideOf(LargeIconList())), LoadDriveIcon(SideOf(SmallIconList()))};
    const int index = AddIconToImageList(icons);
    DestroyIcons(icons);
    return index >= 0 ? index : gEntryIcons.folder;
}

void ReplaceDriveIcon(HIMAGELIST images) {
    HICON icon = LoadDriveIcon(SideOf(images));
    if (icon == nullptr) return;
    ImageList_ReplaceIcon(images, gDriveIcon, icon);
    DestroyIcon(icon);
}

void GiveToList(HWND list) {
    ListView_SetImageList(list, LargeIconList(), LVSIL_NORMAL);
    ListView_SetImageList(list, SmallIconList(), LVSIL_SMALL);
}

}  // namespace

bool MakeListImages(HWND list) {
    if (!CreateIconLists(gApp.instance)) {
        DbgVsprintf("MakeListImages", "ERROR. Call to CreateIconLists() Failed. Returning FALSE");
        return false;
    }
    gDriveIcon = AddDriveIcon();
    GiveToList(list);
    // So far the lists have the sizes of the main screen.
    ResizeListImages(list, gApp.dpi);
    return true;
}

void ResizeListImages(HWND list, UINT dpi) {
    const int large = MetricAtDpi(SM_CXICON, dpi);
    const int little = MetricAtDpi(SM_CXSMICON, dpi);
    if (large == SideOf(LargeIconList()) && little == SideOf(SmallIconList())) return;
    if (!ResizeIconLists(gApp.instance, large, little)) return;
    if (gDriveIcon != gEntryIcons.folder) {
        ReplaceDriveIcon(LargeIconList());
        ReplaceDriveIcon(SmallIconList());
    }
    GiveToList(list);
}

void DestroyListImages() {
    DestroyIconLists();
}

int ImageOf(const LVobject& entry) {
    switch (entry.type) {
        case kKindLink:
            return gEntryIcons.link;
        case kKindDevice:
            return gEntryIcons.device;
        case kKindPipe:
            return gEntryIcons.pipe;
        case kKindLocalRoot:
            return gDriveIcon;
        case kKindSiteRoot:
        case kKindFolder:
        case kKindLocalFolder:
            return gEntryIcons.folder;
        default:
            return entry.fileType != nullptr ? IconOf(entry.fileType) : gEntryIcons.file;
    }
}
