#include "ftp/login/host_lookup.h"

#include <memory>
#include <new>

#include "foundation/trace.h"
#include "ftp/worker/session_state.h"
#include "platform/clock.h"
#include "platform/sockets.h"
#include "platform/threads.h"

namespace {

constexpr std::uint32_t kSliceMilliseconds = 20;

// Owned by both threads: whoever ends last frees it.
struct Lookup {
    explicit Lookup(std::string host) : name(std::move(host)) {}
    ~Lookup() {
        if (done != 0) platform::CloseEvent(done);
    }
    Lookup(const Lookup&) = delete;
    Lookup& operator=(const Lookup&) = delete;

    std::string name;
    platform::EventHandle done = platform::CreateManualEvent();
    LookupResult result;
};
using SharedLookup = std::shared_ptr<Lookup>;

void ResolveInThread(void* argument) {
    const std::unique_ptr<SharedLookup> lookup(static_cast<SharedLookup*>(argument));
    LookupResult& result = (*lookup)->result;
    result.error = platform::ResolveHost((*lookup)->name.c_str(), result.addresses);
    result.end = result.error == 0 && !result.addresses.empty() ? LookupEnd::Found : LookupEnd::Failed;
    platform::SignalEvent((*lookup)->done);
}

}  // namespace

LookupResult LookUpHost(const std::string& name, std::uint32_t milliseconds, LookupFor purpose) {
    LookupResult notFinished;
    const auto lookup = std::make_shared<Lookup>(name);
    auto* given = new (std::nothrow) SharedLookup(lookup);
    if (given == nullptr) return notFinished;
    const platform::ThreadHandle thread = platform::StartThread(ResolveInThread, given);
    if (thread == platform::kNoThread) {
        delete given;
        return notFinished;
    }
    platform::CloseThread(thread);
    const std::uint32_t startedAt = platform::TickCount();
    while (!platform::WaitEvent(lookup->done, kSliceMilliseconds)) {
        if (purpose == LookupFor::Operation && StopRequested()) {
            notFinished.end = LookupEnd::Stopped;
            return notFinished;
        }
        if (milliseconds != 0 && platform::TickCount() - startedAt >= milliseconds) {
            DbgVsprintf("LookUpHost", "WARNING. No answer for %s. The look-up is left alone", name.c_str());
            notFinished.end = LookupEnd::TimedOut;
            notFinished.error = platform::kSocketTimedOut;
            return notFinished;
        }
    }
    return lookup->result;
}
