// The tree that the servers show, as it lies on the disk: what every expectation of these tests is computed from.
// Paths are those of the servers ("/pub/a.txt"). The description is the one that servers.py took at the start.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/file_time.h"

struct DiskEntry {
    std::string mode;  // ten characters
    std::uint64_t size = 0;
    std::int64_t modified = 0;  // seconds since 1970, UTC
    std::string path;
    std::string target;  // of a link

    bool IsFolder() const { return mode.front() == 'd'; }
    bool IsFile() const { return mode.front() == '-'; }
    bool IsLink() const { return mode.front() == 'l'; }
    // The servers run as somebody else.
    bool IsReadable() const { return mode[7] == 'r'; }
    std::string Name() const { return path.substr(path.rfind('/') + 1); }
};

// Everything that a listing shows: no name on the way begins with a dot. Empty without servers.py.
const std::vector<DiskEntry>& DiskTree();
// The entries of one folder by name.
std::vector<const DiskEntry*> DiskFolder(std::string_view folder);
const DiskEntry* FindOnDisk(std::string_view path);

// What a listing's line can say of a time: to the minute for the last half year, to the day before that.
FileTime ListedTime(std::int64_t modified);

// The disk as it is now.
std::string DiskPath(const std::string& path);
std::string DiskBytes(const std::string& path);
bool IsFileOnDisk(const std::string& path);
bool IsFolderOnDisk(const std::string& path);
std::vector<std::string> NamesOnDisk(const std::string& folder);

// Every line end a CR LF, as a server that converts text sends it.
std::string NetworkText(const std::string& diskText);

// An environment variable, empty when it is missing.
std::string Environment(const char* name);
