// One entry of a directory as the list pane shows it. The parsers fill it, the list pane owns it; nothing here parses.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "config/file_type.h"
#include "foundation/file_time.h"
#include "foundation/owned_text.h"
#include "listing/item_kind.h"

struct TVobject;
struct SymLinkItem;
void Zarn_FreeSymLinkItem(SymLinkItem* item);

struct LVobject {
    OwnedText name;      // of a Unix link: name, " -> " and target
    OwnedText mode;      // ten-character permission text
    OwnedText owner;     // at most 29 characters
    OwnedText group;     // at most 29 characters
    OwnedText sizeText;  // made by the constructor or on first display
    OwnedText dateText;
    std::uint32_t type = kKindUnclassified;
    std::uint32_t links = 0;
    std::uint32_t size = 0;              // bytes; 4 GiB and more cannot be shown
    const FTobject* fileType = nullptr;  // not owned
    FileTime time = 0;                   // modification, local time
    SymLinkItem* link = nullptr;         // owned; meaningful for links only
    TVobject* node = nullptr;            // not owned: a folder's own node, else the node of the listed folder
};

// A resolved link.
struct SymLinkItem {
    std::uint32_t hops = 0;
    OwnedText chain;          // link texts met, joined by " : "
    OwnedText linkFolder;     // folder of the current link
    OwnedText pszLinkPath;    // target as written
    OwnedText pszLinkedName;  // its last component
    OwnedText targetFolder;
    LVobject* object = nullptr;  // owned: the target
};

struct LVobjectTemplate {
    const char* name = nullptr;
    const char* mode = nullptr;
    const char* owner = nullptr;
    const char* group = nullptr;
    std::uint32_t links = 0;
    std::uint32_t size = 0;
    bool stampTime = false;
};

// A zero-filled entry, or one filled from the template; null when memory is short.
LVobject* AllocateLVobject(const LVobjectTemplate* filling);
// Null is accepted; a chain of links is freed as a whole.
void Zarn_FreeLVobject(LVobject* entry);
struct LVobjectDeleter {
    void operator()(LVobject* entry) const { Zarn_FreeLVobject(entry); }
};
using LVobjectPtr = std::unique_ptr<LVobject, LVobjectDeleter>;
struct SymLinkItemDeleter {
    void operator()(SymLinkItem* item) const { Zarn_FreeSymLinkItem(item); }
};
using SymLinkItemPtr = std::unique_ptr<SymLinkItem, SymLinkItemDeleter>;

// Empties a record before it is parsed into; sizeText, type, link and node are left alone.
void ClearLVobject(LVobject* entry);

// "0KB", "1KB" up to 2047 bytes, "4,882KB".
OwnedText Zarn_GetColumnSizeText(std::uint32_t size);
// Separates a link's name from its target.
inline constexpr std::string_view kLinkArrow = " -> ";
// Where the arrow before the target begins: the last one that has a text before it; npos for a name without.
std::size_t LastLinkArrow(std::string_view text);
// The name without " -> target" for a link, the whole name otherwise.
std::string_view EntryName(const LVobject& entry);
// A remote name as the windows and the console show it: DisplayName, control characters as "?". The record keeps the
// bytes that the server sent, because commands need them.
std::string ShownName(std::string_view remoteName);
