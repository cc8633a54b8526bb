#include "foundation/text_width_window.h"

#include <windows.h>

#include <string>

#include "foundation/error_report.h"
#include "foundation/trace.h"
#include "platform/system.h"
#include "platform/utf8.h"

namespace {

// Width in the font that the window was given; 0 on failure.
int Measure(HWND window, std::string_view text) {
    const HDC context = GetDC(window);
    if (context == nullptr) return 0;
    const HFONT font = reinterpret_cast<HFONT>(SendMessageW(window, WM_GETFONT, 0, 0));
    const HGDIOBJ before = font != nullptr ? SelectObject(context, font) : nullptr;
    const std::u16string wide = platform::Utf8ToWide(text);
    SIZE size = {};
    if (!GetTextExtentPoint32W(context, reinterpret_cast<const wchar_t*>(wide.c_str()), static_cast<int>(wide.size()),
                               &size)) {
        // Quirk: the name is not that of the call that failed, kept.
        DbgPrintApiError("ZarnGetStringWidth", "GetComputerName()", platform::LastSystemError());
        size.cx = 0;
    }
    if (before != nullptr) SelectObject(context, before);
    ReleaseDC(window, context);
    return size.cx;
}

}  // namespace

int ZarnGetStringWidth(WindowHandle window, std::string_view text) {
    static constexpr char kFuncName[] = "ZarnGetStringWidth";
    DbgVsprintf(kFuncName, "Entered");
    int width = 0;
    if (window == nullptr || text.empty()) {
        DbgVsprintf(kFuncName, "ERROR: Invalid Parameter passed in.");
    } else {
        width = Measure(window, text);
    }
    if (width != 0) {
        DbgVsprintf(kFuncName, "Returning %d", width);
    } else {
        DbgVsprintf(kFuncName, "Warning: Returning ZERO");
    }
    return width;
}
