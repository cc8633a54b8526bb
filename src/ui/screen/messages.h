// Numbers that the main window hands out: its own messages and its timers. One list, so that no two uses share a
// number. Child window and command numbers are in resources/resource.h.
#pragma once

#include <windows.h>

// Carries a call from another thread (ui_calls.h).
inline constexpr UINT kUiCallMessage = WM_APP + 1;
// Refreshes what the window shows of its state (refresh.h).
inline constexpr UINT kRefreshMessage = WM_APP + 2;
// Begins a drag of the list's selection; wParam: index of the entry under the pointer.
inline constexpr UINT kBeginDragMessage = WM_APP + 3;
// The user gave a column of the list its width; wParam: the column's position.
inline constexpr UINT kColumnResizedMessage = WM_APP + 4;
// Disconnects one site, as IDM_DISCONNECT does the active one; lParam: Site*, which may be gone on arrival.
inline constexpr UINT kDisconnectMessage = WM_APP + 5;

// Runs while an operation does; its interval is the time-out of the settings.
inline constexpr UINT_PTR kTimeOutTimer = 10;
// Delays the listing of a node that was just selected.
inline constexpr UINT_PTR kSelectionTimer = 11;
// Scrolls the tree and opens its nodes during a drag.
inline constexpr UINT_PTR kDragTimer = 12;
