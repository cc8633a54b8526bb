#include "window_watch.h"

namespace {

constexpr DWORD kPause = 2;         // milliseconds between two checks
constexpr DWORD kPatience = 30000;  // milliseconds for an answer

double Frequency() {
    LARGE_INTEGER frequency;
    QueryPerformanceFrequency(&frequency);
    return static_cast<double>(frequency.QuadPart);
}

double Counter() {
    static const double frequency = Frequency();
    LARGE_INTEGER now;
    QueryPerformanceCounter(&now);
    return static_cast<double>(now.QuadPart) / frequency;
}

}  // namespace

double Now() {
    FILETIME time{};
    GetSystemTimeAsFileTime(&time);
    const ULONGLONG ticks = ULONGLONG{time.dwHighDateTime} << 32 | time.dwLowDateTime;
    constexpr ULONGLONG kTicksTo1970 = 116444736000000000;
    return static_cast<double>(ticks - kTicksTo1970) / 1e7;
}

void WindowWatch::Start(HWND window) {
    Stop();
    stop_ = false;
    longest_ = began_ = 0;
    thread_ = std::thread([this, window] { Ask(window); });
}

void WindowWatch::Stop() {
    stop_ = true;
    if (thread_.joinable()) thread_.join();
}

void WindowWatch::Ask(HWND window) {
    while (!stop_) {
        const double began = Now();
        const double start = Counter();
        DWORD_PTR result = 0;
        SendMessageTimeoutW(window, WM_NULL, 0, 0, SMTO_NORMAL, kPatience, &result);
        const double taken = Counter() - start;
        if (taken > longest_) {
            longest_ = taken;
            began_ = began;
        }
        Sleep(kPause);
    }
}
