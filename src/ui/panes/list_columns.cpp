#include "ui/panes/list_columns.h"

#include <commctrl.h>

#include <algorithm>
#include <array>
#include <string>

#include "config/column_widths.h"
#include "config/settings.h"
#include "config/store_key.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/wide_text_window.h"
#include "platform/registry.h"
#include "ui/screen/app.h"
#include "ui/screen/redraw_pause.h"

namespace {

struct ColumnInfo {
    unsigned heading;
    int width;    // before measuring, pixels at 96 dpi
    int largest;  // limit of measuring, pixels at 96 dpi
};
constexpr std::array<ColumnInfo, kLogicalColumns> kColumnInfo = {{
    {MSG_COLUMN_NAME, 200, 420},
    {MSG_COLUMN_TYPE, 110, 240},
    {MSG_COLUMN_UMASK, 84, 130},
    {MSG_COLUMN_LINKS, 48, 90},
    {MSG_COLUMN_OWNER, 68, 200},
    {MSG_COLUMN_GROUP, 68, 200},
    {MSG_COLUMN_SIZE, 72, 160},
    {MSG_COLUMN_TIMESTAMP, 118, 240},
}};
constexpr std::array<int, kColumnsWindows> kWindowsLayout = {kColumnName, kColumnType, kColumnSize, kColumnTimestamp};

constexpr int kMargin = 16;                    // beside a text, pixels at 96 dpi
constexpr int kIconRoom = 22;                  // in front of a name, pixels at 96 dpi
constexpr int kArrowRoom = 18;                 // behind a heading
constexpr std::size_t kEntriesMeasured = 500;  // of a folder
constexpr std::size_t kTextsMeasured = 12;     // of a column

// The widths of one layout, in pixels. Stored widths, and those that the user chose, are kept.
struct LayoutWidths {
    bool known = false;
    std::array<int, kMostColumns> width{};
    std::array<bool, kMostColumns> kept{};
};
LayoutWidths gWindowsWidths;
LayoutWidths gUnixWidths;

LayoutWidths& WidthsOf(std::uint32_t columns) {
    return columns == kColumnsUnix ? gUnixWidths : gWindowsWidths;
}

int ColumnCount(std::uint32_t columns) {
    return columns == kColumnsUnix ? kLogicalColumns : static_cast<int>(kColumnsWindows);
}

int TextWidth(HWND list, std::wstring_view text) {
    return static_cast<int>(SendMessageW(list, LVM_GETSTRINGWIDTHW, 0, reinterpret_cast<LPARAM>(text.data())));
}

// Does not ask for a layout that was never stored, because the store would report the missing key.
bool LoadStoredWidths(std::uint32_t columns) {
    if (columns != gZarn.COLUMNS) return false;
    const char* key = columns == kColumnsUnix ? "\\View\\Unix" : "\\View\\Windows";
    const std::string path = StoreKeyPath(std::string(kDefaultsKey) + key);
    if (!platform::RegistryKeyExists(platform::RegistryRoot::CurrentUser, path)) return false;
    return LoadColumnInfo(ColumnCount(columns));
}

void LearnWidths(HWND list, std::uint32_t columns) {
    LayoutWidths& widths = WidthsOf(columns);
    if (widths.known) return;
    widths.known = true;
    const bool stored = LoadStoredWidths(columns);
    for (int i = 0; i < ColumnCount(columns); ++i) {
        const std::size_t at = static_cast<std::size_t>(i);
        const ColumnInfo& info = kColumnInfo[static_cast<std::size_t>(LogicalColumnAt(columns, i))];
        const int heading = TextWidth(list, Wide(CatalogueText(info.heading))) + Scaled(kMargin + kArrowRoom);
        widths.width[at] = std::max(Scaled(info.width), heading);
        if (stored && gZarn.iColumnLengths[i] > 0) {
            widths.width[at] = gZarn.iColumnLengths[i];
            widths.kept[at] = true;
        }
    }
}

// The width of a column's widest text. Measuring is slow, so only the longest texts are measured.
int WidestText(HWND list, int logicalColumn, std::span<const LVobjectPtr> entries) {
    std::array<std::wstring, kTextsMeasured> longest;
    std::size_t used = 0;
    for (const LVobjectPtr& entry : entries) {
        const std::string text = ShownName(ColumnText(*entry, logicalColumn));
        if (used == longest.size()) {
            const auto shortest = std::min_element(longest.begin(), longest.end(),
                                                   [](const auto& a, const auto& b) { return a.size() < b.size(); });
            if (text.size() > shortest->size()) *shortest = Wide(text);
        } else {
            longest[used++] = Wide(text);
        }
    }
    int widest = 0;
    for (std::size_t i = 0; i < used; ++i) widest = std::max(widest, TextWidth(list, longest[i]));
    return widest;
}

void PublishWidths(const LayoutWidths& widths) {
    for (std::size_t i = 0; i < widths.width.size(); ++i) gZarn.iColumnLengths[i] = widths.width[i];
}

}  // namespace

int LogicalColumnAt(std::uint32_t columns, int position) {
    if (position < 0 || position >= ColumnCount(columns)) return -1;
    return columns == kColumnsUnix ? position : kWindowsLayout[static_cast<std::size_t>(position)];
}

bool IsRightAligned(int position) {
    return position == 3 || position == 6;
}

const char* ColumnText(LVobject& entry, int logicalColumn) {
    static std::string number;
    switch (logicalColumn) {
        case kColumnName:
            return entry.name.c_str();
        case kColumnType:
            return entry.fileType != nullptr ? entry.fileType->pszDescription.c_str() : "";
        case kColumnUmask:
            return entry.mode.c_str();
        case kColumnLinks:
            number = std::to_string(entry.links);
            return number.c_str();
        case kColumnOwner:
            return entry.owner.c_str();
        case kColumnGroup:
            return entry.group.c_str();
        case kColumnSize:
            if (!entry.sizeText) entry.sizeText = Zarn_GetColumnSizeText(entry.size);
            return entry.sizeText.c_str();
        case kColumnTimestamp:
            return entry.dateText.c_str();
        default:
            return "";
    }
}

unsigned ColumnHeaderMessage(int logicalColumn) {
    return logicalColumn >= 0 && logicalColumn < kLogicalColumns
               ? kColumnInfo[static_cast<std::size_t>(logicalColumn)].heading
               : 0;
}

void RebuildColumns(HWND list, std::uint32_t columns) {
    LearnWidths(list, columns);
    const LayoutWidths& widths = WidthsOf(columns);
    const RedrawPause pause(list);
    while (ListView_DeleteColumn(list, 0)) {
    }
    for (int i = 0; i < ColumnCount(columns); ++i) {
        std::wstring heading = Wide(CatalogueText(ColumnHeaderMessage(LogicalColumnAt(columns, i))));
        LVCOLUMNW column{};
        column.mask = LVCF_FMT | LVCF_WIDTH | LVCF_TEXT | LVCF_SUBITEM;
        column.fmt = IsRightAligned(i) ? LVCFMT_RIGHT : LVCFMT_LEFT;
        column.cx = widths.width[static_cast<std::size_t>(i)];
        column.pszText = heading.data();
        column.iSubItem = i;
        SendMessageW(list, LVM_INSERTCOLUMNW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&column));
    }
    PublishWidths(widths);
}

void FitColumns(HWND list, std::uint32_t columns, std::span<const LVobjectPtr> entries) {
    LearnWidths(list, columns);
    LayoutWidths& widths = WidthsOf(columns);
    const auto measured = entries.first(std::min(entries.size(), kEntriesMeasured));
    for (int i = 0; i < ColumnCount(columns); ++i) {
        const std::size_t at = static_cast<std::size_t>(i);
        if (widths.kept[at]) continue;
        const int logical = LogicalColumnAt(columns, i);
        const int room = Scaled(logical == kColumnName ? kMargin + kIconRoom : kMargin);
        const int largest = Scaled(kColumnInfo[static_cast<std::size_t>(logical)].largest);
        const int fitting = std::min(WidestText(list, logical, measured) + room, largest);
        if (fitting <= widths.width[at]) continue;
        widths.width[at] = fitting;
        ListView_SetColumnWidth(list, i, fitting);
    }
    PublishWidths(widths);
}

void ReapplyColumns(HWND list) {
    if (gZarn.uiStyle != UiStyle::Details) return;
    const LayoutWidths& widths = WidthsOf(gZarn.COLUMNS);
    for (int i = 0; i < ColumnCount(gZarn.COLUMNS); ++i) {
        const int width = widths.width[static_cast<std::size_t>(i)];
        if (ListView_GetColumnWidth(list, i) != width) ListView_SetColumnWidth(list, i, width);
    }
}

void RescaleColumns(HWND list, UINT fromDpi, UINT toDpi) {
    for (LayoutWidths* widths : {&gWindowsWidths, &gUnixWidths}) {
        for (int& width : widths->width) width = MulDiv(width, static_cast<int>(toDpi), static_cast<int>(fromDpi));
    }
    PublishWidths(WidthsOf(gZarn.COLUMNS));
    ReapplyColumns(list);
}

void KeepColumnWidth(HWND list, int position) {
    if (LogicalColumnAt(gZarn.COLUMNS, position) < 0) return;
    LayoutWidths& widths = WidthsOf(gZarn.COLUMNS);
    widths.width[static_cast<std::size_t>(position)] = ListView_GetColumnWidth(list, position);
    widths.kept[static_cast<std::size_t>(position)] = true;
    PublishWidths(widths);
}

void SaveShownColumns(HWND list) {
    if (gZarn.COLUMNS != kColumnsWindows && gZarn.COLUMNS != kColumnsUnix) return;
    const int count = ColumnCount(gZarn.COLUMNS);
    std::int32_t shown[kMostColumns] = {};
    const LayoutWidths& widths = WidthsOf(gZarn.COLUMNS);
    const bool visible = gZarn.uiStyle == UiStyle::Details;
    for (int i = 0; i < count; ++i) {
        shown[i] = visible ? ListView_GetColumnWidth(list, i) : widths.width[static_cast<std::size_t>(i)];
    }
    SaveColumnInfo(shown, count);
}
