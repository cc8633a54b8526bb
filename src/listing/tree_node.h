// One node of the tree as plain data: what it is, its children, its site. Its item in the tree control is an opaque
// number; drawing and selecting belong to the windows. A node owns its children and, at a site,
// the site.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "config/site.h"
#include "foundation/owned_text.h"
#include "listing/directory_entry.h"

struct TVobject {
    OwnedText pszName;
    std::uint32_t nChildren = 0;
    // Counters of the folder's last listing.
    std::uint32_t folders = 0;
    std::uint32_t files = 0;
    std::uint32_t links = 0;
    std::uint64_t bytes = 0;
    bool listed = false;       // its folder was listed once, so its children are known
    std::uintptr_t hItem = 0;  // the control's item; 0 while the node is in no control
    std::uint32_t wObjType = kKindUnclassified;
    TVobject* pTVparent = nullptr;
    Site* pSite = nullptr;  // site nodes only; owned
    std::vector<std::unique_ptr<TVobject, void (*)(TVobject*)>> children;
};

TVobject* AllocateTVobject(std::string_view name, std::uint32_t kind);
// Null is accepted. Frees the children and a site node's Site (sockets closed).
void Zarn_FreeTVobject(TVobject* node);

// Appends a new child and returns it. Does not look for a child of that name: TV_FindChild does, linearly.
TVobject* AddChildNode(TVobject* parent, std::string_view name, std::uint32_t kind);
TVobject* TV_FindChild(TVobject* parent, std::string_view name);
void RemoveChildNode(TVobject* parent, TVobject* child);

// The site of a node: its top node's; the active site for a null node.
Site* TV_GetFtpSite(const TVobject* node);
// Full path of a node in the server's or the local form; null for a null node.
OwnedText TV_GetPath(const TVobject* node);
// "\" for local nodes, else the site's separator ("/" until one is known).
char NodeSeparator(const TVobject* node);
