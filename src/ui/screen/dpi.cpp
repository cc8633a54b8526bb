#include "ui/screen/dpi.h"

namespace {

// Found at run time: older systems have neither.
template <class Function>
Function UserFunction(const char* name) {
    const HMODULE user = GetModuleHandleW(L"user32.dll");
    const FARPROC found = user != nullptr ? GetProcAddress(user, name) : nullptr;
    return reinterpret_cast<Function>(reinterpret_cast<void (*)()>(found));
}

UINT MainScreenDpi() {
    HDC dc = GetDC(nullptr);
    const int dpi = GetDeviceCaps(dc, LOGPIXELSX);
    ReleaseDC(nullptr, dc);
    return dpi > 0 ? static_cast<UINT>(dpi) : USER_DEFAULT_SCREEN_DPI;
}

}  // namespace

UINT DpiOfWindow(HWND window) {
    using Ask = UINT(WINAPI*)(HWND);
    static const auto ask = UserFunction<Ask>("GetDpiForWindow");
    const UINT dpi = ask != nullptr && window != nullptr ? ask(window) : 0;
    return dpi != 0 ? dpi : MainScreenDpi();
}

int MetricAtDpi(int metric, UINT dpi) {
    using Ask = int(WINAPI*)(int, UINT);
    static const auto ask = UserFunction<Ask>("GetSystemMetricsForDpi");
    const int size = ask != nullptr ? ask(metric, dpi) : 0;
    return size != 0 ? size : GetSystemMetrics(metric);
}
