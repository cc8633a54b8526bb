// How the selection of a pane looks that does not have the focus: readable, and clearly quieter than the one that has.
// (The controls take the face colour, which many colour schemes give nearly the shade of the window.)
#pragma once

#include <windows.h>

#include <commctrl.h>

// `percent` of the first colour in the second.
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
// NM_CUSTOMDRAW of the panes: the answer to the control.
LRESULT DrawTreeItem(NMTVCUSTOMDRAW& draw);
LRESULT DrawListItem(NMLVCUSTOMDRAW& draw);
