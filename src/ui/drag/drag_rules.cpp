#include "ui/drag/drag_rules.h"

#include "listing/item_kind.h"

DropEffect DropEffectFor(const DragLoad& load, const DropPlace& place) {
    if (load.items <= 0) return DropEffect::None;
    const bool localPlace = IsLocalFolderKind(place.kind);
    const bool remotePlace = place.kind == kKindSite || IsRemoteFolderKind(place.kind);
    if (!load.local && localPlace) return load.siteConnected ? DropEffect::Receive : DropEffect::NotConnected;
    if (load.local && remotePlace) return place.siteConnected ? DropEffect::Send : DropEffect::NotConnected;
    return DropEffect::None;
}

int DragScroll(int y, int top, int bottom, int margin) {
    if (y >= top - margin && y < top + margin) return -1;
    if (y >= bottom - margin && y < bottom + margin) return 1;
    return 0;
}

bool OpensUnderPointer(std::uint32_t restedFor, bool isOpen, bool hasButton) {
    return hasButton && !isOpen && restedFor >= kOpenAfter;
}
