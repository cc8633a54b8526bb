// The columns of the details view in its two layouts: their order, widths and alignment, and each one's text for an
// entry.
#pragma once

#include <windows.h>

#include <span>

#include "listing/directory_entry.h"
#include "ui/panes/logical_column.h"

// The logical column at a display position of the layout with `columns` columns; -1 beyond the last.
int LogicalColumnAt(std::uint32_t columns, int position);
// Quirk: the fourth and the seventh position are right-aligned in either layout, whatever they show, kept.
bool IsRightAligned(int position);
// Valid until the next call. Fills in the entry's size text on the first request.
const char* ColumnText(LVobject& entry, int logicalColumn);
// Message id of the column's heading; 0 for none.
unsigned ColumnHeaderMessage(int logicalColumn);
// Removes all columns and inserts those of the layout.
void RebuildColumns(HWND list, std::uint32_t columns);
// Widens the columns to fit the texts of a folder's first entries; remembered and stored widths win.
void FitColumns(HWND list, std::uint32_t columns, std::span<const LVobjectPtr> entries);
// Converts the widths from one resolution to another and applies them.
void RescaleColumns(HWND list, UINT fromDpi, UINT toDpi);
// Applies the remembered widths to the columns shown.
void ReapplyColumns(HWND list);
// The user chose the width of the column at that position: fitting leaves it alone from here on.
void KeepColumnWidth(HWND list, int position);
// Stores the widths of the present layout.
void SaveShownColumns(HWND list);
