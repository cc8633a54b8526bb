// The kinds of items, one numbering for list entries and tree nodes, and the questions asked about a kind.
#pragma once

#include <cstdint>

enum ItemKind : std::uint32_t {
    kKindUnclassified = 0,
    kKindAddSite = 1,
    kKindSite = 2,
    kKindSiteRoot = 3,  // a site's root directory
    kKindFolder = 4,    // remote
    kKindFile = 5,      // remote
    kKindLink = 6,
    kKindDevice = 7,
    kKindPipe = 8,
    kKindLocalComputer = 9,
    kKindLocalRoot = 10,  // a drive
    kKindLocalFolder = 11,
    kKindLocalFile = 12,
};

// A root or a folder below it, on the server.
bool IsRemoteFolderKind(std::uint32_t kind);
// A drive or a folder below it.
bool IsLocalFolderKind(std::uint32_t kind);
// Either of the two: what can be listed and entered.
bool IsFolderKind(std::uint32_t kind);
// A site's root directory or a drive: items that have no folder above them.
bool IsRootKind(std::uint32_t kind);
// The local computer and what a tree node below it can be; local files are list entries only.
bool IsLocalNodeKind(std::uint32_t kind);
// What a transfer takes: files, folders, a site's root. Links, devices and drives are left out.
bool IsTransferableKind(std::uint32_t kind);
