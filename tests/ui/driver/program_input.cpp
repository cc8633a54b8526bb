// Mouse and keyboard input for the program's windows, and the places to click: entries, nodes, headings, buttons, parts
// of the status bar.
#include "ui/driver/program.h"

namespace {

POINT MiddleOf(const RECT& place) {
    return {(place.left + place.right) / 2, (place.top + place.bottom) / 2};
}

LPARAM AsParameter(POINT point) {
    return MAKELPARAM(point.x, point.y);
}

}  // namespace

void Program::TypeKey(WORD key, bool withCtrl) const {
    SetForegroundWindow(main_);
    INPUT input[4]{};
    const WORD keys[4] = {VK_CONTROL, key, key, VK_CONTROL};
    for (int i = 0; i < 4; ++i) {
        input[i].type = INPUT_KEYBOARD;
        input[i].ki.wVk = keys[i];
        if (i >= 2) input[i].ki.dwFlags = KEYEVENTF_KEYUP;
    }
    SendInput(withCtrl ? 4 : 2, withCtrl ? input : input + 1, sizeof(INPUT));
}

HWND Program::Focus() const {
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    GetGUIThreadInfo(GetWindowThreadProcessId(main_, nullptr), &info);
    return info.hwndFocus;
}

void Program::Click(HWND window, POINT client, bool twice) const {
    PostMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, AsParameter(client));
    PostMessageW(window, WM_LBUTTONUP, 0, AsParameter(client));
    if (!twice) return;
    PostMessageW(window, WM_LBUTTONDBLCLK, MK_LBUTTON, AsParameter(client));
    PostMessageW(window, WM_LBUTTONUP, 0, AsParameter(client));
}

POINT Program::ToScreen(HWND window, POINT client) const {
    ClientToScreen(window, &client);
    return client;
}

RECT Program::RectFrom(HWND window, UINT message, WPARAM which, const RECT& asked) const {
    RECT place{};
    WriteRemote(0, &asked, sizeof(asked));
    if (SendMessageW(window, message, which, reinterpret_cast<LPARAM>(Remote())) == 0) return place;
    ReadRemote(0, &place, sizeof(place));
    return place;
}

void Program::ClickHeader(int column) const {
    Click(Header(), MiddleOf(RectFrom(Header(), HDM_GETITEMRECT, static_cast<WPARAM>(column), {})));
}

namespace {
constexpr std::size_t kHeadingText = 256;
constexpr int kHeadingUnits = 64;
}  // namespace

std::wstring Program::ColumnTitle(int column) const {
    HDITEMW item{};
    item.mask = HDI_TEXT;
    item.pszText = reinterpret_cast<wchar_t*>(static_cast<char*>(Remote()) + kHeadingText);
    item.cchTextMax = kHeadingUnits - 1;
    WriteRemote(0, &item, sizeof(item));
    if (!SendMessageW(Header(), HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(Remote())))
        return {};
    wchar_t text[kHeadingUnits] = L"";
    ReadRemote(kHeadingText, text, sizeof(text) - sizeof(wchar_t));
    return text;
}

bool Program::ColumnIsRightAligned(int column) const {
    HDITEMW item{};
    item.mask = HDI_FORMAT;
    WriteRemote(0, &item, sizeof(item));
    SendMessageW(Header(), HDM_GETITEMW, static_cast<WPARAM>(column), reinterpret_cast<LPARAM>(Remote()));
    ReadRemote(0, &item, sizeof(item));
    return (item.fmt & HDF_JUSTIFYMASK) == HDF_RIGHT;
}

POINT Program::ListPlace(int item) const {
    RECT asked{};
    asked.left = LVIR_LABEL;
    return MiddleOf(RectFrom(List(), LVM_GETITEMRECT, static_cast<WPARAM>(item), asked));
}

HWND Program::LabelEdit(HWND pane) const {
    const UINT ask = pane == List() ? static_cast<UINT>(LVM_GETEDITCONTROL) : static_cast<UINT>(TVM_GETEDITCONTROL);
    return reinterpret_cast<HWND>(SendMessageW(pane, ask, 0, 0));
}

POINT Program::ButtonPlace(unsigned id) const {
    return MiddleOf(RectFrom(Toolbar(), TB_GETRECT, id, {}));
}

void Program::ClickStatusPart(int part) const {
    Click(StatusBar(), MiddleOf(RectFrom(StatusBar(), SB_GETRECT, static_cast<WPARAM>(part), {})));
}

POINT Program::TreePlace(HTREEITEM item) const {
    SendMessageW(Tree(), TVM_ENSUREVISIBLE, 0, reinterpret_cast<LPARAM>(item));
    RECT asked{};
    memcpy(&asked, &item, sizeof(item));  // the message expects the item where it puts the answer
    return MiddleOf(RectFrom(Tree(), TVM_GETITEMRECT, TRUE, asked));
}

int Program::TreeImage(HTREEITEM item, bool selected) const {
    TVITEMW request{};
    request.mask = selected ? TVIF_SELECTEDIMAGE : TVIF_IMAGE;
    request.hItem = item;
    WriteRemote(0, &request, sizeof(request));
    SendMessageW(Tree(), TVM_GETITEMW, 0, reinterpret_cast<LPARAM>(Remote()));
    ReadRemote(0, &request, sizeof(request));
    return selected ? request.iSelectedImage : request.iImage;
}
