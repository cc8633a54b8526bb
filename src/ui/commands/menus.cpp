#include "ui/commands/menus.h"

#include <array>

#include "config/settings.h"
#include "foundation/foundation_view.h"
#include "foundation/trace.h"
#include "resources/resource.h"
#include "ui/browse/command_context.h"
#include "ui/browse/command_state.h"
#include "ui/browse/tree_edit.h"
#include "ui/browse/tree_selection.h"
#include "ui/commands/command_table.h"
#include "ui/drag/drops.h"
#include "ui/panes/list_pane.h"
#include "ui/panes/tree_pane.h"
#include "ui/screen/app.h"

namespace {

bool InMenu(HMENU menu, unsigned command) {
    return GetMenuState(menu, command, MF_BYCOMMAND) != static_cast<UINT>(-1);
}

void Enable(HMENU menu, unsigned command, bool enable) {
    EnableMenuItem(menu, command, MF_BYCOMMAND | (enable && CommandIsAvailable(command) ? MF_ENABLED : MF_GRAYED));
}

struct NamedItem {
    unsigned command;
    const char* name;
    bool FileMenuState::*enabled;
};

constexpr std::array<NamedItem, 6> kFileItems = {{
    {IDM_RECEIVE, "IDM_RECEIVE", &FileMenuState::transfer},
    {IDM_DELETE, "IDM_DELETE", &FileMenuState::remove},
    {IDM_RENAME, "IDM_RENAME", &FileMenuState::rename},
    {IDM_PROPERTIES, "IDM_PROPERTIES", &FileMenuState::properties},
    {IDM_QUICKVIEW, "IDM_QUICKVIEW", &FileMenuState::view},
    {IDM_PRINT, "IDM_PRINT", &FileMenuState::view},
}};

void PrepareFileMenu(HMENU menu, int index, const CommandContext& context) {
    const FileMenuState state = FileMenuFor(context);
    for (const NamedItem& item : kFileItems) {
        if (!InMenu(menu, item.command)) {
            DbgVsprintf("Zarn_HandleInitMenuPopup", "(ERROR) Menu Item Missing. SubMenu:%d, %s:%d", index, item.name,
                        static_cast<int>(item.command));
            continue;
        }
        Enable(menu, item.command, state.*item.enabled);
    }
}

void PrepareViewMenu(HMENU menu, const CommandContext& context) {
    Enable(menu, IDM_VIEW_LARGE_ICONS, gZarn.uiStyle != UiStyle::LargeIcons);
    Enable(menu, IDM_VIEW_SMALL_ICONS, gZarn.uiStyle != UiStyle::SmallIcons);
    Enable(menu, IDM_VIEW_LIST, gZarn.uiStyle != UiStyle::List);
    EnableMenuItem(menu, MENU_VIEW_ARRANGE, MF_BYPOSITION | (context.siteConnected ? MF_ENABLED : MF_GRAYED));
    Enable(menu, IDM_VIEW_LINEUP_ICONS, context.siteConnected);
    Enable(menu, IDM_LV_REFRESH, context.siteConnected);
    Enable(menu, IDM_SETUP, true);
}

void PrepareDetailsMenu(HMENU menu) {
    const bool details = gZarn.uiStyle == UiStyle::Details;
    Enable(menu, IDM_DETAILS_WINDOWS, !(details && gZarn.COLUMNS == kColumnsWindows));
    Enable(menu, IDM_DETAILS_UNIX, !(details && gZarn.COLUMNS != kColumnsWindows));
}

// Owns one pop-up of the resource "PopupMenus".
class PopupMenu {
  public:
    explicit PopupMenu(int position)
        : all_(LoadMenuW(gApp.instance, L"PopupMenus")), menu_(GetSubMenu(all_, position)) {}
    ~PopupMenu() { DestroyMenu(all_); }
    PopupMenu(const PopupMenu&) = delete;
    PopupMenu& operator=(const PopupMenu&) = delete;

    HMENU get() const { return menu_; }
    void Remove(unsigned command) { DeleteMenu(menu_, command, MF_BYCOMMAND); }
    // Deletes separators that removed items left at the ends or side by side.
    void TidySeparators() {
        bool afterSeparator = true;
        for (int i = 0; i < GetMenuItemCount(menu_);) {
            const bool separator = IsSeparator(i);
            if (separator && (afterSeparator || i == GetMenuItemCount(menu_) - 1)) {
                DeleteMenu(menu_, static_cast<UINT>(i), MF_BYPOSITION);
                continue;
            }
            afterSeparator = separator;
            ++i;
        }
        const int last = GetMenuItemCount(menu_) - 1;
        if (last >= 0 && IsSeparator(last)) DeleteMenu(menu_, static_cast<UINT>(last), MF_BYPOSITION);
    }
    unsigned Track(POINT position) const {
        return static_cast<unsigned>(TrackPopupMenu(menu_, TPM_RETURNCMD | TPM_RIGHTBUTTON, position.x, position.y, 0,
                                                    gApp.mainWindow, nullptr));
    }

  private:
    bool IsSeparator(int position) const {
        return (GetMenuState(menu_, static_cast<UINT>(position), MF_BYPOSITION) & MF_SEPARATOR) != 0;
    }
    HMENU all_;
    HMENU menu_;
};

// Greys the items of a pop-up whose commands have no handler.
void GreyUnavailable(HMENU menu) {
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        const UINT id = GetMenuItemID(menu, i);
        if (id != 0 && id != static_cast<UINT>(-1) && !CommandIsAvailable(id)) {
            EnableMenuItem(menu, static_cast<UINT>(i), MF_BYPOSITION | MF_GRAYED);
        }
    }
}

unsigned ChooseForSite(const Site& site, POINT position) {
    PopupMenu menu(POPUP_TV_SITE);
    if (site.bConnected != 0) {
        menu.Remove(IDM_CONNECT);
        menu.Remove(IDM_DELETE_SITE);
    } else {
        menu.Remove(IDM_DISCONNECT);
    }
    GreyUnavailable(menu.get());
    return menu.Track(position);
}

unsigned ChooseForFolder(POINT position) {
    PopupMenu menu(POPUP_TV_FOLDER);
    menu.Remove(IDM_TV_RENAME);
    menu.Remove(IDM_TV_DELETE);
    menu.TidySeparators();
    GreyUnavailable(menu.get());
    return menu.Track(position);
}

unsigned ChooseFor(int popup, POINT position) {
    PopupMenu menu(popup);
    GreyUnavailable(menu.get());
    return menu.Track(position);
}

unsigned ChooseInList(POINT position) {
    PopupMenu menu(POPUP_LISTVIEW);
    const CommandContext context = CurrentCommandContext();
    const bool any = context.selected > 0;
    Enable(menu.get(), IDM_LV_RECEIVE, any && context.siteConnected);
    Enable(menu.get(), IDM_QUICKVIEW, any && context.anyFileSelected);
    Enable(menu.get(), IDM_PRINT, any && context.anyFileSelected);
    Enable(menu.get(), IDM_LV_NEWFOLDER, ToolbarButtonEnabled(IDM_NEWFOLDER, context, false));
    Enable(menu.get(), IDM_LV_PASTE, context.siteConnected && ClipboardHoldsFiles());
    Enable(menu.get(), IDM_LV_DELETE, any);
    Enable(menu.get(), IDM_LV_RENAME, context.selected == 1);
    Enable(menu.get(), IDM_PROPERTIES, any);
    if (context.firstKind != kKindLink || context.selected != 1) menu.Remove(IDM_LV_RESOLVE);
    GreyUnavailable(menu.get());
    return menu.Track(position);
}

unsigned ChooseForNode(const TVobject& node, POINT position) {
    switch (node.wObjType) {
        case kKindAddSite:
            return ChooseFor(POPUP_TV_WIZARD, position);
        case kKindSite:
            return node.pSite == nullptr ? 0 : ChooseForSite(*node.pSite, position);
        case kKindSiteRoot:
        case kKindFolder:
            return ChooseForFolder(position);
        default:
            return 0;
    }
}

// The selected node; sets `position` to the lower edge of its label, where a menu opened by key appears.
TreeHit SelectedHit(POINT& position) {
    const HTREEITEM item = TreeView_GetSelection(TreeWindow());
    if (item == nullptr) return {};
    RECT place{};
    TreeView_EnsureVisible(TreeWindow(), item);
    if (TreeView_GetItemRect(TreeWindow(), item, &place, TRUE)) {
        position = {place.left, place.bottom};
        ClientToScreen(TreeWindow(), &position);
    }
    return {item, GetTVobjectByItem(item)};
}

void RefreshIfSelected(HWND, TVobject* node) {
    if (node == SelectedNode()) RefreshSelectedFolder();
}

void DeleteClickedSite(HWND, TVobject* node) {
    DeleteSiteNode(node);
    SetFocus(TreeWindow());
}

void EditClickedLabel(HWND, TVobject* node) {
    TreeView_EditLabel(TreeWindow(), ItemOf(node));
}

void ConnectClickedSite(HWND window, TVobject* node) {
    SelectNode(node);
    ProcessCommandsWndProc(window, IDM_CONNECT);
}

// Commands that act on the clicked node itself; all others act on the selection.
struct NodeCommand {
    unsigned id;
    void (*handler)(HWND window, TVobject* node);
};
constexpr std::array<NodeCommand, 5> kNodeCommands = {{
    {IDM_CONNECT, ConnectClickedSite},
    {IDM_TV_REFRESH, RefreshIfSelected},
    {IDM_DELETE_SITE, DeleteClickedSite},
    {IDM_RENAME_SITE, EditClickedLabel},
    {IDM_TV_RENAME, EditClickedLabel},
}};

void RunForNode(HWND window, unsigned command, TVobject* node) {
    for (const NodeCommand& known : kNodeCommands) {
        if (known.id != command) continue;
        known.handler(window, node);
        return;
    }
    SelectNode(node);
    gApp.focus = Pane::Tree;
    ProcessCommandsWndProc(window, command);
}

void TV_HandleRClick(HWND window, POINT position, bool byKeyboard) {
    const TreeHit hit = byKeyboard ? SelectedHit(position) : TreeHitTest(position, kHitRow);
    if (hit.node == nullptr) return;
    if (ItemOf(hit.node) != hit.item) {
        ShowMessageBox("Hit problem in GetPopupMenu(TV)", nullptr, BoxButtons::Ok, BoxIcon::Exclamation);
        return;
    }
    // The node is highlighted while the menu is open; the selection does not change.
    TreeView_Select(TreeWindow(), hit.item, TVGN_DROPHILITE);
    const unsigned command = ChooseForNode(*hit.node, position);
    TreeView_Select(TreeWindow(), nullptr, TVGN_DROPHILITE);
    // A listing that ran while the menu was open may have replaced the node.
    if (command != 0 && !CommandsRefused() && IsNodeInTree(hit.node)) RunForNode(window, command, hit.node);
}

void ListContextMenu(HWND window, POINT position, bool byKeyboard) {
    if (byKeyboard) {
        RECT place{};
        const int first = FirstSelected();
        if (first >= 0) {
            ListView_EnsureVisible(ListWindow(), first, FALSE);
            ListView_GetItemRect(ListWindow(), first, &place, LVIR_LABEL);
        }
        position = {place.left, place.bottom};
        ClientToScreen(ListWindow(), &position);
    }
    const unsigned command = ChooseInList(position);
    if (command == 0 || CommandsRefused()) return;
    ProcessCommandsWndProc(window, command);
}

}  // namespace

void Zarn_HandleInitMenuPopup(HMENU menu, int index) {
    if (CommandsRefused()) return;
    const CommandContext context = CurrentCommandContext();
    // The Details sub-menu has the same index within View as Server has in the menu bar; only their items differ.
    if (InMenu(menu, IDM_DETAILS_WINDOWS) && !InMenu(menu, IDM_VIEW_LIST)) {
        PrepareDetailsMenu(menu);
        return;
    }
    switch (index) {
        case MENU_FILE:
            if (InMenu(menu, IDM_EXITAPP)) PrepareFileMenu(menu, index, context);
            break;
        case MENU_EDIT:
            Enable(menu, IDM_SELECTALL, context.focus == CommandContext::Focus::List && context.listItems > 0);
            break;
        case MENU_VIEW:
            PrepareViewMenu(menu, context);
            break;
        case MENU_SERVER:
            Enable(menu, IDM_CMD_STAT, context.siteConnected);
            break;
        default:
            break;
    }
}

void Zarn_OnContextMenu(HWND window, POINT position) {
    DbgVsprintf("Zarn_OnContextMenu", "Entered");
    if (CommandsRefused()) return;
    const bool byKeyboard = position.x == -1 && position.y == -1;
    const HWND target = byKeyboard ? GetFocus() : WindowFromPoint(position);
    if (target == TreeWindow()) {
        TV_HandleRClick(window, position, byKeyboard);
    } else if (target == ListWindow()) {
        ListContextMenu(window, position, byKeyboard);
    }
}
