#include "platform/threads.h"

#include <pthread.h>
#include <unistd.h>

#include <chrono>
#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

#include "fault_injection.h"
#include "host_errors.h"

namespace platform {
namespace {

constexpr std::uint32_t kForever = 0xFFFFFFFF;

struct Event {
    std::mutex guard;
    std::condition_variable changed;
    bool signalled = false;
};

// Waits on a locked condition; false when the time is up.
template <class Condition>
bool WaitFor(std::condition_variable& changed, std::unique_lock<std::mutex>& lock, std::uint32_t milliseconds,
             Condition condition) {
    if (milliseconds != kForever) return changed.wait_for(lock, std::chrono::milliseconds(milliseconds), condition);
    changed.wait(lock, condition);
    return true;
}

struct Thread {
    pthread_t id = {};
    ThreadRoutine routine = nullptr;
    void* argument = nullptr;
    std::shared_ptr<Event> ended = std::make_shared<Event>();
};

void* RunThread(void* parameter) {
    // The record belongs to the handle and may be gone when the routine returns.
    const auto* thread = static_cast<Thread*>(parameter);
    const std::shared_ptr<Event> ended = thread->ended;
    thread->routine(thread->argument);
    SignalEvent(reinterpret_cast<EventHandle>(ended.get()));
    return nullptr;
}

// One mutex of the session; in this build the session is the process.
struct NamedMutex {
    std::mutex guard;
    std::condition_variable released;
    std::uint32_t owner = 0;  // thread id, 0: free
    int depth = 0;
};

struct MutexTable {
    std::mutex guard;
    std::map<std::string, std::weak_ptr<NamedMutex>> byName;
};

MutexTable& Mutexes() {
    static MutexTable table;
    return table;
}

using MutexReference = std::shared_ptr<NamedMutex>;

// What a thread still owns when it ends becomes free, as the system does with abandoned mutexes.
struct OwnedMutexes {
    std::vector<MutexReference> list;
    ~OwnedMutexes() {
        for (const MutexReference& mutex : list) {
            const std::lock_guard lock(mutex->guard);
            mutex->owner = 0;
            mutex->depth = 0;
            mutex->released.notify_one();
        }
    }
};
thread_local OwnedMutexes ownedMutexes;

}  // namespace

ThreadHandle StartThread(ThreadRoutine routine, void* argument) {
    if (fault_injection::Strikes(fault_injection::Call::StartThread)) return kNoThread;
    auto thread = std::make_unique<Thread>();
    thread->routine = routine;
    thread->argument = argument;
    if (::pthread_create(&thread->id, nullptr, RunThread, thread.get()) != 0) {
        host::Fail(host::kErrorNoMemory);
        return kNoThread;
    }
    return reinterpret_cast<ThreadHandle>(thread.release());
}

bool WaitThread(ThreadHandle thread, std::uint32_t milliseconds) {
    const auto* record = reinterpret_cast<Thread*>(thread);
    return WaitEvent(reinterpret_cast<EventHandle>(record->ended.get()), milliseconds);
}

void CloseThread(ThreadHandle thread) {
    if (thread == kNoThread) return;
    const std::unique_ptr<Thread> record(reinterpret_cast<Thread*>(thread));
    if (WaitThread(thread, 0)) {
        ::pthread_join(record->id, nullptr);
    } else {
        ::pthread_detach(record->id);
    }
}

std::uint32_t CurrentThreadId() {
    return static_cast<std::uint32_t>(::gettid());
}

std::uint32_t CurrentProcessId() {
    return static_cast<std::uint32_t>(::getpid());
}

void SleepMilliseconds(std::uint32_t milliseconds) {
    const timespec duration = {static_cast<time_t>(milliseconds / 1000),
                               static_cast<long>(milliseconds % 1000) * 1'000'000};
    ::nanosleep(&duration, nullptr);
}

EventHandle CreateManualEvent() {
    if (fault_injection::Strikes(fault_injection::Call::CreateEvent)) return 0;
    return reinterpret_cast<EventHandle>(new Event);
}

void SignalEvent(EventHandle event) {
    auto* record = reinterpret_cast<Event*>(event);
    const std::lock_guard lock(record->guard);
    record->signalled = true;
    record->changed.notify_all();
}

bool WaitEvent(EventHandle event, std::uint32_t milliseconds) {
    auto* record = reinterpret_cast<Event*>(event);
    std::unique_lock lock(record->guard);
    return WaitFor(record->changed, lock, milliseconds, [record] { return record->signalled; });
}

void CloseEvent(EventHandle event) {
    delete reinterpret_cast<Event*>(event);
}

MutexHandle CreateNamedMutex(const char* name) {
    MutexTable& table = Mutexes();
    const std::lock_guard lock(table.guard);
    std::weak_ptr<NamedMutex>& entry = table.byName[name];
    MutexReference mutex = entry.lock();
    if (mutex == nullptr) {
        mutex = std::make_shared<NamedMutex>();
        entry = mutex;
    }
    return reinterpret_cast<MutexHandle>(new MutexReference(mutex));
}

bool TakeMutex(MutexHandle mutex, std::uint32_t milliseconds) {
    if (mutex == 0) return host::Fail(host::kErrorInvalidHandle);
    const MutexReference record = *reinterpret_cast<MutexReference*>(mutex);
    const std::uint32_t self = CurrentThreadId();
    std::unique_lock lock(record->guard);
    const auto isFree = [&record, self] { return record->owner == 0 || record->owner == self; };
    if (!WaitFor(record->released, lock, milliseconds, isFree)) return false;
    record->owner = self;
    if (++record->depth == 1) ownedMutexes.list.push_back(record);
    return true;
}

void ReleaseMutex(MutexHandle mutex) {
    if (mutex == 0) return;
    const MutexReference record = *reinterpret_cast<MutexReference*>(mutex);
    const std::lock_guard lock(record->guard);
    if (record->owner != CurrentThreadId()) {
        host::Fail(host::kErrorNotOwner);
        return;
    }
    if (--record->depth > 0) return;
    record->owner = 0;
    std::erase(ownedMutexes.list, record);
    record->released.notify_one();
}

void CloseMutex(MutexHandle mutex) {
    delete reinterpret_cast<MutexReference*>(mutex);
}

}  // namespace platform
