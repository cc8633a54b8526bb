// What may be dropped where: entries of the list, or files of the shell, onto nodes of the tree; and how the tree moves
// under the pointer meanwhile. Pure: no window. The drag itself is drag_drop.h.
#pragma once

#include <cstdint>

// What is carried.
struct DragLoad {
    bool local = false;          // files and folders of this computer; else of a server
    bool siteConnected = false;  // the server that it stands on
    int items = 0;               // that can be transferred
};

// The node under the pointer.
struct DropPlace {
    std::uint32_t kind = 0;  // ItemKind, 0 without a node
    bool siteConnected = false;
};

enum class DropEffect {
    None,          // no-drop cursor
    Receive,       // into the local folder
    Send,          // into the remote folder
    NotConnected,  // can be dropped, and the user is told why nothing happens
};

DropEffect DropEffectFor(const DragLoad& load, const DropPlace& place);

// -1 to scroll up a line, 1 down, 0 to stay: `y` against the pane's edges, all in the same coordinates. The pane
// scrolls within `margin` of an edge, on either side of it.
int DragScroll(int y, int top, int bottom, int margin);
// A closed node opens when the pointer has rested on it for so long, in milliseconds.
inline constexpr std::uint32_t kOpenAfter = 700;
bool OpensUnderPointer(std::uint32_t restedFor, bool isOpen, bool hasButton);
