// Every function reports its own progress here: a line on entry, on each failure, and mostly on return. Lines go to the
// debugger stream, the log file and, filtered, to the console. With all switches off a trace costs a flag test.
#pragma once

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "foundation/owned_text.h"
#include "foundation/printf_check.h"

// Read on every trace, by any thread.
struct TraceSwitches {
    std::atomic<bool> logging{false};  // lines go to the log file
    std::atomic<bool> verbose{false};  // lines go to the console, filtered
    std::atomic<bool> debug{false};    // with verbose: unfiltered; log file written through
    bool Any() const {
        return logging.load(std::memory_order_relaxed) || verbose.load(std::memory_order_relaxed) ||
               debug.load(std::memory_order_relaxed);
    }
};
extern TraceSwitches gTrace;

// Where lines go in addition to the debugger stream, and how a failed system call is reported. Filled in once at
// start-up (trace_sinks.h), called from any thread.
struct TraceSinks {
    void (*writeLog)(const char* line) = [](const char*) {};
    void (*printToConsole)(const char* text) = [](const char*) {};
    void (*reportApiError)(const char* callerName, const char* callName,
                           std::uint32_t error) = [](const char*, const char*, std::uint32_t) {};
};
extern TraceSinks gTraceSinks;

// Limit of the buffer last formatted into (its capacity less one) and what the last format would have written. Shared
// by all threads without a lock: a lost update only changes a diagnostic.
struct BoundsPair {
    std::atomic<int> limit{0};
    std::atomic<int> written{0};
};
extern BoundsPair gBounds;

// Longest expansions, terminator included, of the fixed-size formats of this program.
inline constexpr std::size_t kTraceBuffer = 2048;
inline constexpr std::size_t kTextBuffer = 520;
inline constexpr std::size_t kPathBuffer = 260;

// Stamps a printf-style message with process, thread and `funcName` and routes it.
void DbgVsprintf(const char* funcName, const char* format, ...) ZARN_PRINTF(2, 3);
// The same for a message that is finished already, whatever the switches say.
void RouteStamped(const char* funcName, const char* message);

// Formats into a fresh owned text of exactly the needed length, at most 2047 characters; null for an empty result, a
// null argument, or a function name that contains "%".
OwnedText Zarn_Vsprintf(const char* funcName, const char* format, ...) ZARN_PRINTF(2, 3);

// Formats into a buffer of `capacity` bytes, cuts the text to it, records the bounds pair, and traces by how many
// characters it would have overrun. The uncut length is left in gBounds.
std::string FormatBounded(const char* funcName, std::size_t capacity, const char* format, ...) ZARN_PRINTF(3, 4);
// Records the bounds pair for a text already formatted and cuts and reports in the same way.
void CheckBounds(const char* funcName, std::size_t capacity, std::string& text);

// Routes one finished line: always the debugger stream, the log while logging, the console while verbose (without
// debug only lines that begin with "[" or look like a reply).
void OutPutPrint(const char* line);
// Routes one finished line to the console while verbose, unfiltered, and to the log while logging.
void PrintUnstamped(const char* line);
void Zarn_DebuggerPrint(const char* text);

// True when the text starts like a reply of the server: three digits 100..599, then a blank or "-", 5 characters or
// more (RFC 959, section 4.2).
bool IsReplyLine(std::string_view text);
