#include "ui/browse/list_notify.h"

#include <string>

#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/text_compare.h"
#include "foundation/wide_text_window.h"
#include "ftp/worker/session_state.h"
#include "resources/resource.h"
#include "ui/browse/list_edit.h"
#include "ui/browse/list_update.h"
#include "ui/browse/tree_selection.h"
#include "ui/panes/list_columns.h"
#include "ui/panes/list_images.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/pane_focus.h"
#include "ui/screen/app.h"
#include "ui/screen/display_text.h"
#include "ui/screen/messages.h"
#include "ui/screen/pane_colors.h"
#include "ui/screen/refresh.h"

namespace {

bool KeysIgnored() {
    return gSession.exiting || gSession.parsing;
}

void PostCommand(UINT id) {
    PostMessageW(gApp.mainWindow, WM_COMMAND, id, 0);
}

void RefuseType(const LVobject& entry) {
    const char* typeName = entry.fileType != nullptr ? entry.fileType->pszDescription.c_str() : "";
    const OwnedText text = Zarn_ResVsprintf(MSG_CANNOT_TRANSFER_TYPE, gApp.longName, typeName);
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::Ok, BoxIcon::Information);
}

// Opens the first selected entry by its kind.
void OpenSelected() {
    const int index = FirstSelected();
    LVobject* entry = EntryAt(index);
    if (entry == nullptr || KeysIgnored()) return;
    if (IsFolderKind(entry->type)) {
        if (entry->node != nullptr) SelectNode(entry->node);
        return;
    }
    switch (entry->type) {
        case kKindFile:
            PostCommand(IDM_RECEIVE);
            break;
        case kKindLink:
            LV_ResolveObject(index);
            break;
        case kKindLocalFile:
            break;
        default:
            RefuseType(*entry);
            break;
    }
}

bool OnKeyDown(const NMLVKEYDOWN& key) {
    if (KeysIgnored()) return false;
    switch (key.wVKey) {
        case VK_BACK:
        case VK_TAB:
            FocusOtherPane(ListWindow());
            return true;
        case VK_RETURN:
            if (SelectedCount() == 1) OpenSelected();
            if (SelectedCount() > 1) PostCommand(IDM_RECEIVE);
            return true;
        case VK_DELETE:
            if (SelectedCount() > 0) PostCommand(IDM_LV_DELETE);
            return true;
        case VK_F2:
            if (EntryAt(FirstSelected()) != nullptr) ListView_EditLabel(ListWindow(), FirstSelected());
            return true;
        default:
            return false;
    }
}

void FillDisplay(LVITEMW& item) {
    LVobject* entry = ShownEntryAt(item.iItem);
    if (entry == nullptr) {
        if ((item.mask & LVIF_TEXT) != 0) GiveText({}, item.pszText, item.cchTextMax);
        return;
    }
    if ((item.mask & LVIF_TEXT) != 0) {
        const int logical = LogicalColumnAt(gZarn.COLUMNS, item.iSubItem);
        GiveText(Wide(ShownName(ColumnText(*entry, logical))), item.pszText, item.cchTextMax);
    }
    if ((item.mask & LVIF_IMAGE) != 0 && item.iSubItem == 0) item.iImage = ImageOf(*entry);
    if ((item.mask & LVIF_PARAM) != 0) item.lParam = reinterpret_cast<LPARAM>(entry);
}

bool StartsWithNoCase(std::string_view name, std::string_view start) {
    return name.size() >= start.size() && EqualsIgnoringCase(name.substr(0, start.size()), start);
}

// Finds the next entry whose name begins with the typed text, starting at a place and wrapping round; -1: none.
int FindTyped(const NMLVFINDITEMW& find) {
    if ((find.lvfi.flags & (LVFI_STRING | LVFI_PARTIAL)) == 0 || find.lvfi.psz == nullptr) return -1;
    const std::string typed = Narrow(find.lvfi.psz);
    const bool whole = (find.lvfi.flags & LVFI_PARTIAL) == 0;
    const int count = EntryCount();
    if (typed.empty() || count == 0) return -1;
    const int start = find.iStart >= 0 && find.iStart < count ? find.iStart : 0;
    const int steps = (find.lvfi.flags & LVFI_WRAP) != 0 || start == 0 ? count : count - start;
    for (int i = 0; i < steps; ++i) {
        const int index = (start + i) % count;
        const std::string_view name = EntryAt(index)->name.view();
        if (whole ? EqualsIgnoringCase(name, typed) : StartsWithNoCase(name, typed)) return index;
    }
    return -1;
}

// Posted, because the control sets the new width only after this notification.
bool OnHeader(const NMHEADERW& notice) {
    if (notice.hdr.code == HDN_ENDTRACKW || notice.hdr.code == HDN_DIVIDERDBLCLICKW) {
        PostMessageW(gApp.mainWindow, kColumnResizedMessage, static_cast<WPARAM>(notice.iItem), 0);
    }
    return false;
}

}  // namespace

bool LV_NotifyHandler(NMHDR* header, LRESULT& result) {
    if (ListWindow() == nullptr) return false;
    if (header->hwndFrom == ListView_GetHeader(ListWindow())) return OnHeader(*reinterpret_cast<NMHEADERW*>(header));
    if (header->hwndFrom != ListWindow()) return false;
    result = 0;
    switch (header->code) {
        case LVN_GETDISPINFOW:
            FillDisplay(reinterpret_cast<NMLVDISPINFOW*>(header)->item);
            return true;
        case NM_CUSTOMDRAW:
            result = DrawListItem(*reinterpret_cast<NMLVCUSTOMDRAW*>(header));
            return true;
        case LVN_ODFINDITEMW:
            result = FindTyped(*reinterpret_cast<NMLVFINDITEMW*>(header));
            return true;
        case LVN_KEYDOWN:
            result = OnKeyDown(*reinterpret_cast<NMLVKEYDOWN*>(header));
            return true;
        case LVN_COLUMNCLICK:
            if (!KeysIgnored()) SortEntriesByClick(reinterpret_cast<NMLISTVIEW*>(header)->iSubItem);
            return true;
        case LVN_BEGINLABELEDITW:
            result = !LV_BeginLabelEdit(reinterpret_cast<NMLVDISPINFOW*>(header)->item.iItem);
            return true;
        case LVN_ENDLABELEDITW: {
            const LVITEMW& item = reinterpret_cast<NMLVDISPINFOW*>(header)->item;
            LV_HandleEndLabelEdit(item.iItem, item.pszText);
            return true;
        }
        case LVN_ITEMCHANGED: {
            const NMLISTVIEW& change = *reinterpret_cast<NMLISTVIEW*>(header);
            if (((change.uNewState ^ change.uOldState) & LVIS_SELECTED) != 0) PostRefreshWindowState();
            return true;
        }
        case LVN_ODSTATECHANGED:
            PostRefreshWindowState();
            return true;
        case NM_SETFOCUS:
            gApp.focus = Pane::List;
            PostRefreshWindowState();
            return true;
        case NM_DBLCLK:
            OpenSelected();
            return true;
        default:
            return false;
    }
}
