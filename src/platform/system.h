// The rest of what the system gives: last error and its text, the debugger stream, the user's name, text in other
// encodings, locale-aware comparison, the beep.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace platform {

inline constexpr std::uint32_t kErrorInvalidParameter = 87;
inline constexpr std::uint32_t kErrorInsufficientBuffer = 122;
inline constexpr std::uint32_t kErrorFileExists = 80;
inline constexpr std::uint32_t kErrorAlreadyExists = 183;
inline constexpr std::uint32_t kErrorAccessDenied = 5;
inline constexpr std::uint32_t kErrorDiskFull = 112;
inline constexpr std::uint32_t kErrorHandleEof = 38;
inline constexpr std::uint32_t kErrorHandleDiskFull = 39;
inline constexpr std::uint32_t kErrorNameTooLong = 206;

// The calling thread's last error as a Windows error number on every system.
std::uint32_t LastSystemError();
void SetLastSystemError(std::uint32_t error);
// The system's own text for an error, in US English, without a trailing line end; empty when there is none.
std::string SystemErrorText(std::uint32_t error);

// One piece of text to the debugger stream (standard error in the native build).
void WriteDebugger(const char* text);
// Name of the logged-on user; empty on failure.
std::string UserName();
// Full path of the running program.
std::string ProgramPath();

enum class Beep { Asterisk, Exclamation };
void PlayBeep(Beep beep);

// Bytes in the system's own single-byte page (Western when the program's page is UTF-8) as UTF-8.
std::string SystemPageToUtf8(std::string_view bytes);

// The user's locale: lowering and word-sort order comparison (<0, 0, >0).
std::string LocaleLower(std::string_view text);
int LocaleCompare(std::string_view a, std::string_view b);

}  // namespace platform
