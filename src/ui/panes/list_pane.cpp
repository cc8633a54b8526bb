#include "ui/panes/list_pane.h"

#include <shellapi.h>

#include <algorithm>
#include <array>
#include <memory>
#include <new>
#include <unordered_set>
#include <utility>

#include "foundation/trace.h"
#include "platform/threads.h"
#include "resources/resource.h"
#include "ui/panes/list_columns.h"
#include "ui/panes/list_images.h"
#include "ui/panes/list_sort.h"
#include "ui/screen/app.h"
#include "ui/screen/redraw_pause.h"
#include "ui/screen/refresh.h"

namespace {

HWND gList = nullptr;
std::vector<LVobjectPtr> gEntries;
TVobject* gFolder = nullptr;
SortState gSort;
bool gColumnsFitted = false;  // for the folder that is shown

// More entries than this are freed on a thread of their own, so that leaving a large folder takes no time.
constexpr std::size_t kMostFreedHere = 4000;

// Milliseconds between two updates of the control's number of entries while a folder arrives in batches.
constexpr DWORD kCountInterval = 100;
DWORD gLastCount = 0;

void FreeOnThread(void* owned) {
    delete static_cast<std::vector<LVobjectPtr>*>(owned);
}

void FreeEntries(std::vector<LVobjectPtr> entries) {
    if (entries.size() <= kMostFreedHere) return;
    auto* owned = new (std::nothrow) std::vector<LVobjectPtr>(std::move(entries));
    if (owned == nullptr) return;
    const platform::ThreadHandle thread = platform::StartThread(FreeOnThread, owned);
    if (thread == platform::kNoThread) {
        FreeOnThread(owned);
        return;
    }
    platform::CloseThread(thread);
}

void ShowCount() {
    ListView_SetItemCountEx(gList, EntryCount(), LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
}

// The icon views have a place for every entry, given when the control arranges them.
bool IsIconView() {
    return gZarn.uiStyle == UiStyle::LargeIcons || gZarn.uiStyle == UiStyle::SmallIcons;
}

void ArrangeIcons() {
    if (IsIconView()) ListView_Arrange(gList, LVA_DEFAULT);
}

DWORD ViewBits(UiStyle style) {
    switch (style) {
        case UiStyle::LargeIcons:
            return LVS_ICON;
        case UiStyle::SmallIcons:
            return LVS_SMALLICON;
        case UiStyle::List:
            return LVS_LIST;
        default:
            return LVS_REPORT;
    }
}

// Draws a small arrow on the heading of the sorted column; -1: on none.
void ShowSortArrow(int logicalColumn, bool upwards) {
    HWND header = ListView_GetHeader(gList);
    const int count = Header_GetItemCount(header);
    for (int i = 0; i < count; ++i) {
        HDITEMW item{};
        item.mask = HDI_FORMAT;
        if (!SendMessageW(header, HDM_GETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item))) continue;
        item.fmt &= ~(HDF_SORTUP | HDF_SORTDOWN);
        if (logicalColumn >= 0 && LogicalColumnAt(gZarn.COLUMNS, i) == logicalColumn) {
            item.fmt |= upwards ? HDF_SORTUP : HDF_SORTDOWN;
        }
        SendMessageW(header, HDM_SETITEMW, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(&item));
    }
}

void AddState(int index, UINT bits) {
    ListView_SetItemState(gList, index, bits, bits);
}

// With more selected entries it is faster to let the control go through all entries.
constexpr int kDeselectedOneByOne = 500;

void ClearSelection() {
    const int selected = SelectedCount();
    if (selected > kDeselectedOneByOne) {
        const RedrawPause pause(gList);
        ListView_SetItemState(gList, -1, 0, LVIS_SELECTED);
        return;
    }
    // The control searches every entry for the next selected one, so stop after the last.
    for (int i = -1, left = selected; left > 0 && (i = ListView_GetNextItem(gList, i, LVNI_SELECTED)) >= 0; --left) {
        ListView_SetItemState(gList, i, 0, LVIS_SELECTED);
    }
}

// Remembers which entries are selected and which one has the focus while their places change.
class SelectionKeeper {
  public:
    SelectionKeeper() : selected_(SelectedCount()), focused_(ListView_GetNextItem(gList, -1, LVNI_FOCUSED)) {
        focusedEntry_ = EntryAt(focused_);
        if (!IsPartial()) return;
        for (const LVobject* entry : SelectedEntries()) entries_.insert(entry);
    }
    void Restore() const {
        if (IsPartial()) {
            ClearSelection();
            for (int i = 0; i < EntryCount(); ++i) {
                if (entries_.count(EntryAt(i)) != 0) AddState(i, LVIS_SELECTED);
            }
        }
        if (focusedEntry_ == nullptr) return;
        const int index = IndexOfEntry(focusedEntry_);
        AddState(index, LVIS_FOCUSED);
        ListView_EnsureVisible(gList, index, FALSE);
    }

    // Also restores a selection of all entries, which the control forgets when its number of entries changes.
    void RestoreAll() const {
        if (selected_ > 0 && selected_ == EntryCount()) SelectAllEntries();
        Restore();
    }

  private:
    bool IsPartial() const { return selected_ > 0 && selected_ < EntryCount(); }
    int selected_;
    int focused_;
    const LVobject* focusedEntry_ = nullptr;
    std::unordered_set<const LVobject*> entries_;
};

// The only entries that the control sees while it measures texts.
std::vector<LVobject*> gSample;
constexpr std::size_t kSampleSize = 24;

std::vector<LVobject*> LongestNames() {
    std::vector<LVobject*> entries;
    entries.reserve(gEntries.size());
    for (const LVobjectPtr& entry : gEntries) entries.push_back(entry.get());
    const std::size_t size = std::min(kSampleSize, entries.size());
    std::partial_sort(
        entries.begin(), entries.begin() + static_cast<std::ptrdiff_t>(size), entries.end(),
        [](const LVobject* a, const LVobject* b) { return a->name.view().size() > b->name.view().size(); });
    entries.resize(size);
    return entries;
}

// At the start of a view the control measures every entry, so it is shown the longest names only.
void SetViewBits(UiStyle style) {
    const SelectionKeeper keeper;
    gSample = LongestNames();
    ListView_SetItemCountEx(gList, static_cast<int>(gSample.size()), LVSICF_NOINVALIDATEALL | LVSICF_NOSCROLL);
    const LONG bits = GetWindowLongW(gList, GWL_STYLE);
    SetWindowLongW(gList, GWL_STYLE, (bits & ~LVS_TYPEMASK) | static_cast<LONG>(ViewBits(style)));
    gSample.clear();
    ListView_SetItemCountEx(gList, EntryCount(), 0);
    ArrangeIcons();
    keeper.RestoreAll();
}

// The control's original procedure; tree_pane.cpp says why it is kept here.
WNDPROC gControlProc = nullptr;

LRESULT CALLBACK ListProc(HWND list, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_DROPFILES) return SendMessageW(GetParent(list), message, wParam, lParam);
    return CallWindowProcW(gControlProc, list, message, wParam, lParam);
}

void Resort(int column, int logicalColumn) {
    const bool descending = gSort.descending[logicalColumn];
    const SelectionKeeper keeper;
    const RedrawPause pause(gList);
    SortEntries(gEntries, column, gZarn.COLUMNS, descending);
    keeper.Restore();
    const bool largerFirst = logicalColumn == kColumnLinks || logicalColumn == kColumnSize;
    ShowSortArrow(logicalColumn, descending == largerFirst);
}

}  // namespace

bool CreateListPane(HWND parent) {
    const DWORD style = WS_CHILD | WS_VISIBLE | WS_CLIPSIBLINGS | WS_TABSTOP | LVS_OWNERDATA | LVS_SHOWSELALWAYS |
                        LVS_EDITLABELS | LVS_SHAREIMAGELISTS | ViewBits(gZarn.uiStyle);
    gList = CreateWindowExW(WS_EX_CLIENTEDGE, WC_LISTVIEWW, L"", style, 0, 0, 0, 0, parent,
                            reinterpret_cast<HMENU>(static_cast<INT_PTR>(IDC_LIST_PANE)), gApp.instance, nullptr);
    if (gList == nullptr) {
        DbgVsprintf("CreateListPane", "CreateWindow of ListView failed!");
        return false;
    }
    ListView_SetUnicodeFormat(gList, TRUE);
    ListView_SetExtendedListViewStyle(gList, LVS_EX_FULLROWSELECT | LVS_EX_DOUBLEBUFFER | LVS_EX_LABELTIP);
    if (!MakeListImages(gList)) return false;
    RebuildColumns(gList, gZarn.COLUMNS);
    gControlProc =
        reinterpret_cast<WNDPROC>(SetWindowLongPtrW(gList, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(ListProc)));
    DragAcceptFiles(gList, TRUE);
    return true;
}

void DestroyListPane() {
    InitListView();
    if (gList != nullptr) DestroyWindow(gList);
    gList = nullptr;
    DestroyListImages();
}

HWND ListWindow() {
    return gList;
}

void InitListView() {
    if (gList != nullptr) ListView_DeleteAllItems(gList);
    if (gSort.lastColumn >= 0 && gList != nullptr) ShowSortArrow(-1, false);
    if (gFolder != nullptr && gApp.listTitle != nullptr) SetWindowTextW(gApp.listTitle, L"");
    gColumnsFitted = false;
    gFolder = nullptr;
    FreeEntries(std::exchange(gEntries, {}));
}

void LV_AddEntries(TVobject* folder, std::vector<LVobjectPtr> entries) {
    gFolder = folder;
    const bool first = gEntries.empty();
    if (first) {
        gEntries = std::move(entries);
    } else {
        std::move(entries.begin(), entries.end(), std::back_inserter(gEntries));
    }
    // The first entries show at once; updating the scroll bars is slow and happens every now and then.
    const DWORD now = GetTickCount();
    const bool due = !gColumnsFitted || now - gLastCount >= kCountInterval;
    // Icons would have to be arranged each time, so they wait for the last batch.
    if (first || (due && !IsIconView())) {
        gLastCount = now;
        ShowCount();
        ArrangeIcons();
        if (gZarn.uiStyle != UiStyle::Details) InvalidateRect(gList, nullptr, TRUE);
    }
    if (!gColumnsFitted && !gEntries.empty()) {
        gColumnsFitted = true;
        FitColumns(gList, gZarn.COLUMNS, gEntries);
    }
}

void LV_EntriesComplete() {
    if (gList == nullptr) return;
    const RedrawPause pause(gList);
    ShowCount();
    if (gZarn.uiStyle == UiStyle::List || gZarn.uiStyle == UiStyle::SmallIcons) {
        // The control measures the width of these views' columns only when a view begins.
        SetViewBits(UiStyle::Details);
        SetViewBits(gZarn.uiStyle);
    }
    ArrangeIcons();
}

int LV_AddItem(LVobjectPtr entry) {
    if (!entry || gList == nullptr) return -1;
    gEntries.push_back(std::move(entry));
    ShowCount();
    ArrangeIcons();
    return EntryCount() - 1;
}

void LV_ReplaceItem(int index, LVobjectPtr entry) {
    if (EntryAt(index) == nullptr || !entry) return;
    gEntries[static_cast<std::size_t>(index)] = std::move(entry);
    RedrawEntry(index);
}

void LV_DeleteItem(int index) {
    if (EntryAt(index) == nullptr) return;
    gEntries.erase(gEntries.begin() + index);
    // The control adjusts its selection and focus itself.
    ListView_DeleteItem(gList, index);
    ShowCount();
    ArrangeIcons();
    InvalidateRect(gList, nullptr, TRUE);
}

int EntryCount() {
    return static_cast<int>(gEntries.size());
}

LVobject* EntryAt(int index) {
    return index >= 0 && index < EntryCount() ? gEntries[static_cast<std::size_t>(index)].get() : nullptr;
}

TVobject* ListedFolder() {
    return gFolder;
}

std::vector<const LVobject*> SelectedEntries() {
    std::vector<const LVobject*> entries;
    const int selected = SelectedCount();
    if (selected == EntryCount()) {
        for (const LVobjectPtr& entry : gEntries) entries.push_back(entry.get());
        return entries;
    }
    for (int i = -1, left = selected; left > 0 && (i = ListView_GetNextItem(gList, i, LVNI_SELECTED)) >= 0; --left) {
        if (const LVobject* entry = EntryAt(i)) entries.push_back(entry);
    }
    return entries;
}

int FirstSelected() {
    return gList != nullptr ? ListView_GetNextItem(gList, -1, LVNI_SELECTED) : -1;
}

int SelectedCount() {
    return gList != nullptr ? static_cast<int>(ListView_GetSelectedCount(gList)) : 0;
}

bool AnyFileSelected() {
    int left = SelectedCount();
    const bool all = left == EntryCount();
    for (int i = -1; left-- > 0 && (i = all ? i + 1 : ListView_GetNextItem(gList, i, LVNI_SELECTED)) >= 0;) {
        const LVobject* entry = EntryAt(i);
        if (entry == nullptr) return false;
        if (entry->type == kKindFile || entry->type == kKindLocalFile) return true;
    }
    return false;
}

std::uint64_t SelectedBytes() {
    std::uint64_t bytes = 0;
    for (const LVobject* entry : SelectedEntries()) bytes += entry->size;
    return bytes;
}

void SelectAllEntries() {
    // The control goes through all entries, and with redrawing on also through their places.
    {
        const RedrawPause pause(gList);
        ListView_SetItemState(gList, -1, LVIS_SELECTED, LVIS_SELECTED);
    }
    PostRefreshWindowState();
}

void SelectOnly(int index) {
    ClearSelection();
    if (EntryAt(index) == nullptr) return;
    AddState(index, LVIS_SELECTED | LVIS_FOCUSED);
    ListView_EnsureVisible(gList, index, FALSE);
}

void LV_ChangeView(UiStyle style, std::uint32_t columns) {
    constexpr char kFuncName[] = "LV_ChangeView";
    static constexpr std::array<const char*, 4> kAlready = {"ERROR. Already Large Icons", "ERROR. Already Details",
                                                            "ERROR. Already Small Icons", "ERROR. Already List"};
    DbgVsprintf(kFuncName, "Entered");
    const bool details = style == UiStyle::Details;
    if (style == gZarn.uiStyle && (!details || columns == gZarn.COLUMNS)) {
        DbgVsprintf(kFuncName, "%s", kAlready[static_cast<std::size_t>(style)]);
        return;
    }
    const RedrawPause pause(gList);
    if (details && columns != gZarn.COLUMNS) {
        gZarn.COLUMNS = columns;
        RebuildColumns(gList, columns);
        if (EntryCount() > 0) FitColumns(gList, columns, gEntries);
    }
    if (style != gZarn.uiStyle) {
        gZarn.uiStyle = style;
        SetViewBits(style);
        ReapplyColumns(gList);
    }
    const int focused = ListView_GetNextItem(gList, -1, LVNI_FOCUSED);
    if (focused >= 0) ListView_EnsureVisible(gList, focused, FALSE);
}

void SortEntriesByColumn(int column) {
    const int logical = EffectiveColumn(column, gZarn.COLUMNS);
    if (logical < 0) return;
    gSort.lastColumn = logical;
    Resort(column, logical);
}

void SortEntriesByClick(int position) {
    const int logical = LogicalColumnAt(gZarn.COLUMNS, position);
    if (logical < 0) return;
    NoteColumnClick(gSort, logical);
    Resort(position, logical);
}

LVobject* ShownEntryAt(int index) {
    if (gSample.empty()) return EntryAt(index);
    return index >= 0 && static_cast<std::size_t>(index) < gSample.size() ? gSample[static_cast<std::size_t>(index)]
                                                                          : nullptr;
}

int IndexOfEntry(const LVobject* entry) {
    const auto found =
        std::find_if(gEntries.begin(), gEntries.end(), [entry](const auto& owned) { return owned.get() == entry; });
    return found == gEntries.end() ? -1 : static_cast<int>(found - gEntries.begin());
}

void RedrawEntry(int index) {
    ListView_RedrawItems(gList, index, index);
}
