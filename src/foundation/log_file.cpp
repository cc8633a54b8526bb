#include "foundation/log_file.h"

#include <atomic>
#include <mutex>
#include <string_view>

#include "foundation/error_report.h"
#include "foundation/foundation_view.h"
#include "foundation/trace.h"
#include "platform/system.h"
#include "platform/threads.h"

namespace {

constexpr std::uint32_t kMutexWaitMilliseconds = 60000;

platform::MutexHandle gLogfileMutex = 0;
// The open log file; closed between two lines.
std::atomic<platform::FileHandle> gLogfile{platform::kNoFile};

// Guards the name, which the settings may change while another thread logs.
std::mutex gNameLock;
std::string gLogfileName;

// Set while this thread writes a line: writing reports its own failures, which must not be written again.
thread_local bool tWritingLog = false;

std::string LogfileName() {
    const std::lock_guard lock(gNameLock);
    return gLogfileName;
}

bool Report(const char* callName) {
    DbgPrintApiError("LogfilePrint", callName, platform::LastSystemError());
    return false;
}

bool WriteLine(platform::FileHandle file, std::string_view text) {
    bool written = platform::SeekToEnd(file) || Report("SetFilePointer()");
    written = (platform::WriteFile(file, text) || Report("WriteFile()")) && written;
    written = (platform::SeekToEnd(file) || Report("SetFilePointer()")) && written;
    // Quirk: a text that ends in a line feed gets a line end, too, kept.
    return (platform::WriteFile(file, std::string_view("\r\n")) || Report("WriteFile()")) && written;
}

bool OpenAndWriteLine(const char* fileName, std::string_view text) {
    platform::FileHandle file = gLogfile.load();
    if (file == 0 || file == platform::kNoFile) file = GetLogfileHandle(fileName);
    if (file == platform::kNoFile) return Report("CreateFile()");
    gLogfile = file;
    const bool written = WriteLine(file, text);
    // CloseLogfile may have closed it in the meantime.
    if (gLogfile.compare_exchange_strong(file, platform::kNoFile)) platform::CloseFile(file);
    return written;
}

}  // namespace

void OpenLogMutex() {
    if (gLogfileMutex == 0) gLogfileMutex = platform::CreateNamedMutex("hLogfileMutex");
}

void CloseLogMutex() {
    if (gLogfileMutex != 0) platform::CloseMutex(gLogfileMutex);
    gLogfileMutex = 0;
}

void SetLogFileName(const char* fileName) {
    const std::lock_guard lock(gNameLock);
    gLogfileName = fileName != nullptr ? fileName : "";
}

void LogfilePrint(const char* text) {
    if (text == nullptr || tWritingLog || !gTrace.logging) return;
    const std::string fileName = LogfileName();
    if (fileName.empty()) return;

    const std::uint32_t last = platform::LastSystemError();
    // After a time-out the line is written anyway: mixed lines are better than none.
    const bool taken = gLogfileMutex != 0 && platform::TakeMutex(gLogfileMutex, kMutexWaitMilliseconds);
    tWritingLog = true;
    // Another thread may have switched logging off while this one waited.
    if (gTrace.logging && !OpenAndWriteLine(fileName.c_str(), text)) gTrace.logging = false;
    tWritingLog = false;
    if (taken) platform::ReleaseMutex(gLogfileMutex);
    platform::SetLastSystemError(last);
}

platform::FileHandle GetLogfileHandle(const char* fileName) {
    static constexpr char kFuncName[] = "GetLogfileHandle";
    // Runs inside LogfilePrint, so it traces in debug mode only.
    const bool debug = gTrace.debug;
    if (debug) DbgVsprintf(kFuncName, "Entered");
    if (fileName == nullptr || *fileName == '\0') {
        const std::string text =
            FormatBounded(kFuncName, kPathBuffer, "%s(ERROR) Null Parameter passed in. Returning %x\r\n", kFuncName,
                          static_cast<unsigned>(platform::kNoFile));
        if (gTrace.verbose) PrintToConsole(text.c_str());
        Zarn_DebuggerPrint(text.c_str());
        platform::SetLastSystemError(platform::kErrorInvalidParameter);
        return platform::kNoFile;
    }
    const platform::FileHandle file =
        platform::OpenFile(fileName, {.access = platform::FileAccess::Write,
                                      .disposition = platform::FileDisposition::OpenAlways,
                                      .writeThrough = debug});
    if (file == platform::kNoFile) {
        DbgFileCreateError(kFuncName, fileName, platform::LastSystemError());
        return platform::kNoFile;
    }
    if (debug) DbgVsprintf(kFuncName, "CreateFile(%s) SUCCESS. Returning (%x)", fileName, static_cast<unsigned>(file));
    platform::SetLastSystemError(0);
    return file;
}

void CloseLogfile() {
    const platform::FileHandle file = gLogfile.load();
    if (file == 0 || file == platform::kNoFile) return;
    DbgVsprintf("CloseLogfile", "---------- Closing Logfile ----------");
    platform::FileHandle open = file;
    if (gLogfile.compare_exchange_strong(open, platform::kNoFile)) platform::CloseFile(open);
}
