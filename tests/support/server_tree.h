// The scripted server's files and folders, in memory. Paths are absolute, with "/".
#pragma once

#include <map>
#include <string>
#include <string_view>

class ServerTree {
  public:
    ServerTree() { AddFolder("/"); }
    // `name` as a client standing in `folder` means it.
    static std::string Resolve(const std::string& folder, std::string_view name);

    void AddFolder(const std::string& path);
    void AddFile(const std::string& path, std::string bytes);
    void SetListing(const std::string& path, std::string bytes);
    bool IsFolder(const std::string& path) const;
    bool IsFile(const std::string& path) const;
    bool Exists(const std::string& path) const { return entries_.count(path) != 0; }
    const std::string& Bytes(const std::string& path) const { return entries_.at(path).bytes; }
    bool IsEmpty(const std::string& folder) const;
    void Remove(const std::string& path) { entries_.erase(path); }
    bool Rename(const std::string& from, const std::string& to);
    // What LIST sends for a folder, in the form of a Unix server.
    std::string Listing(const std::string& folder) const;
    // One entry in that form, as LIST shows a file that it was asked for.
    std::string Line(const std::string& path, const std::string& shownName) const;
    std::string NameList(const std::string& folder) const;

  private:
    struct Entry {
        bool isFolder = false;
        std::string bytes;
    };
    static std::string Parent(const std::string& path);
    std::map<std::string, Entry> entries_;
    std::map<std::string, std::string> listings_;
};
