// Columns of the details view in its two layouts: which, how wide, how aligned, and the text of each for an entry.
#pragma once

#include <windows.h>

#include <span>

#include "listing/directory_entry.h"

enum LogicalColumn {
    kColumnName,
    kColumnType,
    kColumnUmask,
    kColumnLinks,
    kColumnOwner,
    kColumnGroup,
    kColumnSize,
    kColumnTimestamp,
    kLogicalColumns
};

// The logical column shown at a display position of the layout with `columns` columns.
int LogicalColumnAt(std::uint32_t columns, int position);
// By display position: the fourth and the seventh are right-aligned, in either layout, as wanted.
bool IsRightAligned(int position);
const char* ColumnText(LVobject& entry, int logicalColumn);
unsigned ColumnHeaderMessage(int logicalColumn);
// Removes all columns and inserts those of the layout.
void RebuildColumns(HWND list, std::uint32_t columns);
// Widens the columns to fit the texts of a folder's first entries; remembered and stored widths win.
void FitColumns(HWND list, std::uint32_t columns, std::span<const LVobjectPtr> entries);
// Widths that were right at one resolution become right at another.
void RescaleColumns(HWND list, UINT fromDpi, UINT toDpi);
// Gives the shown columns the widths that are remembered for them.
void ReapplyColumns(HWND list);
// The user dragged a heading: that width stays.
void KeepColumnWidth(HWND list, int position);
// Writes the widths of the layout shown to the store.
void SaveShownColumns(HWND list);
