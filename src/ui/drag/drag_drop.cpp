#include "ui/drag/drag_drop.h"

#include <commctrl.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/worker/session_state.h"
#include "ui/browse/command_context.h"
#include "ui/browse/item_path.h"
#include "ui/browse/local_computer.h"
#include "ui/browse/tree_notify.h"
#include "ui/drag/drag_rules.h"
#include "ui/drag/drops.h"
#include "ui/panes/list_images.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/screen/messages.h"
#include "ui/screen/wide_text.h"

namespace {

constexpr char kFuncName[] = "LV_OnBeginDrag";
constexpr UINT kTick = 50;          // milliseconds
constexpr int kScrollMargin = 14;   // pixels at 96 dpi
constexpr int kTicksPerScroll = 2;  // a line every so many ticks
// Of the picture, pixels at 96 dpi.
constexpr int kPictureRight = 14;
constexpr int kPictureBelow = 14;
constexpr int kLongestLabel = 220;

// What is carried as it hangs at the pointer: the icon and the name, or the number, of what the list has selected.
HIMAGELIST MakeCarriedPicture(const LVobject& entry, const std::string& label) {
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

std::string CarriedLabel(const LVobject& entry) {
    const int selected = SelectedCount();
    if (selected == 1) return ShownName(EntryName(entry));
    return Zarn_ResVsprintf(MSG_OBJECTS_SELECTED, selected).c_str();
}

// The picture moves with the pointer, below it and to the right, so that the node under it stays in sight.
class DragPicture {
  public:
    DragPicture(HWND window, const LVobject& entry, POINT pointer)
        : window_(window), images_(MakeCarriedPicture(entry, CarriedLabel(entry))) {
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
    // What is under the picture can be drawn only while the picture is not there.
    template <class Draw>
    void Without(Draw&& draw) const {
        if (shown_) ImageList_DragShowNolock(FALSE);
        draw();
        UpdateWindow(TreeWindow());
        if (shown_) ImageList_DragShowNolock(TRUE);
    }

  private:
    // The picture's place counts from the corner of the whole window, borders included.
    POINT InWindow(POINT screen) const {
        RECT place{};
        GetWindowRect(window_, &place);
        return {screen.x - place.left, screen.y - place.top};
    }
    HWND window_;
    HIMAGELIST images_ = nullptr;
    bool shown_ = false;
};

struct Carried {
    DragLoad load;
    TVobject* folder = nullptr;           // that the list showed when the drag began
    std::vector<std::string> localFiles;  // full paths, when they are local
};

Carried CarriedSelection() {
    Carried carried;
    carried.folder = ListedFolder();
    if (carried.folder == nullptr) return carried;
    carried.load.local = IsLocalNode(carried.folder);
    const Site* site = TV_GetFtpSite(carried.folder);
    carried.load.siteConnected = !carried.load.local && site != nullptr && site->bConnected != 0;
    for (const LVobject* entry : SelectedEntries()) {
        if (!IsTransferableKind(entry->type)) continue;
        ++carried.load.items;
        if (carried.load.local) carried.localFiles.push_back(ItemPath(carried.folder, entry->name.view()));
    }
    return carried;
}

POINT PointerPlace() {
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
        : load_(load), picture_(window, entry, PointerPlace()) {
        Follow();
    }
    ~TreeDrag() { Highlight(nullptr); }
    TreeDrag(const TreeDrag&) = delete;
    TreeDrag& operator=(const TreeDrag&) = delete;

    void Follow() {
        const POINT pointer = PointerPlace();
        picture_.MoveTo(pointer);
        const auto [item, node] = TreeHitTest(pointer, kHitRow);
        if (item != under_) {
            under_ = item;
            restsSince_ = GetTickCount();
        }
        const DropEffect effect = DropEffectFor(load_, PlaceOf(node));
        Highlight(effect == DropEffect::None ? nullptr : item);
        SetCursor(LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(effect == DropEffect::None ? IDC_NO : IDC_ARROW)));
    }

    // Painting goes on while something is carried.
    void Paint(const MSG& message) const {
        picture_.Without([&message] { DispatchMessageW(&message); });
    }

    void Tick() {
        if (++ticks_ % kTicksPerScroll == 0) Scroll();
        const auto [item, node] = TreeHitTest(PointerPlace(), kHitRow);
        if (node != nullptr && item == under_ &&
            OpensUnderPointer(GetTickCount() - restsSince_, IsOpen(item), NodeHasButton(*node))) {
            restsSince_ = GetTickCount();
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
        const POINT pointer = PointerPlace();
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
    DWORD restsSince_ = 0;
    int ticks_ = 0;
};

enum class Turn { GoesOn, Drops, Cancels };

Turn TakeMessage(const MSG& message, HWND window, TreeDrag& drag) {
    switch (message.message) {
        case WM_MOUSEMOVE:
            drag.Follow();
            return Turn::GoesOn;
        case WM_LBUTTONUP:
            return Turn::Drops;
        case WM_LBUTTONDOWN:
        case WM_RBUTTONDOWN:
        case WM_MBUTTONDOWN:
            return Turn::Cancels;
        case WM_PAINT:
            drag.Paint(message);
            return Turn::GoesOn;
        case WM_TIMER:
            if (message.hwnd != window || message.wParam != kDragTimer) break;
            drag.Tick();
            return Turn::GoesOn;
        default:
            break;
    }
    // Keys are nobody else's while something is carried.
    if (message.message >= WM_KEYFIRST && message.message <= WM_KEYLAST) {
        return message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE ? Turn::Cancels : Turn::GoesOn;
    }
    DispatchMessageW(&message);
    return Turn::GoesOn;
}

// True when the mouse was let go; a folder that is just being opened in the tree is waited for.
bool FollowMouse(HWND window, TreeDrag& drag) {
    MSG message{};
    bool dropped = false;
    while (!gSession.exiting && (dropped || GetCapture() == window)) {
        if (dropped && !OperationRunning()) return true;
        if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
            PostQuitMessage(static_cast<int>(message.wParam));
            return false;
        }
        const Turn turn = TakeMessage(message, window, drag);
        if (turn == Turn::Cancels) return false;
        if (turn == Turn::Drops) dropped = true;
    }
    return false;
}

// The mouse was let go. Nothing is remembered of the tree: it may have changed under the pointer.
void DropCarried(Carried& carried) {
    const TVobject* node = TreeHitTest(PointerPlace(), kHitRow).node;
    const DropEffect effect = DropEffectFor(carried.load, PlaceOf(node));
    DbgVsprintf(kFuncName, "Dropped on %s: %d", node != nullptr ? node->pszName.c_str() : "nothing",
                static_cast<int>(effect));
    const bool sameList = ListedFolder() == carried.folder && SelectedCount() > 0;
    if (sameList) DropOnNode(node, effect, std::move(carried.localFiles));
}

// The list did not see the button come up, because the main window had the mouse.
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
    Carried carried = CarriedSelection();
    if (CommandsRefused() || !pressed || EntryAt(item) == nullptr || carried.load.items == 0) return;
    SetCapture(window);
    SetTimer(window, kDragTimer, kTick, nullptr);
    bool dropped = false;
    {
        TreeDrag drag(window, *EntryAt(item), carried.load);
        dropped = FollowMouse(window, drag);
    }
    KillTimer(window, kDragTimer);
    if (GetCapture() == window) ReleaseCapture();
    EndListsDrag();
    if (dropped) DropCarried(carried);
}
