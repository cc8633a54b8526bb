// The list control's notifications: texts to show, keys, clicks, label edits, selections. A drag that begins in the
// list is drag/drag_drop.h.
#pragma once

#include <windows.h>

#include <commctrl.h>

// WM_NOTIFY of the list and of its headings; true when handled, with the answer in `result`.
bool LV_NotifyHandler(NMHDR* header, LRESULT& result);
