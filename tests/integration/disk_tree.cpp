#include "integration/disk_tree.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>

#include "foundation/number_text.h"
#include "platform/files.h"

namespace {

constexpr std::int64_t kHalfYear = 182 * 86'400;
// Between 1601 and 1970.
constexpr std::int64_t kEpochSeconds = 11'644'473'600;
constexpr std::int64_t kUnitsPerSecond = 10'000'000;
constexpr std::int64_t kDay = 86'400;

// Wine shows the whole disk as drive Z.
std::string LocalForm(std::string path) {
    if (platform::kPathSeparator == '/') return path;
    std::replace(path.begin(), path.end(), '/', '\\');
    return "Z:" + path;
}

std::string BytesOf(const std::string& path) {
    const platform::FileHandle file = platform::OpenFile(path.c_str(), {});
    if (file == platform::kNoFile) return "(cannot read " + path + ")";
    std::string bytes;
    std::vector<char> block(1 << 16);
    int count;
    while ((count = platform::ReadFile(file, block)) > 0) bytes.append(block.data(), static_cast<std::size_t>(count));
    platform::CloseFile(file);
    return bytes;
}

std::string TakeField(std::string_view& rest) {
    const std::size_t end = std::min(rest.find('\0'), rest.size());
    const std::string field(rest.substr(0, end));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return field;
}

std::vector<DiskEntry> ReadDescription() {
    std::vector<DiskEntry> entries;
    const std::string file = Environment("ZARN_FTP_TREE");
    if (file.empty()) return entries;
    const std::string description = BytesOf(LocalForm(file));
    for (std::string_view rest = description; !rest.empty();) {
        DiskEntry entry;
        entry.mode = TakeField(rest);
        entry.size = ParseUnsigned(TakeField(rest));
        entry.modified = ParseUnsigned(TakeField(rest));
        entry.path = TakeField(rest);
        entry.target = TakeField(rest);
        if (entry.path.find("/.") == std::string::npos) entries.push_back(entry);
    }
    return entries;
}

bool InfoOf(const std::string& path, platform::FileInfo& info) {
    return platform::GetFileInfo(DiskPath(path).c_str(), info);
}

}  // namespace

std::string Environment(const char* name) {
    const char* value = std::getenv(name);
    return value != nullptr ? value : "";
}

const std::vector<DiskEntry>& DiskTree() {
    static const std::vector<DiskEntry> entries = ReadDescription();
    return entries;
}

std::vector<const DiskEntry*> DiskFolder(std::string_view folder) {
    std::vector<const DiskEntry*> found;
    const std::string prefix = folder == "/" ? "/" : std::string(folder) + "/";
    for (const DiskEntry& entry : DiskTree()) {
        if (entry.path.starts_with(prefix) && entry.path.find('/', prefix.size()) == std::string::npos)
            found.push_back(&entry);
    }
    std::sort(found.begin(), found.end(), [](const auto* a, const auto* b) { return a->path < b->path; });
    return found;
}

const DiskEntry* FindOnDisk(std::string_view path) {
    for (const DiskEntry& entry : DiskTree())
        if (entry.path == path) return &entry;
    return nullptr;
}

FileTime ListedTime(std::int64_t modified) {
    std::int64_t shown = modified;
    if (std::time(nullptr) - modified >= kHalfYear) shown -= shown % kDay;
    return static_cast<FileTime>((shown - shown % 60 + kEpochSeconds) * kUnitsPerSecond);
}

std::string DiskPath(const std::string& path) {
    return LocalForm(Environment("ZARN_FTP_ROOT") + path);
}

std::string DiskBytes(const std::string& path) {
    return BytesOf(DiskPath(path));
}

bool IsFileOnDisk(const std::string& path) {
    platform::FileInfo info;
    return InfoOf(path, info) && !info.isFolder;
}

bool IsFolderOnDisk(const std::string& path) {
    platform::FileInfo info;
    return InfoOf(path, info) && info.isFolder;
}

std::vector<std::string> NamesOnDisk(const std::string& folder) {
    std::vector<platform::FileInfo> entries;
    platform::ListFolder(DiskPath(folder).c_str(), entries);
    std::vector<std::string> names;
    for (const platform::FileInfo& entry : entries) names.push_back(entry.name);
    std::sort(names.begin(), names.end());
    return names;
}

std::string NetworkText(const std::string& diskText) {
    std::string text;
    for (const char character : diskText) {
        if (character == '\n') text += '\r';
        text += character;
    }
    return text;
}
