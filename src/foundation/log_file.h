// The append-only log file. It is opened, appended to and closed once per line under a named mutex, so several running
// programs can share it and it can be read or deleted at any time. Filtering and stamping belong to trace.h.
#pragma once

#include <string>

#include "platform/files.h"

// Creates the mutex "hLogfileMutex"; before anything is traced.
void OpenLogMutex();
void CloseLogMutex();
// The path of the log file; empty means none.
void SetLogFileName(const char* fileName);
// The first failed write switches logging off for the rest of the run (gTrace.logging).
void LogfilePrint(const char* text);
// Opens the log for appending, creating it; kNoFile after reporting why.
platform::FileHandle GetLogfileHandle(const char* fileName);
// At shut-down: the closing line, if a handle is still open.
void CloseLogfile();
