#include "debugger_capture.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>

#include <mutex>

namespace {

std::mutex gLock;  // lines come from every thread
std::string gCaught;

// The debugger stream is an exception that a debugger would take: this handler looks at it first.
LONG CALLBACK CatchOutput(EXCEPTION_POINTERS* pointers) {
    const EXCEPTION_RECORD& record = *pointers->ExceptionRecord;
    if (record.ExceptionCode != DBG_PRINTEXCEPTION_C || record.NumberParameters < 2) return EXCEPTION_CONTINUE_SEARCH;
    const std::lock_guard lock(gLock);
    gCaught += reinterpret_cast<const char*>(record.ExceptionInformation[1]);
    return EXCEPTION_CONTINUE_SEARCH;
}

}  // namespace

DebuggerCapture::DebuggerCapture() {
    const std::lock_guard lock(gLock);
    gCaught.clear();
    handler_ = AddVectoredExceptionHandler(1, CatchOutput);
}

DebuggerCapture::~DebuggerCapture() {
    Take();
}

std::string DebuggerCapture::Take() {
    if (!taken_) RemoveVectoredExceptionHandler(handler_);
    taken_ = true;
    const std::lock_guard lock(gLock);
    return gCaught;
}

#else

DebuggerCapture::DebuggerCapture() {
    testing::internal::CaptureStderr();
}

DebuggerCapture::~DebuggerCapture() {
    Take();
}

std::string DebuggerCapture::Take() {
    if (taken_) return {};
    taken_ = true;
    return testing::internal::GetCapturedStderr();
}

#endif
