// Free space of local drives.
#pragma once

#include <cstdint>

#include "platform/files.h"

// Free bytes in unsigned 32 bits, 0 on failure; only message 7269 shows them.
// Quirk: the product wraps above 4 GiB, kept.
std::uint32_t GetFreeSpaceForCurrentDrive();
std::uint32_t GetFreeSpaceForDrive(char driveLetter);
// FTP_COMPLETE when the current drive's true free space (64 bits) is at least `size`; else 0, after a box (7269).
int FitFileOnLocalDrive(const char* name, std::uint64_t size);

// Where the space is read from; null is the system. For tests of drives that their machine does not have.
using DiskSpaceSource = bool (*)(const char* path, platform::DiskSpace& space);
void SetDiskSpaceSource(DiskSpaceSource source);
