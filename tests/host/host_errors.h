// Error numbers of the native test build: what the system says, as the numbers that Windows gives for the same thing.
// The thread's last error is one variable for files and sockets, as on Windows.
#pragma once

#include <cstdint>

namespace host {

inline constexpr std::uint32_t kErrorFileNotFound = 2;
inline constexpr std::uint32_t kErrorPathNotFound = 3;
inline constexpr std::uint32_t kErrorInvalidHandle = 6;
inline constexpr std::uint32_t kErrorNoMemory = 8;
inline constexpr std::uint32_t kErrorBadFolder = 267;
inline constexpr std::uint32_t kErrorKeyDeleted = 1018;
inline constexpr std::uint32_t kErrorNotOwner = 288;
inline constexpr std::uint32_t kErrorTextNotFound = 1814;
inline constexpr std::uint32_t kErrorAborted = 995;  // a blocked call that another thread ended

std::uint32_t FileErrorNumber(int systemNumber);
int SocketErrorNumber(int systemNumber);

// Sets the last error and returns false, so that a failing call is one line.
bool Fail(std::uint32_t error);
// The same from errno.
bool FailFile();
bool FailSocket();

}  // namespace host
