#include "transfer/destinations.h"

#include <algorithm>
#include <cstring>
#include <string_view>

#include "foundation/trace.h"
#include "ftp/worker/result_codes.h"
#include "platform/files.h"
#include "transfer/local_names.h"

namespace {

constexpr char kFuncName[] = "Zarn_GetDestination";

bool IsSeparator(char character) {
    return character == '/' || character == '\\';
}

bool IsMissing(const char* text) {
    return text == nullptr || *text == '\0';
}

void CutAtLast(std::string& path, char separator) {
    for (std::size_t position = path.size(); position-- > 1;) {
        if (path[position] != separator) continue;
        path.resize(position);
        return;
    }
}

bool Fail(TransferNode& node) {
    node.iRetCode = FTP_ERROR;
    return false;
}

bool Succeed(TransferNode& node, const std::string& destination) {
    node.pszDestination = OwnedText::Copy(destination);
    if (!node.pszDestination) return Fail(node);
    node.iRetCode = FTP_COMPLETE;
    return true;
}

// The location must begin with the starting point.
bool StartsAt(std::string_view location, std::string_view start) {
    if (location.size() < start.size()) {
        DbgVsprintf(kFuncName, "iLenLocation:%d < iLenInit:%d. Returning FALSE", static_cast<int>(location.size()),
                    static_cast<int>(start.size()));
        return false;
    }
    if (location.substr(0, start.size()) != start) {
        DbgVsprintf(kFuncName, "Strings Failed to Compare:%s,%s. Returning FALSE", location.data(), start.data());
        return false;
    }
    return true;
}

// Makes every component of a remote path a local name, with the system's separator between them. On a server with "\"
// both slashes separate components; elsewhere "\" is an ordinary character.
std::string SafeLocalPath(std::string_view rest, char separator) {
    std::string path;
    while (true) {
        const std::size_t end = separator == '\\' ? rest.find_first_of("/\\") : rest.find(separator);
        const std::string_view component = rest.substr(0, end);
        // An empty component (a doubled separator) names nothing and is dropped.
        if (!component.empty()) {
            if (!path.empty()) path += platform::kPathSeparator;
            path += SafeLocalName(component);
        }
        if (end == std::string_view::npos) return path;
        rest.remove_prefix(end + 1);
    }
}

std::string Join(std::string root, std::string_view rest, char separator) {
    const bool rootEnds = IsSeparator(root.back());
    const bool restBegins = !rest.empty() && IsSeparator(rest.front());
    if (rootEnds && restBegins) root.pop_back();
    if (!rootEnds && !restBegins) root += separator;
    return root.append(rest);
}

std::string LocalDestination(const char* root, std::string_view rest, char separator) {
    std::string path = Join(root, SafeLocalPath(rest, separator), platform::kPathSeparator);
    std::replace(path.begin(), path.end(), '/', platform::kPathSeparator);
    return path;
}

std::string RemoteDestination(const char* root, std::string_view rest, char separator) {
    std::string path = Join(root, rest, separator);
    std::replace_if(path.begin(), path.end(), IsSeparator, separator);
    return path;
}

}  // namespace

char GetDelimiter(const char* path) {
    if (path == nullptr) return '\0';
    const char* found = std::strpbrk(path, "/\\");
    return found != nullptr ? *found : '\0';
}

void SetUnixPathToParent(std::string& path) {
    CutAtLast(path, '/');
}

void SetNtPathToParent(std::string& path) {
    CutAtLast(path, '\\');
}

bool Zarn_GetDestination(const char* localStart, const char* remoteStart, TransferNode& node, bool upload) {
    if (IsMissing(localStart) || IsMissing(remoteStart) || node.pszLocation.empty()) {
        DbgVsprintf(kFuncName, "NULL Path Parameter. Returning FALSE");
        return Fail(node);
    }
    const char* start = upload ? localStart : remoteStart;
    const char* root = upload ? remoteStart : localStart;
    const std::string_view location = node.pszLocation.view();
    if (!StartsAt(location, start)) return false;
    const char separator = std::strchr(remoteStart, '\\') != nullptr  ? '\\'
                           : std::strchr(remoteStart, '/') != nullptr ? '/'
                                                                      : '\0';
    if (separator == '\0') return false;

    std::string_view rest = location.substr(std::strlen(start));
    if (rest.empty()) return Succeed(node, root);
    if (IsSeparator(rest.front())) rest.remove_prefix(1);
    if (rest.empty()) return false;
    return Succeed(node, upload ? RemoteDestination(root, rest, separator) : LocalDestination(root, rest, separator));
}
