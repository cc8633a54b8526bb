// The description of a menu that the menu probe gives. Shared by the probe, which is loaded into the program, and the
// driver; both must have the same pointer size.
#pragma once

#include <windows.h>

struct MenuQuery {
    static constexpr int kMostItems = 32;
    static constexpr int kTextUnits = 64;
    struct Item {
        UINT id;     // 0 for a separator, UINT_MAX for a sub-menu
        UINT state;  // MF_GRAYED, MF_SEPARATOR, ...
        HMENU subMenu;
        wchar_t text[kTextUnits];
    };
    HMENU menu;  // in
    int count;   // out: -1 when there is no such menu
    Item items[kMostItems];
};
