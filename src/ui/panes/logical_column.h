// The columns that the details view can show, whatever their place in a layout. Which layout shows which is
// list_columns.h.
#pragma once

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
