// Catches what this process writes to the debugger stream while the capture lives. For tests of the tracer's sinks.
#pragma once

#include <string>

class DebuggerCapture {
  public:
    DebuggerCapture();
    ~DebuggerCapture();
    DebuggerCapture(const DebuggerCapture&) = delete;
    DebuggerCapture& operator=(const DebuggerCapture&) = delete;

    // Everything so far; ends the capture.
    std::string Take();

  private:
    void* handler_ = nullptr;
    bool taken_ = false;
};
