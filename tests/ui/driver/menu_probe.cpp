// A library that the driver loads into the program, because menus can only be read from inside.
#include "ui/driver/menu_probe.h"

// Started as a thread of the program with a MenuQuery in its memory.
extern "C" __declspec(dllexport) DWORD WINAPI DescribeMenu(void* argument) {
    auto& query = *static_cast<MenuQuery*>(argument);
    query.count = GetMenuItemCount(query.menu);
    for (int i = 0; i < query.count && i < MenuQuery::kMostItems; ++i) {
        MenuQuery::Item& item = query.items[i];
        const UINT position = static_cast<UINT>(i);
        item.id = GetMenuItemID(query.menu, i);
        item.subMenu = GetSubMenu(query.menu, i);
        item.state = GetMenuState(query.menu, position, MF_BYPOSITION);
        if (item.subMenu != nullptr) item.state &= 0xFFu;  // the high byte holds a sub-menu's count
        GetMenuStringW(query.menu, position, item.text, MenuQuery::kTextUnits, MF_BYPOSITION);
    }
    return 0;
}
