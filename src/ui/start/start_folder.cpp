#include "ui/start/start_folder.h"

#include <string>

#include "platform/system.h"

namespace {

constexpr char kSeparator = '\\';

// In lower case and with one separator at its end.
std::string Comparable(std::string_view folder) {
    while (!folder.empty() && folder.back() == kSeparator) folder.remove_suffix(1);
    std::string name = platform::LocaleLower(folder);
    return name.empty() ? name : name + kSeparator;
}

}  // namespace

bool IsFolderToStartIn(std::string_view folder, std::string_view programFolder, std::string_view systemFolder) {
    const std::string name = Comparable(folder);
    const std::string system = Comparable(systemFolder);
    if (name.empty() || name == Comparable(programFolder)) return false;
    return system.empty() || name.compare(0, system.size(), system) != 0;
}

std::string_view FolderOfPath(std::string_view path) {
    const std::size_t separator = path.rfind(kSeparator);
    if (separator == std::string_view::npos) return {};
    const bool isRoot = separator == 2 && path[1] == ':';
    return path.substr(0, isRoot ? separator + 1 : separator);
}
