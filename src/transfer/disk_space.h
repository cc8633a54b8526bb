// Free space of local drives.
#pragma once

#include <cstdint>

// In unsigned 32 bits: the product wraps above 4 GiB, as wanted; only message 7269 shows it. 0 on failure.
std::uint32_t GetFreeSpaceForCurrentDrive();
std::uint32_t GetFreeSpaceForDrive(char driveLetter);
// FTP_COMPLETE when the current drive's true free space (64 bits) is at least `size`; else tells the user (7269), 0.
int FitFileOnLocalDrive(const char* name, std::uint64_t size);
