// One item to transfer: what it is called on both sides, where it comes from and goes, how it went.
#pragma once

#include <cstdint>
#include <memory>

#include "foundation/file_time.h"
#include "foundation/owned_text.h"

inline constexpr std::uint32_t kNodeSiteRoot = 1;
inline constexpr std::uint32_t kNodeFolder = 2;
inline constexpr std::uint32_t kNodeFile = 4;
inline constexpr std::uint32_t kNodeLink = 8;

struct TransferNode {
    OwnedText pszLocalName;    // when it differs from the remote name; for an upload the local file's name
    OwnedText pszRemoteName;   // for an upload only when the name sent differs
    OwnedText pszStoredName;   // of an upload whose name the server chose (STOU) and gave
    OwnedText pszLocation;     // folder that holds the source
    OwnedText pszDestination;  // folder that receives it
    std::uint32_t NodeType = 0;
    std::uint32_t iSize = 0;  // bytes, as the listing said
    FileTime time = 0;        // modification, as the listing said; 0 when unknown
    int iRetCode = 0;
};

// Null is accepted.
void Zarn_FreeTransferNode(TransferNode* node);
struct TransferNodeDeleter {
    void operator()(TransferNode* node) const { Zarn_FreeTransferNode(node); }
};
using TransferNodePtr = std::unique_ptr<TransferNode, TransferNodeDeleter>;
