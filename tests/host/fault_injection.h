// Makes a chosen call of the native platform fail, so that tests can walk every error road. Exists in the native test
// build only; a test that needs it is inside #ifndef _WIN32. Not for provoking cancels: CancelSocket does that.
//
//     for (int n = 1;; ++n) {
//         const fault_injection::Scope scope(fault_injection::Call::WriteFile, n, platform::kErrorDiskFull);
//         ...the whole operation must report and clean up...
//         if (!scope.Fired()) break;   // fewer than n writes: every one of them has failed once
//     }
#pragma once

#include <cstdint>

namespace fault_injection {

enum class Call {
    OpenFile,
    ReadFile,
    WriteFile,
    SeekFile,
    CloseFile,
    DeleteFile,
    MoveFile,
    ListFolder,
    CreateFolder,
    CreateSocket,
    Connect,
    Bind,
    Listen,
    Accept,
    Receive,  // Receive, ReceiveInto and Peek
    Send,     // Send and SendFrom
    WaitReadable,
    CloseSocket,
    RegistryWrite,
    StartThread,
    CreateEvent,
    LoadText,
    Count,
};

// The `nth` call from now on (1: the next one) fails with `error` as the last system or socket error. One fault a
// kind; calls of all threads count.
void FailCall(Call call, int nth, std::uint32_t error);
// As above, and every later call fails too.
void FailFrom(Call call, int nth, std::uint32_t error);
// True once a fault of that kind has struck.
bool HasFired(Call call);
// Calls since the last Reset.
int CallCount(Call call);
// No faults, all counts 0.
void Reset();
// Calls of this thread neither count nor fail: it belongs to the test's own server.
void SpareThisThread();

// One fault for the length of a scope.
class Scope {
  public:
    Scope(Call call, int nth, std::uint32_t error) : call_(call) {
        Reset();
        FailCall(call, nth, error);
    }
    ~Scope() { Reset(); }
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
    bool Fired() const { return HasFired(call_); }

  private:
    Call call_;
};

// For the platform's own bodies: counts the call; true when it must fail now, the last error is then set.
bool Strikes(Call call);

}  // namespace fault_injection
