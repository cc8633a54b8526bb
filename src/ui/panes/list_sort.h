// Sorts the list's entries by any column, with the rules for links, sizes and the two layouts. Pure: no window.
#pragma once

#include <cstdint>
#include <vector>

#include "listing/directory_entry.h"

struct SortState {
    bool descending[8] = {};
    bool clicked[8] = {};
    int lastColumn = -1;
};

// Converts a column number of the layout to a logical column; -1: there is none, and all entries are equal.
int EffectiveColumn(int column, std::uint32_t layout);
// Compares two entries by a column number of the layout (in the Windows layout 2 and up mean 4 more; above 7 all are
// equal). <0, 0, >0.
int CompareEntries(const LVobject& a, const LVobject& b, int column, std::uint32_t layout, bool descending);
// A click on a logical column sets its direction and makes it the last sorted one.
void NoteColumnClick(SortState& state, int logicalColumn);
// The sort is stable.
void SortEntries(std::vector<LVobjectPtr>& entries, int column, std::uint32_t layout, bool descending);
