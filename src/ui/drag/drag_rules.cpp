#include "ui/drag/drag_rules.h"

#include "listing/directory_entry.h"

bool CanBeTransferred(std::uint32_t kind) {
    switch (kind) {
        case kKindSiteRoot:
        case kKindFolder:
        case kKindFile:
        case kKindLocalFolder:
        case kKindLocalFile:
            return true;
        default:
            return false;
    }
}

DropEffect DropEffectFor(const DragLoad& load, const DropPlace& place) {
    if (load.items <= 0) return DropEffect::None;
    const bool localPlace = place.kind == kKindLocalRoot || place.kind == kKindLocalFolder;
    const bool remotePlace = place.kind == kKindSite || place.kind == kKindSiteRoot || place.kind == kKindFolder;
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
