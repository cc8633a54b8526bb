#include "foundation/path_join.h"

#include "platform/files.h"

namespace {

std::string Join(std::string_view folder, std::string_view name, char separator, bool needsSeparator) {
    std::string path;
    path.reserve(folder.size() + 1 + name.size());
    path = folder;
    if (needsSeparator) path += separator;
    return path.append(name);
}

}  // namespace

std::string JoinRemotePath(std::string_view folder, std::string_view name, char separator) {
    return Join(folder, name, separator, !folder.empty() && folder.back() != separator);
}

std::string JoinLocalPath(std::string_view folder, std::string_view name) {
    const bool endsWithSlash = folder.ends_with('\\') || folder.ends_with('/');
    return Join(folder, name, platform::kPathSeparator, !folder.empty() && !endsWithSlash);
}
