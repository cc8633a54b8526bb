#include "platform/files.h"

#include <windows.h>

#include <algorithm>
#include <climits>
#include <cwchar>

#include "platform/windows/wide_text.h"

namespace platform {

const char kPathSeparator = '\\';

namespace {

// Pieces of one write: the system takes more, but some drivers fail on hundreds of megabytes at once.
constexpr std::size_t kLargestWrite = 16u << 20;

HANDLE AsHandle(FileHandle file) {
    return reinterpret_cast<HANDLE>(file);
}

DWORD AccessBits(FileAccess access) {
    switch (access) {
        case FileAccess::Write:
            return GENERIC_WRITE;
        case FileAccess::ReadWrite:
            return GENERIC_READ | GENERIC_WRITE;
        case FileAccess::Read:
            break;
    }
    return GENERIC_READ;
}

DWORD DispositionNumber(FileDisposition disposition) {
    switch (disposition) {
        case FileDisposition::CreateNew:
            return CREATE_NEW;
        case FileDisposition::CreateAlways:
            return CREATE_ALWAYS;
        case FileDisposition::OpenAlways:
            return OPEN_ALWAYS;
        case FileDisposition::OpenExisting:
            break;
    }
    return OPEN_EXISTING;
}

std::uint64_t Join(DWORD high, DWORD low) {
    return (static_cast<std::uint64_t>(high) << 32) | low;
}

FILETIME Split(std::uint64_t ticks) {
    return {static_cast<DWORD>(ticks), static_cast<DWORD>(ticks >> 32)};
}

// The zone's rules of the day itself count, as in what the shell shows, not those of today.
using ZoneConversion = BOOL(WINAPI*)(const TIME_ZONE_INFORMATION*, const SYSTEMTIME*, SYSTEMTIME*);
bool ConvertZone(ZoneConversion convert, std::uint64_t from, std::uint64_t& to) {
    constexpr std::uint64_t kTicksOfMillisecond = 10'000;  // calendar times have no finer parts
    const FILETIME source = Split(from);
    SYSTEMTIME sourceFields = {};
    SYSTEMTIME fields = {};
    FILETIME result = {};
    if (!::FileTimeToSystemTime(&source, &sourceFields) || !convert(nullptr, &sourceFields, &fields) ||
        !::SystemTimeToFileTime(&fields, &result)) {
        return false;
    }
    to = Join(result.dwHighDateTime, result.dwLowDateTime) + from % kTicksOfMillisecond;
    return true;
}

std::uint64_t LocalTimeOf(const FILETIME& universal) {
    std::uint64_t local = 0;
    const std::uint64_t ticks = Join(universal.dwHighDateTime, universal.dwLowDateTime);
    return ConvertZone(::SystemTimeToTzSpecificLocalTime, ticks, local) ? local : 0;
}

void SetAttributes(FileInfo& info, DWORD attributes) {
    info.isFolder = (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
    info.isReadOnly = (attributes & FILE_ATTRIBUTE_READONLY) != 0;
    info.isHidden = (attributes & FILE_ATTRIBUTE_HIDDEN) != 0;
    info.isSystem = (attributes & FILE_ATTRIBUTE_SYSTEM) != 0;
}

// Other reparse points (files in a cloud) lead nowhere else. Wine gives a linked folder no tag.
bool IsLink(const WIN32_FIND_DATAW& found) {
    if ((found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) == 0) return false;
    return found.dwReserved0 == 0 || IsReparseTagNameSurrogate(found.dwReserved0);
}

FileInfo FromFound(const WIN32_FIND_DATAW& found) {
    FileInfo info;
    info.name = FromWide(found.cFileName);
    info.size = Join(found.nFileSizeHigh, found.nFileSizeLow);
    info.writeTime = LocalTimeOf(found.ftLastWriteTime);
    SetAttributes(info, found.dwFileAttributes);
    info.isLink = IsLink(found);
    return info;
}

std::string LastComponent(std::string_view path) {
    while (!path.empty() && (path.back() == '\\' || path.back() == '/')) path.remove_suffix(1);
    const std::size_t separator = path.find_last_of("\\/:");
    return std::string(separator == std::string_view::npos ? path : path.substr(separator + 1));
}

bool IsFolder(const char* path) {
    const WideArgument widePath(path);
    const DWORD attributes = ::GetFileAttributesW(widePath.Text());
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
}

}  // namespace

FileHandle OpenFile(const char* path, FileOptions options) {
    const WideArgument widePath(path);
    const DWORD flags = FILE_ATTRIBUTE_NORMAL | (options.writeThrough ? FILE_FLAG_WRITE_THROUGH : 0u);
    const HANDLE file = ::CreateFileW(widePath.Text(), AccessBits(options.access), FILE_SHARE_READ, nullptr,
                                      DispositionNumber(options.disposition), flags, nullptr);
    return file == INVALID_HANDLE_VALUE ? kNoFile : reinterpret_cast<FileHandle>(file);
}

bool CloseFile(FileHandle file) {
    return ::CloseHandle(AsHandle(file)) != 0;
}

int ReadFile(FileHandle file, std::span<char> buffer) {
    const auto wanted = static_cast<DWORD>(std::min<std::size_t>(buffer.size(), INT_MAX));
    DWORD received = 0;
    if (!::ReadFile(AsHandle(file), buffer.data(), wanted, &received, nullptr)) return -1;
    return static_cast<int>(received);
}

bool WriteFile(FileHandle file, std::span<const char> bytes) {
    while (!bytes.empty()) {
        const auto piece = static_cast<DWORD>(std::min(bytes.size(), kLargestWrite));
        DWORD written = 0;
        if (!::WriteFile(AsHandle(file), bytes.data(), piece, &written, nullptr)) return false;
        if (written == 0) {
            ::SetLastError(ERROR_DISK_FULL);
            return false;
        }
        bytes = bytes.subspan(written);
    }
    return true;
}

bool SeekToEnd(FileHandle file) {
    return ::SetFilePointerEx(AsHandle(file), LARGE_INTEGER{}, nullptr, FILE_END) != 0;
}

bool SeekTo(FileHandle file, std::uint64_t offset) {
    LARGE_INTEGER distance = {};
    distance.QuadPart = static_cast<LONGLONG>(offset);
    return ::SetFilePointerEx(AsHandle(file), distance, nullptr, FILE_BEGIN) != 0;
}

bool GetFileSize(FileHandle file, std::uint64_t& size) {
    LARGE_INTEGER value = {};
    if (!::GetFileSizeEx(AsHandle(file), &value)) return false;
    size = static_cast<std::uint64_t>(value.QuadPart);
    return true;
}

bool SetFileWriteTime(FileHandle file, std::uint64_t localTime) {
    std::uint64_t ticks = 0;
    if (!ConvertZone(::TzSpecificLocalTimeToSystemTime, localTime, ticks)) return false;
    const FILETIME universal = Split(ticks);
    return ::SetFileTime(AsHandle(file), nullptr, nullptr, &universal) != 0;
}

bool DeleteFilePath(const char* path) {
    const WideArgument widePath(path);
    return ::DeleteFileW(widePath.Text()) != 0;
}

bool MoveFilePath(const char* from, const char* to, bool replace) {
    const WideArgument wideFrom(from);
    const WideArgument wideTo(to);
    // Never a copy to another drive: that is neither one step nor quick.
    return ::MoveFileExW(wideFrom.Text(), wideTo.Text(), replace ? MOVEFILE_REPLACE_EXISTING : 0) != 0;
}

bool GetFileInfo(const char* path, FileInfo& info) {
    const WideArgument widePath(path);
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    if (!::GetFileAttributesExW(widePath.Text(), GetFileExInfoStandard, &data)) return false;
    info = FileInfo();
    info.name = LastComponent(path);
    info.size = Join(data.nFileSizeHigh, data.nFileSizeLow);
    info.writeTime = LocalTimeOf(data.ftLastWriteTime);
    SetAttributes(info, data.dwFileAttributes);
    return true;
}

bool ListFolder(const char* folder, std::vector<FileInfo>& entries) {
    std::string pattern = folder == nullptr ? "" : folder;
    if (!pattern.empty() && pattern.back() != '\\' && pattern.back() != '/') pattern.push_back('\\');
    pattern.push_back('*');
    const WideArgument widePattern(pattern.c_str());
    WIN32_FIND_DATAW found = {};
    const HANDLE search = ::FindFirstFileExW(widePattern.Text(), FindExInfoBasic, &found, FindExSearchNameMatch,
                                             nullptr, FIND_FIRST_EX_LARGE_FETCH);
    if (search == INVALID_HANDLE_VALUE) {
        // The root of an empty drive has not even "." and "..".
        return ::GetLastError() == ERROR_FILE_NOT_FOUND && IsFolder(folder);
    }
    do {
        if (std::wcscmp(found.cFileName, L".") != 0 && std::wcscmp(found.cFileName, L"..") != 0) {
            entries.push_back(FromFound(found));
        }
    } while (::FindNextFileW(search, &found));
    const DWORD error = ::GetLastError();
    ::FindClose(search);
    ::SetLastError(error);
    return error == ERROR_NO_MORE_FILES;
}

bool CreateFolder(const char* path) {
    const WideArgument widePath(path);
    return ::CreateDirectoryW(widePath.Text(), nullptr) != 0;
}

bool RemoveFolder(const char* path) {
    const WideArgument widePath(path);
    return ::RemoveDirectoryW(widePath.Text()) != 0;
}

std::vector<std::string> DriveNames() {
    std::vector<std::string> names;
    const DWORD drives = ::GetLogicalDrives();
    for (char letter = 'A'; letter <= 'Z'; ++letter) {
        if ((drives >> (letter - 'A') & 1u) != 0) names.push_back(std::string(1, letter) + ":\\");
    }
    return names;
}

bool SetCurrentFolder(const char* path) {
    const WideArgument widePath(path);
    return ::SetCurrentDirectoryW(widePath.Text()) != 0;
}

std::string CurrentFolder() {
    const DWORD needed = ::GetCurrentDirectoryW(0, nullptr);
    if (needed == 0) return {};
    std::wstring path(needed, L'\0');
    const DWORD length = ::GetCurrentDirectoryW(needed, path.data());
    // Longer than asked for: another thread changed the folder between the two calls.
    if (length == 0 || length >= needed) return {};
    return FromWide(std::wstring_view(path.data(), length));
}

std::string TemporaryFolder() {
    wchar_t path[MAX_PATH + 1];
    const DWORD length = ::GetTempPathW(ARRAYSIZE(path), path);
    if (length == 0 || length >= ARRAYSIZE(path)) return {};
    return FromWide(std::wstring_view(path, length));
}

std::string MakeTemporaryFile(const char* folder, const char* prefix) {
    const WideArgument wideFolder(folder);
    const WideArgument widePrefix(prefix);
    wchar_t path[MAX_PATH];
    if (::GetTempFileNameW(wideFolder.Text(), widePrefix.Text(), 0, path) == 0) return {};
    return FromWide(path);
}

bool GetDiskSpace(const char* path, DiskSpace& space) {
    const WideArgument widePath(path);
    wchar_t root[MAX_PATH];
    if (!::GetVolumePathNameW(widePath.Text(), root, ARRAYSIZE(root))) return false;
    ULARGE_INTEGER available = {};
    if (!::GetDiskFreeSpaceExW(root, &available, nullptr, nullptr)) return false;
    DWORD sectorsPerCluster = 0;
    DWORD bytesPerSector = 0;
    DWORD freeClusters = 0;
    DWORD allClusters = 0;
    if (!::GetDiskFreeSpaceW(root, &sectorsPerCluster, &bytesPerSector, &freeClusters, &allClusters)) return false;
    space = {available.QuadPart, bytesPerSector, sectorsPerCluster, freeClusters};
    return true;
}

}  // namespace platform
