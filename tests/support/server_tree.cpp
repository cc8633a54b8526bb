#include "support/server_tree.h"

#include <cstdio>
#include <vector>

std::string ServerTree::Resolve(const std::string& folder, std::string_view name) {
    const std::string whole = name.substr(0, 1) == "/" ? std::string(name) : folder + "/" + std::string(name);
    std::vector<std::string> parts;
    std::size_t start = 0;
    while (start <= whole.size()) {
        const std::size_t end = std::min(whole.find('/', start), whole.size());
        const std::string part = whole.substr(start, end - start);
        if (part == ".." && !parts.empty()) parts.pop_back();
        if (!part.empty() && part != "." && part != "..") parts.push_back(part);
        start = end + 1;
    }
    std::string path;
    for (const std::string& part : parts) path += "/" + part;
    return path.empty() ? "/" : path;
}

std::string ServerTree::Parent(const std::string& path) {
    const std::size_t slash = path.rfind('/');
    return slash == 0 ? "/" : path.substr(0, slash);
}

void ServerTree::AddFolder(const std::string& path) {
    if (path != "/" && !Exists(Parent(path))) AddFolder(Parent(path));
    entries_[path].isFolder = true;
}

void ServerTree::AddFile(const std::string& path, std::string bytes) {
    if (!Exists(Parent(path))) AddFolder(Parent(path));
    entries_[path] = {false, std::move(bytes)};
}

void ServerTree::SetListing(const std::string& path, std::string bytes) {
    AddFolder(path);
    listings_[path] = std::move(bytes);
}

bool ServerTree::IsFolder(const std::string& path) const {
    const auto found = entries_.find(path);
    return found != entries_.end() && found->second.isFolder;
}

bool ServerTree::IsFile(const std::string& path) const {
    const auto found = entries_.find(path);
    return found != entries_.end() && !found->second.isFolder;
}

bool ServerTree::IsEmpty(const std::string& folder) const {
    for (const auto& [path, entry] : entries_)
        if (path != "/" && Parent(path) == folder) return false;
    return true;
}

bool ServerTree::Rename(const std::string& from, const std::string& to) {
    if (!Exists(from) || Exists(to)) return false;
    std::map<std::string, Entry> moved;
    for (auto it = entries_.begin(); it != entries_.end();) {
        const bool below = it->first == from || it->first.substr(0, from.size() + 1) == from + "/";
        if (below) moved[to + it->first.substr(from.size())] = std::move(it->second);
        it = below ? entries_.erase(it) : std::next(it);
    }
    entries_.merge(moved);
    return true;
}

std::string ServerTree::Line(const std::string& path, const std::string& shownName) const {
    const Entry& entry = entries_.at(path);
    char head[96];
    std::snprintf(head, sizeof head, "%s   1 ftp      ftp      %10zu Jan 02 12:34 ",
                  entry.isFolder ? "drwxr-xr-x" : "-rw-r--r--", entry.isFolder ? 4096 : entry.bytes.size());
    return head + shownName + "\r\n";
}

std::string ServerTree::Listing(const std::string& folder) const {
    const auto given = listings_.find(folder);
    if (given != listings_.end()) return given->second;
    std::string listing;
    for (const auto& [path, entry] : entries_)
        if (path != "/" && Parent(path) == folder) listing += Line(path, path.substr(path.rfind('/') + 1));
    return listing;
}

std::string ServerTree::NameList(const std::string& folder) const {
    std::string names;
    for (const auto& [path, entry] : entries_)
        if (path != "/" && Parent(path) == folder) names += path.substr(path.rfind('/') + 1) + "\r\n";
    return names;
}
