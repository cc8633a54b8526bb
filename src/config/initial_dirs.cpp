#include "config/initial_dirs.h"

#include <cstring>
#include <optional>
#include <string>

#include "config/store_key.h"
#include "foundation/error_report.h"
#include "foundation/file_time.h"
#include "foundation/trace.h"
#include "platform/registry.h"
#include "platform/system.h"

using platform::RegistryKey;
using platform::RegistryRoot;

InitDir gInitDirs[kInitDirCount];

namespace {

constexpr char kStampValue[] = "TimeStamp";
constexpr char kDirsKey[] = "\\InitDirectories";

// Paths of keys below the store's root.
std::string DirsKey(const char* sessionName) {
    return std::string(sessionName) + kDirsKey;
}

std::string DirKey(const std::string& dirsKey, std::string_view path) {
    return dirsKey + "\\" + std::string(path);
}

void SetEntry(InitDir& item, std::string_view path, FileTime time) {
    ResetSiteDirItem(&item);
    const std::size_t length = path.size() < sizeof item.path ? path.size() : sizeof item.path - 1;
    std::memcpy(item.path, path.data(), length);
    item.lastConnect = time;
}

FileTime Stamp(const char* callerName, TimeStampKind kind) {
    FileTime time = 0;
    Zarn_GetTimeStamp(callerName, nullptr, &time, kind);
    return time;
}

// The stored time; the earliest one when the value is missing or damaged. Nothing when the key cannot be opened.
std::optional<FileTime> ReadStamp(const char* callerName, const std::string& dirKey) {
    const RegistryKey key = RegistryKey::Open(RegistryRoot::CurrentUser, StoreKeyPath(dirKey));
    if (!key.IsOpen()) return std::nullopt;
    FileTime time = Stamp(callerName, TimeStampKind::ZeroPoint);
    const auto bytes = key.ReadBytes(kStampValue, sizeof time);
    if (bytes && bytes->size() == sizeof time) std::memcpy(&time, bytes->data(), sizeof time);
    return time;
}

bool WriteStamp(const char* callerName, const std::string& dirKey, FileTime time) {
    RegistryKey key = RegistryKey::Create(RegistryRoot::CurrentUser, StoreKeyPath(dirKey), nullptr);
    if (!key.IsOpen()) return false;
    std::uint8_t bytes[sizeof time];
    std::memcpy(bytes, &time, sizeof time);
    ReportFailedWrite(callerName, kStampValue, key.WriteBytes(kStampValue, bytes));
    return true;
}

bool HasDirectory(const char* callerName, const Site* site) {
    if (site == nullptr) {
        DbgVsprintf(callerName, "ERROR. Entered with NULL Site. Returning");
        return false;
    }
    if (site->pszSessionName.empty()) {
        DbgVsprintf(callerName, "ERROR. Entered with NULL pszSessionName. Returning");
        return false;
    }
    if (site->pszDir.empty()) {
        DbgVsprintf(callerName, "ERROR. Entered with NULL pszInitDir. Returning");
        return false;
    }
    return true;
}

// The entry of the site's directory, new if need be; null when every entry is newer than now.
InitDir* EntryOf(Site& site) {
    int index = FindInitDirInList(site.InitDirs, site.pszDir.c_str());
    if (index >= 0) return &site.InitDirs[index];
    index = FindOldestInitDir(site.InitDirs, kInitDirCount);
    if (index < 0) return nullptr;
    SetEntry(site.InitDirs[index], site.pszDir.view(), 0);
    return &site.InitDirs[index];
}

void DeleteDir(const std::string& dirsKey, std::string_view path) {
    platform::DeleteRegistryTree(StoreKeyPath(DirKey(dirsKey, path)));
}

// The list is full: drops the oldest of its directories and the new one, also from the store.
void KeepNewer(InitDir* list, const std::string& dirsKey, const std::string& path, FileTime time) {
    DbgVsprintf("LoadInitDirectories", "WARNING. Too many InitDirectories. Looking for Older in list.");
    const int oldest = FindOldestInitDir(list, kInitDirCount);
    if (oldest < 0 || list[oldest].lastConnect >= time) {
        DeleteDir(dirsKey, path);
        return;
    }
    DeleteDir(dirsKey, list[oldest].path);
    SetEntry(list[oldest], path, time);
}

// The newest entry that is not placed yet, the last one among equals; -1 when all are.
int NewestLeft(const InitDir* list) {
    int found = -1;
    FileTime newest = 0;
    for (int index = 0; index < kInitDirCount; ++index) {
        const InitDir& item = list[index];
        if (item.path[0] == '\0' || item.inserted != 0 || item.lastConnect < newest) continue;
        newest = item.lastConnect;
        found = index;
    }
    return found;
}

}  // namespace

void ResetSiteDirItem(InitDir* item) {
    if (item == nullptr) return;
    *item = InitDir();
    item->lastConnect = Stamp("ResetSiteDirItem", TimeStampKind::ZeroPoint);
}

void ResetSiteDirList() {
    for (InitDir& item : gInitDirs) ResetSiteDirItem(&item);
}

int FindInitDirInList(const InitDir* list, const char* path) {
    if (list == nullptr || path == nullptr) return -1;
    for (int index = 0; index < kInitDirCount; ++index) {
        if (list[index].path[0] != '\0' && std::strcmp(list[index].path, path) == 0) return index;
    }
    DbgVsprintf("FindInitDirInList", "WARNING. %s wasn't in List. Returning -1", path);
    return -1;
}

int FindOldestInitDir(const InitDir* list, int count) {
    int found = -1;
    FileTime oldest = Stamp("FindOldestInitDir", TimeStampKind::Now);
    for (int index = 0; index < count && index < kInitDirCount; ++index) {
        if (list[index].path[0] == '\0') return index;
        if (list[index].lastConnect >= oldest) continue;
        oldest = list[index].lastConnect;
        found = index;
    }
    return found;
}

int SortInitDirectories(InitDir* list) {
    int dirCount = 0;
    for (int index = 0; index < kInitDirCount; ++index) {
        list[index].inserted = 0;
        if (list[index].path[0] != '\0') ++dirCount;
    }
    InitDir sorted[kInitDirCount];
    int sortCount = 0;
    for (int index = NewestLeft(list); index >= 0; index = NewestLeft(list)) {
        sorted[sortCount++] = list[index];
        list[index].inserted = 1;
        DbgVsprintf("SortInitDirectories", "Setting Newest back to Begining of time");
    }
    for (int index = 0; index < kInitDirCount; ++index) {
        if (index < sortCount) {
            list[index] = sorted[index];
        } else {
            ResetSiteDirItem(&list[index]);
        }
    }
    if (sortCount != dirCount) {
        DbgVsprintf("SortInitDirectories", "ERROR. Screwup in InitDirectories[%d], SortCount:%d, DirCount:%d",
                    kInitDirCount, sortCount, dirCount);
    }
    return sortCount;
}

void SaveInitDirectory(const Site* site) {
    if (!HasDirectory("SaveInitDirectory", site)) return;
    FileTime now = 0;
    if (!CalendarToFileTime(platform::UniversalTimeNow(), now)) return;
    const std::string key = DirKey(DirsKey(site->pszSessionName.c_str()), site->pszDir.view());
    if (!WriteStamp("SaveInitDirectory", key, now)) {
        DbgPrintApiError("SaveInitDirectory", "RegCreateKeyEx()", platform::LastSystemError());
    }
}

void SaveInitDirectories(Site* site) {
    if (!HasDirectory("SaveInitDirectories", site)) return;
    InitDir* const used = EntryOf(*site);
    if (used == nullptr) {
        DbgVsprintf("SaveInitDirectories", "ERROR. Call to FindOldestInitDir() Failed. Returning");
        return;
    }
    used->lastConnect = Stamp("SaveInitDirectories", TimeStampKind::Now);
    const std::string dirsKey = DirsKey(site->pszSessionName.c_str());
    platform::DeleteRegistryTree(StoreKeyPath(dirsKey));
    for (const InitDir& item : site->InitDirs) {
        if (item.path[0] == '\0') continue;
        const std::string key = DirKey(dirsKey, item.path);
        DbgVsprintf("SaveInitDirectories", "Creating Key: %s", key.c_str());
        if (WriteStamp("SaveInitDirectories", key, item.lastConnect)) continue;
        DbgPrintApiError("SaveInitDirectories", "RegCreateKeyEx()", platform::LastSystemError());
        DbgVsprintf("SaveInitDirectories", "ERROR. Failed to create Key: %s. Returning", key.c_str());
        return;
    }
}

int LoadInitDirectories(Site* site) {
    if (site == nullptr || site->pszSessionName.empty()) return 0;
    DbgVsprintf("LoadInitDirectories", "Reseting Init Directories");
    for (InitDir& item : site->InitDirs) ResetSiteDirItem(&item);
    const std::string dirsKey = DirsKey(site->pszSessionName.c_str());
    std::vector<std::string> paths;
    {
        const RegistryKey key = RegistryKey::Open(RegistryRoot::CurrentUser, StoreKeyPath(dirsKey));
        if (!key.IsOpen()) {
            DbgVsprintf("LoadInitDirectories", "WARNING. The Key:%s, didn't exist. Returning 0", dirsKey.c_str());
            return 0;
        }
        key.ListSubkeys(paths);
    }
    int count = 0;
    for (const std::string& path : paths) {
        const FileTime time = ReadStamp("LoadInitDirectories", DirKey(dirsKey, path)).value_or(0);
        if (count < kInitDirCount) {
            SetEntry(site->InitDirs[count], path, time);
        } else {
            KeepNewer(site->InitDirs, dirsKey, path, time);
        }
        ++count;
    }
    DbgVsprintf("LoadInitDirectories", "Done %d InitDirectories for %s", count, site->pszSessionName.c_str());
    return count;
}

int GetInitDirectories(const char* callerName, const char* sessionName) {
    ResetSiteDirList();
    if (sessionName == nullptr || *sessionName == '\0') return 0;
    const std::string dirsKey = DirsKey(sessionName);
    std::vector<std::string> paths;
    {
        const RegistryKey key = RegistryKey::Open(RegistryRoot::CurrentUser, StoreKeyPath(dirsKey));
        if (!key.IsOpen()) {
            DbgVsprintf(callerName, "Key (%s) doesn't exist. Creating it", dirsKey.c_str());
            OpenStoreKey(dirsKey, nullptr);
            return 0;
        }
        key.ListSubkeys(paths);
    }
    int count = 0;
    for (const std::string& path : paths) {
        if (count == kInitDirCount) {
            DeleteDir(dirsKey, path);
            continue;
        }
        const std::optional<FileTime> time = ReadStamp(callerName, DirKey(dirsKey, path));
        if (!time) return 0;
        SetEntry(gInitDirs[count++], path, *time);
    }
    return count;
}
