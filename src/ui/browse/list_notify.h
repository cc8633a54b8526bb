// What the list control tells its parent: texts to show, keys, clicks, label edits, selections. Not here: the begin of
// a drag, which the main window hands to drag/.
#pragma once

#include <windows.h>

#include <commctrl.h>

// WM_NOTIFY of the list and of its headings; true when handled, with the answer in `result`.
bool LV_NotifyHandler(NMHDR* header, LRESULT& result);
