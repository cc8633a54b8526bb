// The order of the list's entries, by any column, with the rules for links, sizes and the two layouts. Pure: no window.
#pragma once

#include <cstdint>
#include <vector>

#include "listing/directory_entry.h"

struct SortState {
    bool descending[8] = {};
    bool clicked[8] = {};
    int lastColumn = -1;
};

// The logical column that a column number means in the layout; -1 when it means none, and then all entries are equal.
int EffectiveColumn(int column, std::uint32_t layout);
// Comparison of two entries by a column number of the layout (in the Windows layout 2 and up are raised by 4; above 7
// everything is equal). <0, 0, >0.
int CompareEntries(const LVobject& a, const LVobject& b, int column, std::uint32_t layout, bool descending);
// A click on a logical column: settles its direction and makes it the last sorted one.
void NoteColumnClick(SortState& state, int logicalColumn);
// Stable order of the entries.
void SortEntries(std::vector<LVobjectPtr>& entries, int column, std::uint32_t layout, bool descending);
