// Files and folders of the local disk. Paths are UTF-8 (the program's code page) with "\" on Windows and "/" in the
// native test build. Nothing here knows remote names: those are made safe before they get here.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

using FileHandle = std::intptr_t;
inline constexpr FileHandle kNoFile = -1;

// "\\" on Windows, "/" in the native build.
extern const char kPathSeparator;

enum class FileAccess { Read, Write, ReadWrite };
enum class FileDisposition { CreateNew, CreateAlways, OpenExisting, OpenAlways };

struct FileOptions {
    FileAccess access = FileAccess::Read;
    FileDisposition disposition = FileDisposition::OpenExisting;
    bool writeThrough = false;
};

struct FileInfo {
    std::string name;  // last component only
    std::uint64_t size = 0;
    std::uint64_t writeTime = 0;  // 100-ns units since 1601-01-01, local time
    bool isFolder = false;
    bool isReadOnly = false;
    bool isHidden = false;
    bool isSystem = false;
    bool isLink = false;  // symbolic link or junction; set by ListFolder only
};

// Opens with sharing for readers. kNoFile on failure; LastSystemError() gives the reason (80 file exists, 5 denied,
// ...).
FileHandle OpenFile(const char* path, FileOptions options);
bool CloseFile(FileHandle file);
// Bytes read (0 at the end), -1 on failure.
int ReadFile(FileHandle file, std::span<char> buffer);
// All of it or false.
bool WriteFile(FileHandle file, std::span<const char> bytes);
bool SeekToEnd(FileHandle file);
bool SeekTo(FileHandle file, std::uint64_t offset);
bool GetFileSize(FileHandle file, std::uint64_t& size);
bool SetFileWriteTime(FileHandle file, std::uint64_t localTime);

bool DeleteFilePath(const char* path);
// Removes the attributes read-only, hidden and system from a file, so that it can be replaced.
bool MakeWritable(const char* path);
// Renames; with `replace` an existing target file is replaced in one step, else it fails with 183 (exists).
bool MoveFilePath(const char* from, const char* to, bool replace);
bool GetFileInfo(const char* path, FileInfo& info);
// Every entry but "." and ".."; false when the folder cannot be read.
bool ListFolder(const char* folder, std::vector<FileInfo>& entries);
bool CreateFolder(const char* path);
bool RemoveFolder(const char* path);

// The roots that paths can begin with, in order: the drives, or "/" where there are none.
std::vector<std::string> DriveNames();

bool SetCurrentFolder(const char* path);
std::string CurrentFolder();
// The system's folder for temporary files, with a trailing separator.
std::string TemporaryFolder();
// Creates a new empty file with a unique name that begins with (three letters of) `prefix`; empty on failure.
std::string MakeTemporaryFile(const char* folder, const char* prefix);

struct DiskSpace {
    std::uint64_t freeBytes = 0;
    std::uint32_t bytesPerSector = 0;
    std::uint32_t sectorsPerCluster = 0;
    std::uint32_t freeClusters = 0;  // cut to 32 bits as the old call reports it
};
// Free space of the drive of `path`.
bool GetDiskSpace(const char* path, DiskSpace& space);
// Largest length of a full path in bytes that file calls accept.
inline constexpr std::size_t kLongestPath = 259;

}  // namespace platform
