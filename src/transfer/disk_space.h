// Free space of local drives.
#pragma once

#include <cstdint>

#include "platform/files.h"

// In unsigned 32 bits: the product wraps above 4 GiB, as wanted; only message 7269 shows it. 0 on failure.
std::uint32_t GetFreeSpaceForCurrentDrive();
std::uint32_t GetFreeSpaceForDrive(char driveLetter);
// FTP_COMPLETE when the current drive's true free space (64 bits) is at least `size`; else tells the user (7269), 0.
int FitFileOnLocalDrive(const char* name, std::uint64_t size);

// Where the space is read from; null is the system. For tests of drives that the test's own machine has not.
using DiskSpaceSource = bool (*)(const char* path, platform::DiskSpace& space);
void SetDiskSpaceSource(DiskSpaceSource source);
