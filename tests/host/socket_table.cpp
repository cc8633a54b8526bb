#include "socket_table.h"

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <map>
#include <memory>
#include <mutex>

#include "host_errors.h"
#include "platform/clock.h"

namespace host {
namespace {

constexpr std::uint32_t kErrorNotSocket = 10038;

struct Entry {
    int descriptor = -1;
    int wakeUp = -1;
    int waiting = 0;
    unsigned cancels = 0;
    bool closed = false;

    // Runs when nobody holds the entry, so no wait ever sees a number that belongs to another socket by now.
    ~Entry() {
        ::close(descriptor);
        ::close(wakeUp);
    }
};
using EntryReference = std::shared_ptr<Entry>;

struct Table {
    std::mutex guard;
    std::map<int, EntryReference> entries;
};

Table& Sockets() {
    static Table table;
    return table;
}

EntryReference Find(Table& table, int descriptor) {
    const auto found = table.entries.find(descriptor);
    return found == table.entries.end() || found->second->closed ? nullptr : found->second;
}

void Wake(Entry& entry) {
    ++entry.cancels;
    const std::uint64_t one = 1;
    if (entry.waiting > 0) [[maybe_unused]]
        const ssize_t written = ::write(entry.wakeUp, &one, sizeof one);
}

// One poll() for the rest of the time; what it returned.
int Poll(const Entry& entry, short events, std::uint64_t deadline, pollfd (&list)[2]) {
    list[0] = {entry.descriptor, events, 0};
    list[1] = {entry.wakeUp, POLLIN, 0};
    if (deadline == 0) return ::poll(list, 2, -1);
    const std::uint64_t now = platform::Microseconds();
    const std::uint64_t rest = deadline > now ? (deadline - now + 999) / 1000 : 0;
    return ::poll(list, 2, static_cast<int>(std::min<std::uint64_t>(rest, INT_MAX)));
}

bool IsCancelled(Table& table, const Entry& entry, unsigned cancelsBefore) {
    const std::lock_guard lock(table.guard);
    return entry.cancels != cancelsBefore;
}

WaitResult PollUntil(Table& table, const Entry& entry, unsigned cancelsBefore, short events,
                     std::uint32_t milliseconds) {
    const std::uint64_t deadline = milliseconds == kForever ? 0 : platform::Microseconds() + milliseconds * 1000ull;
    for (;;) {
        pollfd list[2];
        const int count = Poll(entry, events, deadline, list);
        if (IsCancelled(table, entry, cancelsBefore)) {
            Fail(kErrorAborted);
            return WaitResult::Failed;
        }
        if (count > 0 && list[0].revents != 0) return WaitResult::Ready;
        if (count == 0) return WaitResult::TimeUp;
        if (count < 0 && errno != EINTR) {
            FailSocket();
            return WaitResult::Failed;
        }
        // Woken by an older cancel whose waits have not all left yet: they empty the wake-up soon.
    }
}

}  // namespace

int AddSocket(int descriptor) {
    if (descriptor < 0) {
        FailSocket();
        return -1;
    }
    auto entry = std::make_shared<Entry>();
    entry->descriptor = descriptor;
    entry->wakeUp = ::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC);
    ::fcntl(descriptor, F_SETFL, ::fcntl(descriptor, F_GETFL) | O_NONBLOCK);
    if (entry->wakeUp < 0) {
        FailSocket();
        return -1;
    }
    Table& table = Sockets();
    const std::lock_guard lock(table.guard);
    table.entries[descriptor] = std::move(entry);
    return descriptor;
}

WaitResult WaitSocket(int descriptor, short events, std::uint32_t milliseconds) {
    Table& table = Sockets();
    EntryReference entry;
    unsigned cancelsBefore = 0;
    {
        const std::lock_guard lock(table.guard);
        entry = Find(table, descriptor);
        if (entry == nullptr) {
            Fail(kErrorNotSocket);
            return WaitResult::Failed;
        }
        ++entry->waiting;
        cancelsBefore = entry->cancels;
    }
    const WaitResult result = PollUntil(table, *entry, cancelsBefore, events, milliseconds);
    const std::lock_guard lock(table.guard);
    if (--entry->waiting == 0) {
        std::uint64_t count = 0;
        [[maybe_unused]] const ssize_t received = ::read(entry->wakeUp, &count, sizeof count);
    }
    return result;
}

void CancelWaits(int descriptor) {
    Table& table = Sockets();
    const std::lock_guard lock(table.guard);
    if (const EntryReference entry = Find(table, descriptor)) Wake(*entry);
}

bool RemoveSocket(int descriptor) {
    Table& table = Sockets();
    // Let go after the lock: a close that lingers holds up its own thread only. The system does not give the number to
    // another socket before.
    EntryReference entry;
    const std::lock_guard lock(table.guard);
    entry = Find(table, descriptor);
    if (entry == nullptr) return Fail(kErrorNotSocket);
    entry->closed = true;
    Wake(*entry);
    table.entries.erase(descriptor);
    return true;
}

}  // namespace host
