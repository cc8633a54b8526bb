#include "ui/drag/drag_drop.h"

#include <commctrl.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "foundation/wide_text_window.h"
#include "ftp/worker/session_state.h"
#include "listing/local_listing.h"
#include "ui/browse/command_context.h"
#include "ui/browse/item_path.h"
#include "ui/browse/tree_notify.h"
#include "ui/drag/drag_rules.h"
#include "ui/drag/drops.h"
#include "ui/panes/list_images.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/messages.h"

namespace {

constexpr char kFuncName[] = "LV_OnBeginDrag";
constexpr UINT kTick = 50;          // milliseconds
constexpr int kScrollMargin = 14;   // pixels at 96 dpi
constexpr int kTicksPerScroll = 2;  // ticks per scrolled line
// The image's offset from the pointer and its widest label, pixels at 96 dpi.
constexpr int kPictureRight = 14;
constexpr int kPictureBelow = 14;
constexpr int kLongestLabel = 220;

// The image that follows the pointer: an icon with the entry's name, or with the number of selected entries.
HIMAGELIST MakeDragImage(const LVobject& entry, const std::string& label) {
    HIMAGELIST icons = ListView_GetImageList(ListWindow(), LVSIL_SMALL);
    int icon = 0;
    int iconHeight = 0;
    ImageList_GetIconSize(icons, &icon, &iconHeight);
    HDC screen = GetDC(nullptr);
    HDC canvas = CreateCompatibleDC(screen);
    HGDIOBJ oldFont = SelectObject(canvas, gApp.paneFont);
    const std::wstring text = Wide(label);
    SIZE size{};
    GetTextExtentPoint32W(canvas, text.c_str(), static_cast<int>(text.size()), &size);
    const int gap = Scaled(3);
    const int textRoom = std::min(static_cast<int>(size.cx), Scaled(kLongestLabel));
    RECT area{0, 0, icon + textRoom + 3 * gap, std::max(iconHeight, static_cast<int>(size.cy)) + 2 * gap};
    HBITMAP bitmap = CreateCompatibleBitmap(screen, area.right, area.bottom);
    HGDIOBJ oldBitmap = SelectObject(canvas, bitmap);
    FillRect(canvas, &area, GetSysColorBrush(COLOR_HIGHLIGHT));
    ImageList_Draw(icons, ImageOf(entry), canvas, gap, (area.bottom - iconHeight) / 2, ILD_TRANSPARENT);
    RECT place{icon + 2 * gap, 0, area.right - gap, area.bottom};
    SetBkMode(canvas, TRANSPARENT);
    SetTextColor(canvas, GetSysColor(COLOR_HIGHLIGHTTEXT));
    DrawTextW(canvas, text.c_str(), -1, &place, DT_SINGLELINE | DT_VCENTER | DT_NOPREFIX | DT_END_ELLIPSIS);
    SelectObject(canvas, oldBitmap);
    SelectObject(canvas, oldFont);
    DeleteDC(canvas);
    ReleaseDC(nullptr, screen);
    HIMAGELIST images = ImageList_Create(area.right, area.bottom, ILC_COLOR24, 1, 0);
    if (images != nullptr) ImageList_Add(images, bitmap, nullptr);
    DeleteObject(bitmap);
    return images;
}

std::string DragLabel(const LVobject& entry) {
    const int selected = SelectedCount();
    if (selected == 1) return ShownName(EntryName(entry));
    return Zarn_ResVsprintf(MSG_OBJECTS_SELECTED, selected).c_str();
}

// The image follows the pointer below and to the right of it, so that the node under the pointer stays visible.
class DragPicture {
  public:
    DragPicture(HWND window, const LVobject& entry, POINT pointer)
        : window_(window), images_(MakeDragImage(entry, DragLabel(entry))) {
        shown_ = images_ != nullptr && ImageList_BeginDrag(images_, 0, -Scaled(kPictureRight), -Scaled(kPictureBelow));
        if (!shown_) return;
        const POINT place = InWindow(pointer);
        ImageList_DragEnter(window_, place.x, place.y);
    }
    ~DragPicture() {
        if (shown_) {
            ImageList_DragLeave(window_);
            ImageList_EndDrag();
        }
        if (images_ != nullptr) ImageList_Destroy(images_);
    }
    DragPicture(const DragPicture&) = delete;
    DragPicture& operator=(const DragPicture&) = delete;

    void MoveTo(POINT pointer) const {
        if (!shown_) return;
        const POINT place = InWindow(pointer);
        ImageList_DragMove(place.x, place.y);
    }
    // The window under the image can be drawn only while the image is hidden.
    template <class Draw>
    void Without(Draw&& draw) const {
        if (shown_) ImageList_DragShowNolock(FALSE);
        draw();
        UpdateWindow(TreeWindow());
        if (shown_) ImageList_DragShowNolock(TRUE);
    }

  private:
    // The image's coordinates count from the corner of the whole window, borders included.
    POINT InWindow(POINT screen) const {
        RECT place{};
        GetWindowRect(window_, &place);
        return {screen.x - place.left, screen.y - place.top};
    }
    HWND window_;
    HIMAGELIST images_ = nullptr;
    bool shown_ = false;
};

struct DraggedItems {
    DragLoad load;
    TVobject* folder = nullptr;           // the list's folder when the drag began
    std::vector<std::string> localFiles;  // full paths; empty for remote entries
};

DraggedItems SelectionToDrag() {
    DraggedItems items;
    items.folder = ListedFolder();
    if (items.folder == nullptr) return items;
    items.load.local = IsLocalNode(items.folder);
    const Site* site = TV_GetFtpSite(items.folder);
    items.load.siteConnected = !items.load.local && site != nullptr && site->bConnected != 0;
    for (const LVobject* entry : SelectedEntries()) {
        if (!IsTransferableKind(entry->type)) continue;
        ++items.load.items;
        if (items.load.local) items.localFiles.push_back(ItemPath(items.folder, entry->name.view()));
    }
    return items;
}

POINT PointerPosition() {
    POINT point{};
    GetCursorPos(&point);
    return point;
}

bool IsOpen(HTREEITEM item) {
    return (TreeView_GetItemState(TreeWindow(), item, TVIS_EXPANDED) & TVIS_EXPANDED) != 0;
}

class TreeDrag {
  public:
    TreeDrag(HWND window, const LVobject& entry, const DragLoad& load)
        : load_(load), picture_(window, entry, PointerPosition()) {
        Follow();
    }
    ~TreeDrag() { Highlight(nullptr); }
    TreeDrag(const TreeDrag&) = delete;
    TreeDrag& operator=(const TreeDrag&) = delete;

    void Follow() {
        const POINT pointer = PointerPosition();
        picture_.MoveTo(pointer);
        const auto [item, node] = TreeHitTest(pointer, kHitRow);
        if (item != under_) {
            under_ = item;
            restingSince_ = GetTickCount();
        }
        const DropEffect effect = DropEffectFor(load_, PlaceOf(node));
        Highlight(effect == DropEffect::None ? nullptr : item);
        SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(effect == DropEffect::None ? IDC_NO : IDC_ARROW)));
    }

    void Paint(const MSG& message) const {
        picture_.Without([&message] { DispatchMessageW(&message); });
    }

    void Tick() {
        if (++ticks_ % kTicksPerScroll == 0) Scroll();
        const auto [item, node] = TreeHitTest(PointerPosition(), kHitRow);
        if (node != nullptr && item == under_ &&
            OpensUnderPointer(GetTickCount() - restingSince_, IsOpen(item), NodeHasButton(*node))) {
            restingSince_ = GetTickCount();
            picture_.Without([opened = node] { OpenNodeInPlace(opened); });
        }
        Follow();
    }

  private:
    void Highlight(HTREEITEM item) {
        if (item == highlighted_) return;
        highlighted_ = item;
        picture_.Without([item] { TreeView_SelectDropTarget(TreeWindow(), item); });
    }
    void Scroll() {
        RECT tree{};
        GetWindowRect(TreeWindow(), &tree);
        const POINT pointer = PointerPosition();
        if (pointer.x < tree.left || pointer.x >= tree.right) return;
        const int direction = DragScroll(pointer.y, tree.top, tree.bottom, Scaled(kScrollMargin));
        if (direction == 0) return;
        picture_.Without(
            [direction] { SendMessageW(TreeWindow(), WM_VSCROLL, direction < 0 ? SB_LINEUP : SB_LINEDOWN, 0); });
    }

    DragLoad load_;
    DragPicture picture_;
    HTREEITEM highlighted_ = nullptr;
    HTREEITEM under_ = nullptr;
    DWORD restingSince_ = 0;
    int ticks_ = 0;
};

enum class DragStep { Continue, Drop, Cancel };

DragStep DragStepFor(const MSG& message, HWND window, TreeDrag& drag) {
    switch (message.message) {
        case WM_MOUSEMOVE:
            drag.Follow();
            return DragStep::Continue;
        case WM_LBUTTONUP:
            return DragStep::Drop;
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
            return DragStep::Cancel;
        case WM_PAINT:
            drag.Paint(message);
            return DragStep::Continue;
        case WM_TIMER:
            if (message.hwnd != window || message.wParam != kDragTimer) break;
            drag.Tick();
            return DragStep::Continue;
        default:
            break;
    }
    // During a drag no window gets keys.
    if (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST) {
        return message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE ? DragStep::Cancel : DragStep::Continue;
    }
    DispatchMessageW(&message);
    return DragStep::Continue;
}

// True when the button was released; first waits for a folder that is being opened in the tree.
bool FollowMouse(HWND window, TreeDrag& drag) {
    MSG message{};
    bool dropped = false;
    while (!gSession.exiting && (dropped || GetCapture() == window)) {
        if (dropped && !OperationRunning()) return true;
        if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return false;
        }
        const DragStep step = DragStepFor(message, window, drag);
        if (step == DragStep::Cancel) return false;
        if (step == DragStep::Drop) dropped = true;
    }
    return false;
}

// Looks up the node under the pointer again, because the tree may have changed since the last mouse move.
void DropItems(DraggedItems& items) {
    const TVobject* node = TreeHitTest(PointerPosition(), kHitRow).node;
    const DropEffect effect = DropEffectFor(items.load, PlaceOf(node));
    DbgVsprintf(kFuncName, "Dropped on %s: %d", node != nullptr ? node->pszName.c_str() : "nothing",
                static_cast<int>(effect));
    const bool sameList = ListedFolder() == items.folder && SelectedCount() > 0;
    if (sameList) DropOnNode(node, effect, std::move(items.localFiles));
}

// The main window had captured the mouse, so the list has not seen the button being released.
void EndListsDrag() {
    if (ListWindow() != nullptr) SendMessageW(ListWindow(), WM_LBUTTONUP, 0, MAKELPARAM(-1, -1));
}

}  // namespace

void LV_OnBeginDrag(int item) {
    DbgVsprintf(kFuncName, "Entered");
    if (CommandsRefused() || EntryAt(item) == nullptr) return;
    PostMessageW(gApp.mainWindow, kBeginDragMessage, static_cast<WPARAM>(item), 0);
}

void RunDrag(HWND window, int item) {
    const bool pressed = GetKeyState(VK_LBUTTON) < 0;
    DraggedItems items = SelectionToDrag();
    if (CommandsRefused() || !pressed || EntryAt(item) == nullptr || items.load.items == 0) return;
    SetCapture(window);
    SetTimer(window, kDragTimer, kTick, nullptr);
    bool dropped = false;
    {
        TreeDrag drag(window, *EntryAt(item), items.load);
        dropped = FollowMouse(window, drag);
    }
    KillTimer(window, kDragTimer);
    if (GetCapture() == window) ReleaseCapture();
    EndListsDrag();
    if (dropped) DropItems(items);
}
