#include "ui/panes/list_sort.h"

#include <algorithm>
#include <numeric>
#include <string>
#include <string_view>

#include "config/settings.h"
#include "foundation/text_compare.h"
#include "platform/system.h"
#include "ui/panes/logical_column.h"

namespace {

// A resolved link sorts like its target in every column.
const LVobject& LinkTarget(const LVobject& entry) {
    if (entry.type != kKindLink || entry.link == nullptr || entry.link->object == nullptr) return entry;
    return *entry.link->object;
}

std::string_view TextOf(const LVobject& entry, int column) {
    switch (column) {
        case kColumnName:
            return entry.name.view();
        case kColumnType:
            return entry.fileType != nullptr ? entry.fileType->pszDescription.view() : std::string_view();
        case kColumnUmask:
            return entry.mode.view();
        case kColumnOwner:
            return entry.owner.view();
        default:
            return entry.group.view();
    }
}

std::int32_t SortSize(const LVobject& entry) {
    switch (entry.type) {
        case kKindDevice:
        case kKindPipe:
        case kKindLocalRoot:
        case kKindLocalFolder:
            return 0;
        default:
            return static_cast<std::int32_t>(entry.size);
    }
}

bool IsText(int column) {
    return column != kColumnLinks && column != kColumnSize && column != kColumnTimestamp;
}

// The value that a column compares, made once per entry and sort.
struct SortKey {
    std::string text;
    std::int32_t number = 0;
    FileTime time = 0;
};

// Names of plain ASCII, nearly all of them, need no system call.
std::string LowerCase(std::string_view text) {
    const bool ascii = std::none_of(text.begin(), text.end(), [](char c) { return (c & 0x80) != 0; });
    return ascii ? AsciiLower(text) : platform::LocaleLower(text);
}

SortKey KeyOf(const LVobject& entry, int column) {
    const LVobject& target = LinkTarget(entry);
    SortKey key;
    if (column == kColumnTimestamp) {
        key.time = target.time;
    } else if (column == kColumnSize) {
        key.number = SortSize(target);
    } else if (column == kColumnLinks) {
        key.number = static_cast<std::int32_t>(target.links);
    } else {
        key.text = LowerCase(TextOf(target, column));
    }
    return key;
}

template <class Value>
int Order(const Value& a, const Value& b) {
    return a < b ? -1 : b < a ? 1 : 0;
}

int CompareKeys(const SortKey& a, const SortKey& b, int column, bool descending) {
    int order = 0;
    if (IsText(column)) {
        order = a.text.compare(b.text);
    } else if (column == kColumnTimestamp) {
        order = Order(a.time, b.time);
    } else {
        // Quirk: numbers sort the other way round than texts, the larger first while the flag is clear, kept.
        order = Order(b.number, a.number);
    }
    return descending ? -order : order;
}

}  // namespace

int EffectiveColumn(int column, std::uint32_t layout) {
    const int effective = layout == kColumnsWindows && column >= 2 ? column + 4 : column;
    return effective >= 0 && effective < kLogicalColumns ? effective : -1;
}

int CompareEntries(const LVobject& a, const LVobject& b, int column, std::uint32_t layout, bool descending) {
    const int effective = EffectiveColumn(column, layout);
    if (effective < 0) return 0;
    return CompareKeys(KeyOf(a, effective), KeyOf(b, effective), effective, descending);
}

void NoteColumnClick(SortState& state, int logicalColumn) {
    if (logicalColumn < 0 || logicalColumn >= kLogicalColumns) return;
    // Quirk: going back to a column keeps the direction it was last sorted in, kept.
    if (logicalColumn == state.lastColumn) {
        state.descending[logicalColumn] = state.clicked[logicalColumn] && !state.descending[logicalColumn];
    }
    state.clicked[logicalColumn] = true;
    state.lastColumn = logicalColumn;
}

void SortEntries(std::vector<LVobjectPtr>& entries, int column, std::uint32_t layout, bool descending) {
    const int effective = EffectiveColumn(column, layout);
    if (effective < 0) return;
    std::vector<SortKey> keys;
    keys.reserve(entries.size());
    for (const LVobjectPtr& entry : entries) keys.push_back(KeyOf(*entry, effective));
    std::vector<std::uint32_t> order(entries.size());
    std::iota(order.begin(), order.end(), 0u);
    std::stable_sort(order.begin(), order.end(), [&](std::uint32_t a, std::uint32_t b) {
        return CompareKeys(keys[a], keys[b], effective, descending) < 0;
    });
    std::vector<LVobjectPtr> sorted;
    sorted.reserve(entries.size());
    for (const std::uint32_t index : order) sorted.push_back(std::move(entries[index]));
    entries.swap(sorted);
}
