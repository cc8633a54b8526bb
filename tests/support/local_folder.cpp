#include "support/local_folder.h"

#include <algorithm>

#include "platform/files.h"

namespace {

void RemoveAll(const std::string& folder) {
    std::vector<platform::FileInfo> entries;
    platform::ListFolder(folder.c_str(), entries);
    for (const platform::FileInfo& entry : entries) {
        const std::string path = folder + platform::kPathSeparator + entry.name;
        if (entry.isFolder) {
            RemoveAll(path);
        } else if (!platform::DeleteFilePath(path.c_str()) && platform::MakeWritable(path.c_str())) {
            platform::DeleteFilePath(path.c_str());
        }
    }
    platform::RemoveFolder(folder.c_str());
}

void Collect(const std::string& folder, const std::string& prefix, std::vector<std::string>& names) {
    std::vector<platform::FileInfo> entries;
    platform::ListFolder(folder.c_str(), entries);
    for (const platform::FileInfo& entry : entries) {
        names.push_back(prefix + entry.name + (entry.isFolder ? "/" : ""));
        if (entry.isFolder) Collect(folder + platform::kPathSeparator + entry.name, prefix + entry.name + "/", names);
    }
}

}  // namespace

LocalFolder::LocalFolder() : before_(platform::CurrentFolder()) {
    path_ = platform::MakeTemporaryFile(platform::TemporaryFolder().c_str(), "LOC");
    platform::DeleteFilePath(path_.c_str());
    platform::CreateFolder(path_.c_str());
    platform::SetCurrentFolder(path_.c_str());
    path_ = platform::CurrentFolder();
}

LocalFolder::~LocalFolder() {
    platform::SetCurrentFolder(before_.c_str());
    RemoveAll(path_);
}

std::string LocalFolder::PathOf(std::string name) const {
    std::replace(name.begin(), name.end(), '/', platform::kPathSeparator);
    return path_ + platform::kPathSeparator + name;
}

void LocalFolder::MakeFolder(const std::string& name) const {
    for (std::size_t end = name.find('/'); end != std::string::npos; end = name.find('/', end + 1)) {
        platform::CreateFolder(PathOf(name.substr(0, end)).c_str());
    }
    platform::CreateFolder(PathOf(name).c_str());
}

void LocalFolder::Write(const std::string& name, const std::string& bytes) const {
    if (const std::size_t separator = name.rfind('/'); separator != std::string::npos) {
        MakeFolder(name.substr(0, separator));
    }
    const platform::FileHandle file = platform::OpenFile(
        PathOf(name).c_str(), {platform::FileAccess::Write, platform::FileDisposition::CreateAlways});
    platform::WriteFile(file, bytes);
    platform::CloseFile(file);
}

std::string LocalFolder::Read(const std::string& name) const {
    const platform::FileHandle file = platform::OpenFile(PathOf(name).c_str(), {});
    if (file == platform::kNoFile) return "(no such file)";
    std::string bytes;
    char block[4096];
    int count;
    while ((count = platform::ReadFile(file, block)) > 0) bytes.append(block, static_cast<std::size_t>(count));
    platform::CloseFile(file);
    return bytes;
}

bool LocalFolder::Exists(const std::string& name) const {
    platform::FileInfo info;
    return platform::GetFileInfo(PathOf(name).c_str(), info);
}

std::vector<std::string> LocalFolder::Contents() const {
    std::vector<std::string> names;
    Collect(path_, "", names);
    std::sort(names.begin(), names.end());
    return names;
}
