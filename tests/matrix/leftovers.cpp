#include "matrix/leftovers.h"

#include "platform/files.h"
#include "platform/threads.h"
#include "support/bounded_wait.h"

#ifdef _WIN32
#include <winsock2.h>
// After winsock2.h, which windows.h must not come before.
#include <tlhelp32.h>
#else
#include <dirent.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#endif

namespace matrix {

#ifdef _WIN32

int OpenSockets() {
    // The system does not list them; it does say of every number whether it is a socket. Numbers are given
    // from below.
    constexpr SOCKET kHighest = 0x1000;
    int count = 0;
    for (SOCKET handle = 4; handle < kHighest; handle += 4) {
        int type = 0;
        int length = sizeof type;
        DWORD flags = 0;
        if (!::GetHandleInformation(reinterpret_cast<HANDLE>(handle), &flags)) continue;
        count += ::getsockopt(handle, SOL_SOCKET, SO_TYPE, reinterpret_cast<char*>(&type), &length) == 0 ? 1 : 0;
    }
    return count;
}

// The engine's threads begin in the C library; the main one and those of the test framework begin in this program,
// those of the system's pool, which come and go as the system likes, in ntdll.
static bool IsOfTheEngine(DWORD threadId) {
    using Query = LONG(WINAPI*)(HANDLE, int, void*, ULONG, ULONG*);
    constexpr int kStartAddress = 9;  // ThreadQuerySetWin32StartAddress
    static const HMODULE ntdll = ::GetModuleHandleA("ntdll.dll");
    static const auto query =
        reinterpret_cast<Query>(reinterpret_cast<void (*)()>(::GetProcAddress(ntdll, "NtQueryInformationThread")));
    const HANDLE thread = ::OpenThread(THREAD_QUERY_INFORMATION, FALSE, threadId);
    if (thread == nullptr || query == nullptr) return false;  // it has just ended
    void* start = nullptr;
    const bool known = query(thread, kStartAddress, &start, sizeof start, nullptr) == 0;
    ::CloseHandle(thread);
    HMODULE module = nullptr;
    constexpr DWORD kByAddress = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    return known && ::GetModuleHandleExA(kByAddress, static_cast<const char*>(start), &module) != FALSE &&
           module != ntdll && module != ::GetModuleHandleA(nullptr);
}

int RunningThreads() {
    const HANDLE snapshot = ::CreateToolhelp32Snapshot(TH32CS_SNAPTHREAD, 0);
    if (snapshot == INVALID_HANDLE_VALUE) return -1;
    THREADENTRY32 entry = {};
    entry.dwSize = sizeof entry;
    int count = 0;
    for (BOOL more = ::Thread32First(snapshot, &entry); more != FALSE; more = ::Thread32Next(snapshot, &entry)) {
        const bool own = entry.th32OwnerProcessID == ::GetCurrentProcessId();
        count += own && IsOfTheEngine(entry.th32ThreadID) ? 1 : 0;
    }
    ::CloseHandle(snapshot);
    return count;
}

static void SetTemporaryFolder(const std::string& folder) {
    ::SetEnvironmentVariableA("TMP", folder.c_str());
    ::SetEnvironmentVariableA("TEMP", folder.c_str());
}

#else

namespace {

int CountEntries(const char* folder, const char* linkBeginsWith) {
    DIR* const directory = ::opendir(folder);
    if (directory == nullptr) return -1;
    int count = 0;
    while (const dirent* entry = ::readdir(directory)) {
        if (entry->d_name[0] == '.') continue;
        char target[64] = {};
        const std::string path = std::string(folder) + "/" + entry->d_name;
        const bool counts =
            linkBeginsWith == nullptr || (::readlink(path.c_str(), target, sizeof target - 1) > 0 &&
                                          std::strncmp(target, linkBeginsWith, std::strlen(linkBeginsWith)) == 0);
        count += counts ? 1 : 0;
    }
    ::closedir(directory);
    return count;
}

void SetTemporaryFolder(const std::string& folder) {
    ::setenv("TMPDIR", folder.c_str(), 1);
}

}  // namespace

int OpenSockets() {
    return CountEntries("/proc/self/fd", "socket:");
}

int RunningThreads() {
    return CountEntries("/proc/self/task", nullptr);
}

#endif

std::string WhatIsLeft(const Holdings& before) {
    Holdings now{};
    const auto allGone = [&] {
        now = Holdings::Now();
        return now.sockets <= before.sockets && now.threads <= before.threads;
    };
    if (test_support::WaitUntil(allGone)) return {};
    return std::to_string(now.sockets - before.sockets) + " sockets and " +
           std::to_string(now.threads - before.threads) + " threads more than before";
}

namespace {

struct OwnTemporaryFolder {
    OwnTemporaryFolder()
        : path(platform::TemporaryFolder() + "zarn-matrix-" + std::to_string(platform::CurrentProcessId())) {
        platform::CreateFolder(path.c_str());
        SetTemporaryFolder(path);
    }
    ~OwnTemporaryFolder() { platform::RemoveFolder(path.c_str()); }
    OwnTemporaryFolder(const OwnTemporaryFolder&) = delete;
    OwnTemporaryFolder& operator=(const OwnTemporaryFolder&) = delete;
    std::string path;
};

}  // namespace

void UseOwnTemporaryFolder() {
    static const OwnTemporaryFolder folder;
}

}  // namespace matrix
