#include "listing/item_kind.h"

bool IsRemoteFolderKind(std::uint32_t kind) {
    return kind == kKindSiteRoot || kind == kKindFolder;
}

bool IsLocalFolderKind(std::uint32_t kind) {
    return kind == kKindLocalRoot || kind == kKindLocalFolder;
}

bool IsFolderKind(std::uint32_t kind) {
    return IsRemoteFolderKind(kind) || IsLocalFolderKind(kind);
}

bool IsRootKind(std::uint32_t kind) {
    return kind == kKindSiteRoot || kind == kKindLocalRoot;
}

bool IsLocalNodeKind(std::uint32_t kind) {
    return kind == kKindLocalComputer || IsLocalFolderKind(kind);
}

bool IsTransferableKind(std::uint32_t kind) {
    return IsRemoteFolderKind(kind) || kind == kKindFile || kind == kKindLocalFolder || kind == kKindLocalFile;
}
