#include "foundation/trace.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

#include "foundation/ascii.h"
#include "platform/system.h"
#include "platform/threads.h"

TraceSwitches gTrace;
constinit TraceSinks gTraceSinks;
BoundsPair gBounds;

namespace {

const char* NameOrNull(const char* text) {
    return text != nullptr ? text : "(null)";
}

// A text cut to its buffer and the length it would have had.
struct Formatted {
    std::string text;
    int length = -1;
};

ZARN_PRINTF(1, 0) Formatted Format(const char* format, va_list arguments) {
    char buffer[kTraceBuffer] = "";
    const int length = std::vsnprintf(buffer, sizeof buffer, format, arguments);
    return {length > 0 ? buffer : "", length};
}

int CountOf(std::size_t size) {
    return static_cast<int>(size);
}

void RecordBounds(std::size_t capacity, int written) {
    gBounds.limit = CountOf(capacity) - 1;
    gBounds.written = written;
}

// Not a bounded format itself: reporting one overrun never causes the next.
void ReportOverrun(const char* funcName, std::size_t capacity, int written, const std::string& cutText) {
    const int excess = written - (CountOf(capacity) - 1);
    if (excess <= 0 || !gTrace.Any()) return;
    std::string message(cutText.size() + 80, '\0');
    std::snprintf(message.data(), message.size(), "ERROR. we just outstepped our Bounds by %d chars for %s", excess,
                  cutText.c_str());
    RouteStamped(funcName, message.c_str());
}

}  // namespace

void DbgVsprintf(const char* funcName, const char* format, ...) {
    if (!gTrace.Any() || format == nullptr) return;
    va_list arguments;
    va_start(arguments, format);
    const Formatted message = Format(format, arguments);
    va_end(arguments);
    RecordBounds(kTraceBuffer, message.length);
    if (message.length < 1) {
        OutPutPrint(FormatBounded("DbgVsprintf", kTraceBuffer, "%s:%s. Call to vsprintf(buf, %s, vaArgs) failed.",
                                  "DbgVsprintf", NameOrNull(funcName), format)
                        .c_str());
        return;
    }
    ReportOverrun(funcName, kTraceBuffer, message.length, message.text);
    RouteStamped(funcName, message.text.c_str());
}

void RouteStamped(const char* funcName, const char* message) {
    funcName = NameOrNull(funcName);
    static const char stamp[] = "Zarn:(%x,%x) %s() %s";
    // The numbers need less than the conversions they replace and the 16 characters more.
    const std::size_t length = std::strlen(message) + std::strlen(funcName) + std::strlen(stamp) + 16;
    OwnedText line = OwnedText::Copy("", length + 1);
    if (!line) {
        OutPutPrint(message);
        return;
    }
    std::snprintf(line.data(), length + 1, stamp, static_cast<unsigned>(platform::CurrentProcessId()),
                  static_cast<unsigned>(platform::CurrentThreadId()), funcName, message);
    OutPutPrint(line.get());
}

OwnedText Zarn_Vsprintf(const char* funcName, const char* format, ...) {
    static constexpr char kFuncName[] = "Zarn_Vsprintf";
    if (funcName == nullptr) {
        DbgVsprintf(kFuncName, "ERROR. Entered with NULL First Param");
        return {};
    }
    if (std::string_view(funcName).find('%') != std::string_view::npos) {
        OutPutPrint(Zarn_Vsprintf(kFuncName, "Invalid Char in FuncName(%s). Returning NULL", funcName).get());
        return {};
    }
    if (format == nullptr) {
        DbgVsprintf(kFuncName, "ERROR. Entered with NULL Second Param");
        return {};
    }
    va_list arguments;
    va_start(arguments, format);
    const Formatted result = Format(format, arguments);
    va_end(arguments);
    RecordBounds(kTraceBuffer, result.length);
    if (result.length < 1) {
        OutPutPrint(FormatBounded(kFuncName, kTraceBuffer, "%s(%s) Call to vsprintf(buf, %s, vaArgs) failed.",
                                  kFuncName, funcName, format)
                        .c_str());
        return {};
    }
    ReportOverrun(funcName, kTraceBuffer, result.length, result.text);
    if (result.text.empty()) return {};
    OwnedText copy = OwnedText::Copy(result.text);
    if (!copy) {
        const std::uint32_t error = platform::LastSystemError();
        // The missing closing parenthesis is part of the text.
        OutPutPrint(FormatBounded(kFuncName, kPathBuffer, "Zarn_Vsprintf( LocalAlloc(%d) Failed!",
                                  CountOf(result.text.size() + 1))
                        .c_str());
        gTraceSinks.reportApiError(kFuncName, "LocalAlloc()", error);
    }
    return copy;
}

std::string FormatBounded(const char* funcName, std::size_t capacity, const char* format, ...) {
    va_list arguments, again;
    va_start(arguments, format);
    va_copy(again, arguments);
    const int length = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    std::string text;
    if (length > 0) {
        text.resize(static_cast<std::size_t>(length) + 1);
        std::vsnprintf(text.data(), text.size(), format, arguments);
        text.resize(static_cast<std::size_t>(length));
    }
    va_end(arguments);
    CheckBounds(funcName, capacity, text);
    return text;
}

void CheckBounds(const char* funcName, std::size_t capacity, std::string& text) {
    const int written = CountOf(text.size());
    RecordBounds(capacity, written);
    if (text.size() < capacity) return;
    text.resize(capacity > 0 ? capacity - 1 : 0);
    ReportOverrun(funcName, capacity, written, text);
}

void OutPutPrint(const char* line) {
    if (line == nullptr) return;
    // A trace between a failed call and the question for its error must not change the answer.
    const std::uint32_t last = platform::LastSystemError();
    Zarn_DebuggerPrint(line);
    if (gTrace.logging) gTraceSinks.writeLog(line);
    if (gTrace.verbose && (gTrace.debug || *line == '[' || IsReplyLine(line))) gTraceSinks.printToConsole(line);
    platform::SetLastSystemError(last);
}

void PrintUnstamped(const char* line) {
    if (gTrace.verbose) gTraceSinks.printToConsole(line);
    if (gTrace.logging) gTraceSinks.writeLog(line);
}

void Zarn_DebuggerPrint(const char* text) {
    if (text == nullptr || *text == '\0') return;
    platform::WriteDebugger(text);
    if (std::string_view(text).back() != '\n') platform::WriteDebugger("\n");
}

bool IsReplyLine(std::string_view text) {
    if (text.size() < 5) return false;
    int code = 0;
    for (const char digit : text.substr(0, 3)) {
        if (!IsDigit(digit)) return false;
        code = code * 10 + (digit - '0');
    }
    return code >= 100 && code <= 599 && (text[3] == ' ' || text[3] == '-');
}
