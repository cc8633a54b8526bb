#include "ui/window/splitter.h"

#include <algorithm>

#include "foundation/trace.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"

namespace {

constexpr int kMinimumPane = 60;  // pixels at 96 dpi
constexpr int kKeyStep = 2;       // pixels

// The bar during a drag: an inverted band with a checker brush, removed by drawing it a second time.
class DragBand {
  public:
    explicit DragBand(HWND window) : window_(window) {
        GetWindowRect(TreeWindow(), &pane_);
        MapWindowPoints(nullptr, window, reinterpret_cast<POINT*>(&pane_), 2);
        const WORD checker[8] = {0x5555, 0xAAAA, 0x5555, 0xAAAA, 0x5555, 0xAAAA, 0x5555, 0xAAAA};
        bitmap_ = CreateBitmap(8, 8, 1, 1, checker);
        brush_ = CreatePatternBrush(bitmap_);
    }
    ~DragBand() {
        Hide();
        DeleteObject(brush_);
        DeleteObject(bitmap_);
    }
    DragBand(const DragBand&) = delete;
    DragBand& operator=(const DragBand&) = delete;

    void MoveTo(int position) {
        if (shown_ && position == position_) return;
        Hide();
        position_ = position;
        Draw();
        shown_ = true;
    }

  private:
    void Hide() {
        if (shown_) Draw();
        shown_ = false;
    }
    void Draw() const {
        HDC dc = GetDCEx(window_, nullptr, DCX_CACHE | DCX_LOCKWINDOWUPDATE);
        HGDIOBJ old = SelectObject(dc, brush_);
        PatBlt(dc, position_, pane_.top, Scaled(kSplitterWidth), pane_.bottom - pane_.top, PATINVERT);
        SelectObject(dc, old);
        ReleaseDC(window_, dc);
    }

    HWND window_;
    RECT pane_{};
    HBITMAP bitmap_ = nullptr;
    HBRUSH brush_ = nullptr;
    int position_ = 0;
    bool shown_ = false;
};

int ClientWidth(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    return client.right;
}

// True when the message ends the drag.
bool EndsDrag(const MSG& message) {
    switch (message.message) {
        case WM_LBUTTONDOWN:
        case WM_LBUTTONUP:
        case WM_RBUTTONDOWN:
        case WM_RBUTTONUP:
        case WM_MBUTTONDOWN:
        case WM_MBUTTONUP:
            return true;
        case WM_KEYDOWN:
            return message.wParam == VK_RETURN || message.wParam == VK_ESCAPE;
        default:
            return false;
    }
}

void MoveCursorBy(HWND window, int pixels) {
    POINT cursor{};
    GetCursorPos(&cursor);
    ScreenToClient(window, &cursor);
    cursor.x = ClampSplit(cursor.x + pixels, ClientWidth(window));
    ClientToScreen(window, &cursor);
    SetCursorPos(cursor.x, cursor.y);
}

}  // namespace

int ClampSplit(int position, int clientWidth) {
    const int minimum = Scaled(kMinimumPane);
    return std::max(minimum, std::min(position, clientWidth - minimum));
}

bool OverSplitter(POINT point) {
    RECT tree{};
    GetWindowRect(TreeWindow(), &tree);
    MapWindowPoints(nullptr, gApp.mainWindow, reinterpret_cast<POINT*>(&tree), 2);
    return point.x >= tree.right && point.x < tree.right + Scaled(kSplitterWidth) && point.y >= tree.top &&
           point.y < tree.bottom;
}

std::optional<int> TV_HandleSplitDrag(HWND window, POINT start) {
    DbgVsprintf("TV_HandleSplitDrag", "Entered");
    int position = ClampSplit(start.x, ClientWidth(window));
    bool cancelled = false;
    SetCapture(window);
    {
        DragBand band(window);
        band.MoveTo(position);
        MSG message{};
        while (GetCapture() == window) {
            if (GetMessageW(&message, nullptr, 0, 0) <= 0) {
                PostQuitMessage(static_cast<int>(message.wParam));
                cancelled = true;
                break;
            }
            if (message.message == WM_MOUSEMOVE) {
                POINT point{};
                GetCursorPos(&point);
                ScreenToClient(window, &point);
                position = ClampSplit(point.x, ClientWidth(window));
                band.MoveTo(position);
            } else if (message.message == WM_KEYDOWN && (message.wParam == VK_LEFT || message.wParam == VK_RIGHT)) {
                MoveCursorBy(window, message.wParam == VK_LEFT ? -kKeyStep : kKeyStep);
            } else if (EndsDrag(message)) {
                cancelled = message.message == WM_KEYDOWN && message.wParam == VK_ESCAPE;
                break;
            } else {
                DispatchMessageW(&message);
            }
        }
    }
    if (GetCapture() == window) ReleaseCapture();
    return cancelled ? std::optional<int>() : position;
}
