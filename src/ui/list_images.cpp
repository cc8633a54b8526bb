#include "ui/list_images.h"

#include <commctrl.h>

#include "config/icon_lookup_window.h"
#include "foundation/trace.h"
#include "ui/app.h"

namespace {

int gDriveIcon = 0;

HICON LoadDriveIcon(int widthMetric, int heightMetric) {
    return static_cast<HICON>(LoadImageW(gApp.instance, L"IDI_DRIVE", IMAGE_ICON, GetSystemMetrics(widthMetric),
                                         GetSystemMetrics(heightMetric), LR_DEFAULTCOLOR));
}

int AddDriveIcon() {
    IconPair icons{LoadDriveIcon(SM_CXICON, SM_CYICON), LoadDriveIcon(SM_CXSMICON, SM_CYSMICON)};
    const int index = AddIconToImageList(icons);
    DestroyIcons(icons);
    return index >= 0 ? index : gEntryIcons.folder;
}

}  // namespace

bool MakeListImages(HWND list) {
    if (!CreateIconLists(gApp.instance)) {
        DbgVsprintf("MakeListImages", "ERROR. Call to CreateIconLists() Failed. Returning FALSE");
        return false;
    }
    gDriveIcon = AddDriveIcon();
    ListView_SetImageList(list, LargeIconList(), LVSIL_NORMAL);
    ListView_SetImageList(list, SmallIconList(), LVSIL_SMALL);
    return true;
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
