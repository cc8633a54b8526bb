// A folder of the test's own in the temporary folder, the process's current one while it lives; removed with everything
// in it.
#pragma once

#include <string>
#include <vector>

class LocalFolder {
  public:
    LocalFolder();
    ~LocalFolder();
    LocalFolder(const LocalFolder&) = delete;
    LocalFolder& operator=(const LocalFolder&) = delete;

    const std::string& Path() const { return path_; }
    // Below the folder; "/" in `name` becomes the system's separator.
    std::string PathOf(std::string name) const;
    // Both make the folders on the way.
    void MakeFolder(const std::string& name) const;
    void Write(const std::string& name, const std::string& bytes) const;
    std::string Read(const std::string& name) const;
    bool Exists(const std::string& name) const;
    // Names of everything below, sorted, folders with a "/" behind them.
    std::vector<std::string> Contents() const;

  private:
    std::string before_;
    std::string path_;
};
