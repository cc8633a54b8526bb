// Runs a function on the window's thread. A worker waits for its end; the window's thread serves such calls even while
// it waits for the worker. On the window's own thread the function just runs.
#pragma once

#include <windows.h>

#include <type_traits>
#include <utility>

// Called once with the main window, by its thread.
void StartUiCalls(HWND mainWindow);
// From here on no call reaches a window: calls return at once without running.
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
        struct ReturningCall {
            std::remove_reference_t<Function>* function;
            Result result{};
        } call{&function, {}};
        CallUi(
            [](void* context) {
                auto* current = static_cast<ReturningCall*>(context);
                current->result = (*current->function)();
            },
            &call);
        return std::move(call.result);
    }
}
