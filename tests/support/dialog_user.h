// Uses the real dialogs in tests: waits until one is on the screen, reads its controls, presses its buttons. For window
// tests only; without a display they are skipped.
#pragma once

#include <windows.h>

#include <functional>
#include <string>
#include <thread>
#include <utility>

#include "foundation/wide_text_window.h"
#include "support/bounded_wait.h"

#define SKIP_WITHOUT_DISPLAY() \
    if (!dialog_user::HasDisplay()) GTEST_SKIP() << "no display"

namespace dialog_user {

inline bool HasDisplay() {
    const HWND probe = CreateWindowExW(0, L"STATIC", L"", WS_POPUP, 0, 0, 1, 1, nullptr, nullptr, nullptr, nullptr);
    if (probe == nullptr) return false;
    DestroyWindow(probe);
    return true;
}

struct DialogSearch {
    const std::string& caption;
    HWND found;
};
inline BOOL CALLBACK IsWantedDialog(HWND window, LPARAM parameter) {
    auto& wanted = *reinterpret_cast<DialogSearch*>(parameter);
    wchar_t name[16] = L"";
    DWORD process = 0;
    GetWindowThreadProcessId(window, &process);
    GetClassNameW(window, name, 16);
    if (process != GetCurrentProcessId() || std::wstring(name) != L"#32770" || !IsWindowVisible(window)) return TRUE;
    // Read without a message: the window's thread may be waiting for the one that asks.
    wchar_t caption[128] = L"";
    InternalGetWindowText(window, caption, 128);
    if (!wanted.caption.empty() && Narrow(caption) != wanted.caption) return TRUE;
    wanted.found = window;
    return FALSE;
}
// A visible dialog of this process, with `caption` only one so titled; null when there is none.
inline HWND FindDialog(const std::string& caption = "") {
    DialogSearch search{caption, nullptr};
    EnumWindows(IsWantedDialog, reinterpret_cast<LPARAM>(&search));
    return search.found;
}

inline void Press(HWND dialog, int button) {
    PostMessageW(GetDlgItem(dialog, button), BM_CLICK, 0, 0);
}
inline void PressKey(HWND dialog, WPARAM key) {
    DWORD thread = GetWindowThreadProcessId(dialog, nullptr);
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    HWND target = GetGUIThreadInfo(thread, &info) && info.hwndFocus != nullptr ? info.hwndFocus : dialog;
    PostMessageW(target, WM_KEYDOWN, key, 0);
    PostMessageW(target, WM_KEYUP, key, 0);
}
inline int FocusedItem(HWND dialog) {
    GUITHREADINFO info{};
    info.cbSize = sizeof(info);
    GetGUIThreadInfo(GetWindowThreadProcessId(dialog, nullptr), &info);
    return GetDlgCtrlID(info.hwndFocus);
}
inline int DefaultButton(HWND dialog) {
    return LOWORD(SendMessageW(dialog, DM_GETDEFID, 0, 0));
}
// Everything in the field is selected.
inline bool AllSelected(HWND dialog, int field) {
    DWORD from = 1;
    DWORD to = 0;
    SendDlgItemMessageW(dialog, field, EM_GETSEL, reinterpret_cast<WPARAM>(&from), reinterpret_cast<LPARAM>(&to));
    return from == 0 && to == static_cast<DWORD>(GetWindowTextLengthW(GetDlgItem(dialog, field)));
}
inline bool WaitGone(HWND dialog) {
    return test_support::WaitUntil([dialog] { return !IsWindow(dialog); });
}

// Uses a modal dialog from a thread of its own, while the test's thread shows it. A dialog that `use` leaves open is
// cancelled, so that no test hangs.
class DialogUser {
  public:
    DialogUser(std::string caption, std::function<void(HWND)> use, std::uint32_t wait = test_support::kLongWait)
        : thread_([caption = std::move(caption), use = std::move(use), wait, this] {
              HWND dialog = nullptr;
              test_support::WaitUntil([&] { return (dialog = FindDialog(caption)) != nullptr; }, wait);
              if (dialog == nullptr) return;
              seen_ = true;
              use(dialog);
              if (!WaitGone(dialog)) PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
          }) {}
    ~DialogUser() { Join(); }
    DialogUser(const DialogUser&) = delete;
    DialogUser& operator=(const DialogUser&) = delete;

    // Waits for the use to end; true when the dialog was there.
    bool Join() {
        if (thread_.joinable()) thread_.join();
        return seen_;
    }

  private:
    bool seen_ = false;
    std::thread thread_;
};

// The test's thread as the program's message loop, until the condition holds; false when the time is up.
inline bool PumpUntil(const std::function<bool()>& condition, HWND (*modeless)() = nullptr,
                      DWORD milliseconds = test_support::kLongWait) {
    const DWORD start = GetTickCount();
    while (!condition()) {
        if (GetTickCount() - start > milliseconds) return false;
        MsgWaitForMultipleObjects(0, nullptr, FALSE, 10, QS_ALLINPUT);
        MSG message{};
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            const HWND dialog = modeless != nullptr ? modeless() : nullptr;
            if (dialog != nullptr && IsDialogMessageW(dialog, &message)) continue;
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
    return true;
}

// Waits for a thread as the program does: serves what it sends meanwhile.
inline bool WaitServing(std::intptr_t thread, std::uint32_t milliseconds) {
    HANDLE handle = reinterpret_cast<HANDLE>(thread);
    const DWORD start = GetTickCount();
    while (GetTickCount() - start < milliseconds) {
        const DWORD left = milliseconds - (GetTickCount() - start);
        if (MsgWaitForMultipleObjects(1, &handle, FALSE, left, QS_SENDMESSAGE) == WAIT_OBJECT_0) return true;
        MSG message{};
        PeekMessageW(&message, nullptr, 0, 0, PM_NOREMOVE | (QS_SENDMESSAGE << 16));
    }
    return WaitForSingleObject(handle, 0) == WAIT_OBJECT_0;
}

// A visible window to own dialogs.
class OwnerWindow {
  public:
    OwnerWindow()
        : window_(CreateWindowExW(0, L"STATIC", L"Owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 20, 20, 700, 500, nullptr,
                                  nullptr, GetModuleHandleW(nullptr), nullptr)) {}
    ~OwnerWindow() { DestroyWindow(window_); }
    OwnerWindow(const OwnerWindow&) = delete;
    OwnerWindow& operator=(const OwnerWindow&) = delete;
    HWND Handle() const { return window_; }

  private:
    HWND window_;
};

}  // namespace dialog_user
