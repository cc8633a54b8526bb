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
#include "host_handles.h"

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

void Signal(Event& event) {
    const std::lock_guard lock(event.guard);
    event.signalled = true;
    event.changed.notify_all();
}

bool Wait(Event& event, std::uint32_t milliseconds) {
    std::unique_lock lock(event.guard);
    return WaitFor(event.changed, lock, milliseconds, [&event] { return event.signalled; });
}

// A handle owns a reference, so that whom a signal wakes may close the event while the signalling call still returns.
using EventReference = std::shared_ptr<Event>;

EventReference EventOf(EventHandle handle) {
    return *host::FromHandle<EventReference>(handle);
}

// What the handle stands for.
struct Thread {
    pthread_t id = {};
    EventReference ended = std::make_shared<Event>();
};

// What the thread itself needs: it may start after its handle was closed.
struct ThreadStart {
    ThreadRoutine routine;
    void* argument;
    EventReference ended;
};

void* RunThread(void* parameter) {
    const std::unique_ptr<ThreadStart> start(static_cast<ThreadStart*>(parameter));
    start->routine(start->argument);
    Signal(*start->ended);
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
    auto start = std::make_unique<ThreadStart>(ThreadStart{routine, argument, thread->ended});
    if (::pthread_create(&thread->id, nullptr, RunThread, start.get()) != 0) {
        host::Fail(host::kErrorNoMemory);
        return kNoThread;
    }
    static_cast<void>(start.release());
    return host::ToHandle(thread.release());
}

bool WaitThread(ThreadHandle thread, std::uint32_t milliseconds) {
    return Wait(*host::FromHandle<Thread>(thread)->ended, milliseconds);
}

void CloseThread(ThreadHandle thread) {
    if (thread == kNoThread) return;
    const std::unique_ptr<Thread> record(host::FromHandle<Thread>(thread));
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
    return host::ToHandle(new EventReference(std::make_shared<Event>()));
}

void SignalEvent(EventHandle event) {
    if (event != 0) Signal(*EventOf(event));
}

bool WaitEvent(EventHandle event, std::uint32_t milliseconds) {
    return event != 0 ? Wait(*EventOf(event), milliseconds) : host::Fail(host::kErrorInvalidHandle);
}

void CloseEvent(EventHandle event) {
    delete host::FromHandle<EventReference>(event);
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
    return host::ToHandle(new MutexReference(mutex));
}

bool TakeMutex(MutexHandle mutex, std::uint32_t milliseconds) {
    if (mutex == 0) return host::Fail(host::kErrorInvalidHandle);
    const MutexReference record = *host::FromHandle<MutexReference>(mutex);
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
    const MutexReference record = *host::FromHandle<MutexReference>(mutex);
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
    delete host::FromHandle<MutexReference>(mutex);
}

}  // namespace platform
