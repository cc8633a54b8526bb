#include "transfer/disk_space.h"

#include <string>

#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/worker/result_codes.h"

namespace {

DiskSpaceSource diskSpaceSource = nullptr;

bool ReadSpace(const char* path, platform::DiskSpace& space) {
    return diskSpaceSource != nullptr ? diskSpaceSource(path, space) : platform::GetDiskSpace(path, space);
}

// Quirk: the product wraps above 4 GiB, kept.
std::uint32_t WrappedFreeSpace(const char* path) {
    platform::DiskSpace space;
    if (!ReadSpace(path, space)) return 0;
    return space.bytesPerSector * space.sectorsPerCluster * space.freeClusters;
}

}  // namespace

std::uint32_t GetFreeSpaceForCurrentDrive() {
    return WrappedFreeSpace(platform::CurrentFolder().c_str());
}

std::uint32_t GetFreeSpaceForDrive(char driveLetter) {
    const std::string root = {driveLetter, ':', platform::kPathSeparator};
    return WrappedFreeSpace(root.c_str());
}

int FitFileOnLocalDrive(const char* name, std::uint64_t size) {
    constexpr char kFuncName[] = "FitFileOnLocalDrive";
    platform::DiskSpace space;
    // Decided in 64 bits; a drive that does not tell its free space gets the benefit of the doubt.
    if (!ReadSpace(platform::CurrentFolder().c_str(), space) || space.freeBytes >= size) {
        return FTP_COMPLETE;
    }
    DbgVsprintf(kFuncName, "WARNING. %s does not fit. Returning 0", name);
    const OwnedText text = Zarn_ResVsprintf(MSG_LARGER_THAN_DRIVE_SPACE, name, size, GetFreeSpaceForCurrentDrive());
    ShowMessageBox(text.c_str(), nullptr, BoxButtons::OkCancel, BoxIcon::Exclamation);
    return 0;
}

void SetDiskSpaceSource(DiskSpaceSource source) {
    diskSpaceSource = source;
}
