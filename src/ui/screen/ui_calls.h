// Carries a call from the worker to the window's thread. The worker waits for it (the window's thread serves sent
// messages even while it waits for the worker); on the window's own thread the call just runs.
#pragma once

#include <windows.h>

#include <type_traits>
#include <utility>

// Called once with the main window, by its thread.
void StartUiCalls(HWND mainWindow);
// After this no call reaches a window any more; calls return at once without having run.
void StopUiCalls();
bool OnUiThread();
// The main window received kUiCallMessage.
LRESULT HandleUiCall(WPARAM wParam, LPARAM lParam);

using UiRoutine = void (*)(void* context);
// False when the call did not run.
bool CallUi(UiRoutine routine, void* context);

template <class Function>
auto RunOnUi(Function&& function) {
    using Result = std::invoke_result_t<Function&>;
    if constexpr (std::is_void_v<Result>) {
        CallUi([](void* context) { (*static_cast<std::remove_reference_t<Function>*>(context))(); }, &function);
    } else {
        struct Carried {
            std::remove_reference_t<Function>* function;
            Result result{};
        } carried{&function, {}};
        CallUi(
            [](void* context) {
                auto* call = static_cast<Carried*>(context);
                call->result = (*call->function)();
            },
            &carried);
        return std::move(carried.result);
    }
}
