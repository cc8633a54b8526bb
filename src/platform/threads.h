// Threads, events and named mutexes. No thread is ever terminated from outside: stopping is cooperative.
#pragma once

#include <cstdint>

namespace platform {

using ThreadHandle = std::intptr_t;
inline constexpr ThreadHandle kNoThread = 0;
using ThreadRoutine = void (*)(void* argument);

// Starts a thread; kNoThread on failure. The handle must be given to CloseThread once.
ThreadHandle StartThread(ThreadRoutine routine, void* argument);
// True when the thread has ended within the time.
bool WaitThread(ThreadHandle thread, std::uint32_t milliseconds);
void CloseThread(ThreadHandle thread);
std::uint32_t CurrentThreadId();
std::uint32_t CurrentProcessId();
void SleepMilliseconds(std::uint32_t milliseconds);

using EventHandle = std::intptr_t;
EventHandle CreateManualEvent();
void SignalEvent(EventHandle event);
bool WaitEvent(EventHandle event, std::uint32_t milliseconds);
void CloseEvent(EventHandle event);

// A mutex that every process of the session shares by its name. 0 on failure.
using MutexHandle = std::intptr_t;
MutexHandle CreateNamedMutex(const char* name);
// True when the mutex was taken within the time (also when its last owner died).
bool TakeMutex(MutexHandle mutex, std::uint32_t milliseconds);
void ReleaseMutex(MutexHandle mutex);
void CloseMutex(MutexHandle mutex);

}  // namespace platform
