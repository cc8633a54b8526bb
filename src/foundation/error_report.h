// Failed system calls in words: the call's name, the error number and the system's text, as one console line.
#pragma once

#include <cstdint>

// "ZARN:(thread) caller() ..." lines on the console; nothing for error 0. The last system error is kept.
void DbgPrintApiError(const char* callerName, const char* callName, std::uint32_t error);
void DbgFileCreateError(const char* callerName, const char* fileName, std::uint32_t error);
// One line in the same form, for errors that have texts of their own.
void PrintErrorLine(const char* callerName, const char* text);

// Message boxes: out of memory; a system error (0: the last one), true when one was shown.
void ShowNoMemoryError();
bool ShowApiError(std::uint32_t error);
