#include "platform/files.h"

#include <dirent.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>
#include <ctime>

#include "fault_injection.h"
#include "host_errors.h"
#include "platform/system.h"

namespace platform {

const char kPathSeparator = '/';

namespace {

using fault_injection::Call;
using fault_injection::Strikes;

constexpr std::uint64_t kTicksPerSecond = 10'000'000;
constexpr std::int64_t kSecondsTo1970 = 11'644'473'600;

// Local calendar time counted as if it were universal time, as FILETIME does for "local" times.
std::uint64_t LocalTimeOf(const timespec& time) {
    std::tm fields = {};
    ::localtime_r(&time.tv_sec, &fields);
    const std::int64_t seconds = ::timegm(&fields) + kSecondsTo1970;
    if (seconds < 0) return 0;
    return static_cast<std::uint64_t>(seconds) * kTicksPerSecond + static_cast<std::uint64_t>(time.tv_nsec) / 100;
}

timespec SystemTimeOf(std::uint64_t localTime) {
    const auto seconds = static_cast<std::int64_t>(localTime / kTicksPerSecond) - kSecondsTo1970;
    const time_t asUniversal = static_cast<time_t>(seconds);
    std::tm fields = {};
    ::gmtime_r(&asUniversal, &fields);
    fields.tm_isdst = -1;
    return {::mktime(&fields), static_cast<long>(localTime % kTicksPerSecond) * 100};
}

std::string Parent(const std::string& path) {
    const std::size_t end = path.find_last_not_of('/');
    if (end == std::string::npos) return "/";
    const std::size_t separator = path.rfind('/', end);
    if (separator == std::string::npos) return ".";
    return separator == 0 ? "/" : path.substr(0, separator);
}

std::string LastComponent(std::string_view path) {
    while (!path.empty() && path.back() == '/') path.remove_suffix(1);
    return std::string(path.substr(path.rfind('/') + 1));
}

bool IsFolder(const std::string& path) {
    struct stat status = {};
    return ::stat(path.c_str(), &status) == 0 && S_ISDIR(status.st_mode);
}

bool Exists(const char* path) {
    struct stat status = {};
    return ::lstat(path, &status) == 0;
}

// Windows tells a missing file from a missing folder on the way to it.
bool FailPath(const char* path) {
    if (errno == ENOENT && !IsFolder(Parent(path))) return host::Fail(host::kErrorPathNotFound);
    return host::FailFile();
}

// The tests may run as root, whom no permission bit stops; so the owner's write bit is looked at here. It stands for
// the read-only attribute of a file and for a folder that may not be written to.
bool MayWrite(const std::string& path) {
    struct stat status = {};
    return ::stat(path.c_str(), &status) != 0 || (status.st_mode & S_IWUSR) != 0;
}

bool RefuseWrite() {
    return host::Fail(kErrorAccessDenied);
}

FileInfo FromStatus(std::string name, const struct stat& status) {
    FileInfo info;
    info.isFolder = S_ISDIR(status.st_mode);
    info.size = info.isFolder ? 0 : static_cast<std::uint64_t>(status.st_size);
    info.writeTime = LocalTimeOf(status.st_mtim);
    info.isReadOnly = (status.st_mode & S_IWUSR) == 0;
    info.isHidden = !name.empty() && name.front() == '.';
    info.name = std::move(name);
    return info;
}

int OpenFlags(const FileOptions& options) {
    int flags = O_CLOEXEC;
    if (options.access == FileAccess::Read) flags |= O_RDONLY;
    if (options.access == FileAccess::Write) flags |= O_WRONLY;
    if (options.access == FileAccess::ReadWrite) flags |= O_RDWR;
    if (options.disposition == FileDisposition::CreateNew) flags |= O_CREAT | O_EXCL;
    if (options.disposition == FileDisposition::CreateAlways) flags |= O_CREAT | O_TRUNC;
    if (options.disposition == FileDisposition::OpenAlways) flags |= O_CREAT;
    if (options.writeThrough) flags |= O_SYNC;
    return flags;
}

int AsDescriptor(FileHandle file) {
    return static_cast<int>(file);
}

}  // namespace

FileHandle OpenFile(const char* path, FileOptions options) {
    if (Strikes(Call::OpenFile)) return kNoFile;
    const bool mayCreate = options.disposition != FileDisposition::OpenExisting;
    const bool isThere = Exists(path);
    const bool mayChange = options.access != FileAccess::Read || options.disposition == FileDisposition::CreateAlways;
    if (isThere && options.disposition == FileDisposition::CreateNew) {
        host::Fail(kErrorFileExists);
        return kNoFile;
    }
    if ((isThere && (IsFolder(path) || (mayChange && !MayWrite(path)))) ||
        (!isThere && mayCreate && !MayWrite(Parent(path)))) {
        RefuseWrite();
        return kNoFile;
    }
    const int descriptor = ::open(path, OpenFlags(options), 0666);
    if (descriptor < 0) {
        FailPath(path);
        return kNoFile;
    }
    return descriptor;
}

bool CloseFile(FileHandle file) {
    const bool strikes = Strikes(Call::CloseFile);
    const std::uint32_t error = LastSystemError();
    if (::close(AsDescriptor(file)) != 0) return host::FailFile();
    return strikes ? host::Fail(error) : true;
}

int ReadFile(FileHandle file, std::span<char> buffer) {
    if (Strikes(Call::ReadFile)) return -1;
    const ssize_t received = ::read(AsDescriptor(file), buffer.data(), std::min<std::size_t>(buffer.size(), INT_MAX));
    if (received < 0) host::FailFile();
    return static_cast<int>(received);
}

bool WriteFile(FileHandle file, std::span<const char> bytes) {
    if (Strikes(Call::WriteFile)) return false;
    while (!bytes.empty()) {
        const ssize_t written = ::write(AsDescriptor(file), bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written < 0) return host::FailFile();
        if (written == 0) return host::Fail(kErrorDiskFull);
        bytes = bytes.subspan(static_cast<std::size_t>(written));
    }
    return true;
}

bool SeekToEnd(FileHandle file) {
    if (Strikes(Call::SeekFile)) return false;
    return ::lseek(AsDescriptor(file), 0, SEEK_END) >= 0 || host::FailFile();
}

bool SeekTo(FileHandle file, std::uint64_t offset) {
    if (Strikes(Call::SeekFile)) return false;
    return ::lseek(AsDescriptor(file), static_cast<off_t>(offset), SEEK_SET) >= 0 || host::FailFile();
}

bool GetFileSize(FileHandle file, std::uint64_t& size) {
    struct stat status = {};
    if (::fstat(AsDescriptor(file), &status) != 0) return host::FailFile();
    size = static_cast<std::uint64_t>(status.st_size);
    return true;
}

bool SetFileWriteTime(FileHandle file, std::uint64_t localTime) {
    // The highest bit is no time on Windows.
    if (localTime >> 63 != 0) return host::Fail(kErrorInvalidParameter);
    const timespec times[2] = {{0, UTIME_OMIT}, SystemTimeOf(localTime)};
    return ::futimens(AsDescriptor(file), times) == 0 || host::FailFile();
}

bool DeleteFilePath(const char* path) {
    if (Strikes(Call::DeleteFile)) return false;
    if (IsFolder(path) || !MayWrite(path) || !MayWrite(Parent(path))) return RefuseWrite();
    return ::unlink(path) == 0 || FailPath(path);
}

bool MoveFilePath(const char* from, const char* to, bool replace) {
    if (Strikes(Call::MoveFile)) return false;
    if (!Exists(from)) {
        errno = ENOENT;
        return FailPath(from);
    }
    if (!MayWrite(Parent(from)) || !MayWrite(Parent(to))) return RefuseWrite();
    if (replace && Exists(to) && (IsFolder(to) || !MayWrite(to))) return RefuseWrite();
    if (::renameat2(AT_FDCWD, from, AT_FDCWD, to, replace ? 0u : static_cast<unsigned>(RENAME_NOREPLACE)) == 0) {
        return true;
    }
    return errno == EEXIST ? host::Fail(kErrorAlreadyExists) : FailPath(to);
}

bool GetFileInfo(const char* path, FileInfo& info) {
    struct stat status = {};
    if (::stat(path, &status) != 0) return FailPath(path);
    info = FromStatus(LastComponent(path), status);
    return true;
}

bool ListFolder(const char* folder, std::vector<FileInfo>& entries) {
    if (Strikes(Call::ListFolder)) return false;
    DIR* const stream = ::opendir(folder);
    if (stream == nullptr) return errno == ENOENT ? host::Fail(host::kErrorPathNotFound) : host::FailFile();
    const std::size_t first = entries.size();
    while (const dirent* entry = ::readdir(stream)) {
        const std::string name = entry->d_name;
        struct stat status = {};
        if (name == "." || name == ".." || ::fstatat(::dirfd(stream), entry->d_name, &status, 0) != 0) continue;
        entries.push_back(FromStatus(name, status));
        struct stat own = {};
        const bool known = ::fstatat(::dirfd(stream), entry->d_name, &own, AT_SYMLINK_NOFOLLOW) == 0;
        entries.back().isLink = known && S_ISLNK(own.st_mode);
    }
    ::closedir(stream);
    // As Windows drives do it, so that tests see the same order everywhere.
    std::sort(entries.begin() + static_cast<std::ptrdiff_t>(first), entries.end(),
              [](const FileInfo& a, const FileInfo& b) {
                  const int order = LocaleLower(a.name).compare(LocaleLower(b.name));
                  return order != 0 ? order < 0 : a.name < b.name;
              });
    return true;
}

bool CreateFolder(const char* path) {
    if (Strikes(Call::CreateFolder)) return false;
    if (!Exists(path) && !MayWrite(Parent(path))) return RefuseWrite();
    if (::mkdir(path, 0777) == 0) return true;
    return errno == EEXIST ? host::Fail(kErrorAlreadyExists) : FailPath(path);
}

bool RemoveFolder(const char* path) {
    return ::rmdir(path) == 0 || FailPath(path);
}

std::vector<std::string> DriveNames() {
    return {"/"};
}

bool SetCurrentFolder(const char* path) {
    return ::chdir(path) == 0 || FailPath(path);
}

std::string CurrentFolder() {
    char path[PATH_MAX];
    return ::getcwd(path, sizeof path) == nullptr ? std::string() : std::string(path);
}

std::string TemporaryFolder() {
    const char* const folder = ::getenv("TMPDIR");
    std::string path = folder == nullptr || *folder == '\0' ? "/tmp" : folder;
    if (path.back() != '/') path.push_back('/');
    return path;
}

std::string MakeTemporaryFile(const char* folder, const char* prefix) {
    if (!IsFolder(folder)) {
        host::Fail(host::kErrorBadFolder);
        return {};
    }
    std::string path = folder;
    if (path.back() != '/') path.push_back('/');
    const std::string start = path + std::string(prefix).substr(0, 3);
    for (unsigned number = static_cast<unsigned>(::getpid()) * 7919u, tries = 0; tries < 0x10000; ++number, ++tries) {
        char tail[16];
        std::snprintf(tail, sizeof tail, "%04x.tmp", number & 0xFFFFu);
        path = start + tail;
        const FileHandle file = OpenFile(path.c_str(), {FileAccess::Write, FileDisposition::CreateNew, false});
        if (file != kNoFile) {
            CloseFile(file);
            return path;
        }
        if (LastSystemError() != kErrorFileExists) return {};
    }
    return {};
}

bool GetDiskSpace(const char* path, DiskSpace& space) {
    constexpr std::uint32_t sectorSize = 512;
    // The drive is meant, so the path itself need not exist yet.
    std::string existing = path;
    while (!Exists(existing.c_str()) && existing != "/" && existing != ".") existing = Parent(existing);
    struct statvfs status = {};
    if (::statvfs(existing.c_str(), &status) != 0) return host::FailFile();
    space.freeBytes = static_cast<std::uint64_t>(status.f_bavail) * status.f_frsize;
    space.bytesPerSector = sectorSize;
    space.sectorsPerCluster = static_cast<std::uint32_t>(status.f_frsize / sectorSize);
    space.freeClusters = static_cast<std::uint32_t>(status.f_bavail);
    return true;
}

}  // namespace platform
