#include "listing/directory_entry.h"

#include <cstdio>
#include <new>

#include "foundation/date_text.h"
#include "foundation/display_name.h"
#include "foundation/error_report.h"
#include "foundation/number_text.h"
#include "foundation/text_copy.h"

namespace {

// False when memory is short; an empty source leaves the field null.
bool CopyNonEmpty(const char* source, OwnedText& field) {
    if (source == nullptr || *source == '\0') return true;
    field = DupString(source);
    return static_cast<bool>(field);
}

bool StampTime(LVobject* entry) {
    if (!Zarn_GetTimeStamp("AllocateLVobject", nullptr, &entry->time, TimeStampKind::Now)) return false;
    entry->dateText = Zarn_GetFileTimeString(&entry->time);
    return static_cast<bool>(entry->dateText);
}

bool FillFromTemplate(LVobject* entry, const LVobjectTemplate& filling) {
    if (!CopyNonEmpty(filling.name, entry->name) || !CopyNonEmpty(filling.mode, entry->mode) ||
        !CopyNonEmpty(filling.owner, entry->owner) || !CopyNonEmpty(filling.group, entry->group)) {
        return false;
    }
    entry->links = filling.links;
    entry->size = filling.size;
    entry->sizeText = Zarn_GetColumnSizeText(filling.size);
    if (!entry->sizeText) return false;
    return !filling.stampTime || StampTime(entry);
}

void ClearIfNotEmpty(OwnedText& text) {
    if (!text.empty()) text.reset();
}

}  // namespace

LVobject* AllocateLVobject(const LVobjectTemplate* filling) {
    auto* entry = new (std::nothrow) LVobject();
    if (entry == nullptr) {
        ShowNoMemoryError();
        return nullptr;
    }
    if (filling != nullptr && !FillFromTemplate(entry, *filling)) {
        Zarn_FreeLVobject(entry);
        return nullptr;
    }
    return entry;
}

void Zarn_FreeLVobject(LVobject* entry) {
    if (entry == nullptr) return;
    if (entry->type == kKindLink) Zarn_FreeSymLinkItem(entry->link);
    delete entry;
}

void Zarn_FreeSymLinkItem(SymLinkItem* item) {
    if (item == nullptr) return;
    Zarn_FreeLVobject(item->object);
    delete item;
}

void ClearLVobject(LVobject* entry) {
    ClearIfNotEmpty(entry->name);
    ClearIfNotEmpty(entry->mode);
    ClearIfNotEmpty(entry->owner);
    ClearIfNotEmpty(entry->group);
    ClearIfNotEmpty(entry->dateText);
    entry->links = 0;
    entry->size = 0;
    entry->fileType = nullptr;
    entry->time = 0;
}

OwnedText Zarn_GetColumnSizeText(std::uint32_t size) {
    if (size == 0) return OwnedText::Copy("0KB");
    const std::uint32_t kilobytes = size > 1024 ? size / 1024 : 1;
    char digits[16];
    std::snprintf(digits, sizeof digits, "%u", static_cast<unsigned>(kilobytes));
    return OwnedText::Copy(GroupDigits(digits) + "KB");
}

std::string_view EntryName(const LVobject& entry) {
    const std::string_view name = entry.name.view();
    if (entry.type != kKindLink) return name;
    return name.substr(0, LastLinkArrow(name));
}

std::size_t LastLinkArrow(std::string_view text) {
    std::size_t last = std::string_view::npos;
    std::size_t from = 0;
    while (true) {
        const std::size_t found = text.find(kLinkArrow, from);
        // Quirk: an arrow with nothing before it ends the search, kept.
        if (found == std::string_view::npos || found == from) return last;
        last = found;
        from = found + kLinkArrow.size();
    }
}

std::string ShownName(std::string_view remoteName) {
    std::string shown = DisplayName(remoteName);
    for (char& character : shown) {
        const auto code = static_cast<unsigned char>(character);
        if (code < 0x20 || code == 0x7F) character = '?';
    }
    return shown;
}
