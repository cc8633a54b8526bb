// Widths of the list pane's columns in the store, one key per column layout. Measuring and showing columns belongs to
// the list pane.
#pragma once

#include <cstdint>

// Widths of the layout that gZarn.COLUMNS names; false for another layout. `widths` are pixels, first column first.
bool SaveColumnInfo(const std::int32_t* widths, int count);
// Reads into gZarn.iColumnLengths until a value is missing; true when all `count` were there.
bool LoadColumnInfo(int count);
