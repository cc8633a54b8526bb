#include "ui/screen/pane_colors.h"

namespace {

constexpr int kHighlightShare = 35;  // percent

// The edit field of a label counts as the pane.
bool HasFocus(HWND pane) {
    const HWND focus = GetFocus();
    return focus == pane || (focus != nullptr && IsChild(pane, focus));
}

}  // namespace

COLORREF QuietSelectionColor() {
    return MixColors(GetSysColor(COLOR_HIGHLIGHT), GetSysColor(COLOR_WINDOW), kHighlightShare);
}

LRESULT DrawTreeItem(NMTVCUSTOMDRAW& draw) {
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
    const HWND tree = draw.nmcd.hdr.hwndFrom;
    const auto item = reinterpret_cast<HTREEITEM>(draw.nmcd.dwItemSpec);
    const UINT state = TreeView_GetItemState(tree, item, TVIS_SELECTED | TVIS_DROPHILITED);
    if (state != TVIS_SELECTED || HasFocus(tree)) return CDRF_DODEFAULT;
    draw.clrTextBk = QuietSelectionColor();
    draw.clrText = GetSysColor(COLOR_WINDOWTEXT);
    return CDRF_DODEFAULT;
}

LRESULT DrawListItem(NMLVCUSTOMDRAW& draw) {
    if (draw.nmcd.dwDrawStage == CDDS_PREPAINT) return CDRF_NOTIFYITEMDRAW;
    if (draw.nmcd.dwDrawStage != CDDS_ITEMPREPAINT) return CDRF_DODEFAULT;
    const HWND list = draw.nmcd.hdr.hwndFrom;
    const int item = static_cast<int>(draw.nmcd.dwItemSpec);
    if (ListView_GetItemState(list, item, LVIS_SELECTED) == 0 || HasFocus(list)) return CDRF_DODEFAULT;
    // For selected items the control would override these colours.
    draw.nmcd.uItemState &= ~static_cast<UINT>(CDIS_SELECTED);
    draw.clrTextBk = QuietSelectionColor();
    draw.clrText = GetSysColor(COLOR_WINDOWTEXT);
    return CDRF_NEWFONT;
}
