#include "platform/threads.h"

#include <process.h>
#include <windows.h>

#include <new>

#include "platform/windows/wide_text.h"

namespace platform {
namespace {

struct ThreadStart {
    ThreadRoutine routine;
    void* argument;
};

unsigned __stdcall RunThread(void* parameter) {
    const ThreadStart start = *static_cast<ThreadStart*>(parameter);
    delete static_cast<ThreadStart*>(parameter);
    start.routine(start.argument);
    return 0;
}

HANDLE AsHandle(std::intptr_t value) {
    return reinterpret_cast<HANDLE>(value);
}

void CloseAny(std::intptr_t value) {
    if (value != 0) ::CloseHandle(AsHandle(value));
}

}  // namespace

ThreadHandle StartThread(ThreadRoutine routine, void* argument) {
    auto* start = new (std::nothrow) ThreadStart{routine, argument};
    if (start == nullptr) {
        ::SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return kNoThread;
    }
    const auto handle = ::_beginthreadex(nullptr, 0, RunThread, start, 0, nullptr);
    if (handle == 0) {
        const LastErrorKeeper keeper;
        delete start;
        return kNoThread;
    }
    return static_cast<ThreadHandle>(handle);
}

bool WaitThread(ThreadHandle thread, std::uint32_t milliseconds) {
    return ::WaitForSingleObject(AsHandle(thread), milliseconds) == WAIT_OBJECT_0;
}

void CloseThread(ThreadHandle thread) {
    CloseAny(thread);
}

std::uint32_t CurrentThreadId() {
    return ::GetCurrentThreadId();
}

std::uint32_t CurrentProcessId() {
    return ::GetCurrentProcessId();
}

void SleepMilliseconds(std::uint32_t milliseconds) {
    ::Sleep(milliseconds);
}

EventHandle CreateManualEvent() {
    return reinterpret_cast<EventHandle>(::CreateEventW(nullptr, TRUE, FALSE, nullptr));
}

void SignalEvent(EventHandle event) {
    ::SetEvent(AsHandle(event));
}

bool WaitEvent(EventHandle event, std::uint32_t milliseconds) {
    return ::WaitForSingleObject(AsHandle(event), milliseconds) == WAIT_OBJECT_0;
}

void CloseEvent(EventHandle event) {
    CloseAny(event);
}

MutexHandle CreateNamedMutex(const char* name) {
    const WideArgument wideName(name);
    return reinterpret_cast<MutexHandle>(::CreateMutexW(nullptr, FALSE, wideName.Text()));
}

bool TakeMutex(MutexHandle mutex, std::uint32_t milliseconds) {
    const DWORD result = ::WaitForSingleObject(AsHandle(mutex), milliseconds);
    return result == WAIT_OBJECT_0 || result == WAIT_ABANDONED;
}

void ReleaseMutex(MutexHandle mutex) {
    ::ReleaseMutex(AsHandle(mutex));
}

void CloseMutex(MutexHandle mutex) {
    CloseAny(mutex);
}

}  // namespace platform
