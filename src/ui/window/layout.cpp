#include "ui/window/layout.h"

#include <commctrl.h>

#include <algorithm>

#include "config/settings.h"
#include "foundation/console_pane.h"
#include "foundation/trace.h"
#include "ui/bars/status_bar.h"
#include "ui/commands/toolbar.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"
#include "ui/window/placement.h"
#include "ui/window/splitter.h"

namespace {

constexpr int kTitleBarHeight = 20;  // bars above the panes, pixels at 96 dpi

// A tree that becomes smaller scrolls to its selected node, unless the user had scrolled away from it before.
bool SelectionIsVisible() {
    const HTREEITEM selected = TreeView_GetSelection(TreeWindow());
    RECT place{};
    RECT pane{};
    if (selected == nullptr || !TreeView_GetItemRect(TreeWindow(), selected, &place, TRUE)) return false;
    GetClientRect(TreeWindow(), &pane);
    return place.top >= pane.top && place.bottom <= pane.bottom;
}

}  // namespace

void Zarn_OnSize(HWND window, int width, int height) {
    SendMessageW(gApp.toolbar, TB_AUTOSIZE, 0, 0);
    SendMessageW(gApp.statusBar, WM_SIZE, 0, 0);
    LayoutStatusParts(width);
    const int top = ToolbarHeight();
    const int bottom = height - StatusBarHeight();
    const int console = std::clamp(ConsoleHeight(), 0, std::max(0, (bottom - top) / 2));
    const int panesBottom = bottom - console;
    const int split = ClampSplit(Scaled(gZarn.nSplit), width);
    const int bar = Scaled(kTitleBarHeight);
    const int listLeft = split + Scaled(kSplitterWidth);
    const int panesTop = top + bar;
    const int indent = Scaled(4);

    const bool nodeVisible = SelectionIsVisible();
    HDWP move = BeginDeferWindowPos(5);
    const auto place = [&move](HWND pane, int left, int upper, int wide, int high, UINT flags = 0) {
        if (move != nullptr && pane != nullptr) {
            move = DeferWindowPos(move, pane, nullptr, left, upper, std::max(0, wide), std::max(0, high),
                                  flags | SWP_NOZORDER | SWP_NOACTIVATE);
        }
    };
    // Titles are redrawn whole: where they end in an ellipsis depends on their width.
    place(gApp.treeTitle, indent, top, split - indent, bar, SWP_NOCOPYBITS);
    place(gApp.listTitle, listLeft + indent, top, width - listLeft - indent, bar, SWP_NOCOPYBITS);
    place(TreeWindow(), 0, panesTop, split, panesBottom - panesTop);
    place(ListWindow(), listLeft, panesTop, width - listLeft, panesBottom - panesTop);
    place(reinterpret_cast<HWND>(ConsoleWindow()), 0, panesBottom, width, console);
    if (move != nullptr) EndDeferWindowPos(move);
    if (nodeVisible) TreeView_EnsureVisible(TreeWindow(), TreeView_GetSelection(TreeWindow()));
    RememberPlacement(window);
}

void Zarn_NewSize(HWND window) {
    RECT client{};
    GetClientRect(window, &client);
    Zarn_OnSize(window, client.right, client.bottom);
}

void Tree_MoveSplit(HWND window, int position) {
    DbgVsprintf("Tree_MoveSplit", "Entered");
    RECT client{};
    GetClientRect(window, &client);
    gZarn.nSplit = MulDiv(ClampSplit(position, client.right), 96, static_cast<int>(gApp.dpi));
    Zarn_NewSize(window);
}
