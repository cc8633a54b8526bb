// The selection's colours in a pane without the focus: readable, but clearly weaker than in the pane that has it. (The
// controls would use the face colour, which in many colour schemes hardly differs from the window's.)
#pragma once

#include <windows.h>

#include <commctrl.h>

// `percent` of the first colour, the rest of the second.
constexpr COLORREF MixColors(COLORREF first, COLORREF second, int percent) {
    COLORREF mixed = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const int a = static_cast<int>(first >> shift & 0xFF);
        const int b = static_cast<int>(second >> shift & 0xFF);
        mixed |= static_cast<COLORREF>((a * percent + b * (100 - percent)) / 100) << shift;
    }
    return mixed;
}
COLORREF QuietSelectionColor();
// NM_CUSTOMDRAW of the panes; returns the answer to the control.
LRESULT DrawTreeItem(NMTVCUSTOMDRAW& draw);
LRESULT DrawListItem(NMLVCUSTOMDRAW& draw);
