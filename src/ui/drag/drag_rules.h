// What may be dropped where: entries of the list, or files of the shell, onto nodes of the tree; and when the tree
// scrolls or opens a node during a drag. Pure: no window. The drag itself is drag_drop.h.
#pragma once

#include <cstdint>

// What is being dragged.
struct DragLoad {
    bool local = false;          // on this computer; otherwise on a server
    bool siteConnected = false;  // of the server that the items are on
    int items = 0;               // how many can be transferred
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
    NotConnected,  // the drop is accepted and answered with a message
};

DropEffect DropEffectFor(const DragLoad& load, const DropPlace& place);

// -1 to scroll up a line, 1 down, 0 to stay: `y` against the pane's edges, all in the same coordinates. The pane
// scrolls within `margin` of an edge, on either side of it.
int DragScroll(int y, int top, int bottom, int margin);
// Milliseconds after which a closed node under a resting pointer opens.
inline constexpr std::uint32_t kOpenAfter = 700;
bool OpensUnderPointer(std::uint32_t restedFor, bool isOpen, bool hasButton);
