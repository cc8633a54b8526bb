#include "foundation/text_fit_window.h"

#include <windows.h>

#include <algorithm>

#include "foundation/wide_text_window.h"

namespace {

RECT PlaceInDialog(HWND dialog, HWND control) {
    RECT place{};
    GetWindowRect(control, &place);
    MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&place), 2);
    return place;
}

// Pixels that the text takes in the control's font and width, broken as the control breaks it.
int NeededHeight(HWND control, int width, int mostLines) {
    const HDC context = GetDC(control);
    if (context == nullptr) return 0;
    const HGDIOBJ font = reinterpret_cast<HGDIOBJ>(SendMessageW(control, WM_GETFONT, 0, 0));
    const HGDIOBJ before = font != nullptr ? SelectObject(context, font) : nullptr;
    constexpr UINT kFormat = DT_CALCRECT | DT_WORDBREAK | DT_EDITCONTROL | DT_NOPREFIX;
    RECT oneLine{0, 0, width, 0};
    DrawTextW(context, L"X", 1, &oneLine, kFormat);
    RECT area{0, 0, width, 0};
    const std::wstring text = Wide(GetText(control));
    DrawTextW(context, text.c_str(), static_cast<int>(text.size()), &area, kFormat);
    if (before != nullptr) SelectObject(context, before);
    ReleaseDC(control, context);
    return std::clamp<int>(area.bottom, oneLine.bottom, mostLines * oneLine.bottom);
}

void MoveDown(HWND dialog, HWND control, int pixels) {
    const RECT place = PlaceInDialog(dialog, control);
    SetWindowPos(control, nullptr, place.left, place.top + pixels, 0, 0, SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

}  // namespace

void FitDialogToText(WindowHandle dialog, int item, int mostLines) {
    const HWND control = GetDlgItem(dialog, item);
    if (control == nullptr) return;
    const RECT place = PlaceInDialog(dialog, control);
    const int width = place.right - place.left;
    const int height = NeededHeight(control, width, mostLines);
    const int grown = height - (place.bottom - place.top);
    if (height == 0 || grown == 0) return;
    for (HWND child = GetWindow(dialog, GW_CHILD); child != nullptr; child = GetWindow(child, GW_HWNDNEXT)) {
        if (PlaceInDialog(dialog, child).top >= place.bottom) MoveDown(dialog, child, grown);
    }
    SetWindowPos(control, nullptr, 0, 0, width, height, SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
    RECT window{};
    GetWindowRect(dialog, &window);
    SetWindowPos(dialog, nullptr, window.left, window.top - grown / 2, window.right - window.left,
                 window.bottom - window.top + grown, SWP_NOZORDER | SWP_NOACTIVATE);
}
