#include "transfer/drop_transfer.h"

#include <algorithm>
#include <string>
#include <vector>

#include "foundation/trace.h"
#include "platform/files.h"
#include "transfer/destinations.h"
#include "transfer/local_tree_transfer.h"
#include "transfer/transfer_run.h"
#include "transfer/transfer_view.h"

namespace {

bool EndsWithSeparator(const std::string& path) {
    return path.back() == platform::kPathSeparator || path.back() == '/';
}

// "C:\x\" is "C:\x"; a lone separator and a drive's root stay.
std::string WithoutLastSeparator(std::string path) {
    while (path.size() > 1 && EndsWithSeparator(path) && path[path.size() - 2] != ':') path.pop_back();
    return path;
}

std::string ParentOf(std::string path) {
    if constexpr (platform::kPathSeparator == '\\') {
        SetNtPathToParent(path);
    } else {
        SetUnixPathToParent(path);
    }
    return path;
}

bool IsAbsolute(const std::string& path) {
    return EndsWithSeparator(path.substr(0, 1)) || (path.size() > 1 && path[1] == ':');
}

std::string AbsolutePath(const std::string& name, const std::string& folder) {
    std::string path = IsAbsolute(name) ? name : folder + platform::kPathSeparator + name;
    std::replace(path.begin(), path.end(), '/', platform::kPathSeparator);
    return path;
}

// One file, or one folder with all below. False ends the whole transfer.
bool TransferPath(const std::string& path, const std::string& localStart, const std::string& remoteStart,
                  std::atomic<bool>& abort) {
    platform::FileInfo found;
    if (!platform::GetFileInfo(path.c_str(), found)) {
        DbgVsprintf("TransferPath", "Passing over %s. It cannot be found", path.c_str());
        return true;
    }
    if (found.isFolder && (found.name == "." || found.name == "..")) return true;
    const std::string location = ParentOf(path);
    if (!TransferLocalFile(location.c_str(), localStart.c_str(), remoteStart.c_str(), &found, abort)) return false;
    if (found.isFolder && !TransferLocalTree(path.c_str(), localStart.c_str(), remoteStart.c_str(), abort))
        abort = true;
    return true;
}

}  // namespace

int Zarn_TransferDropFiles(std::atomic<bool>& abort) {
    constexpr char kName[] = "Zarn_TransferDropFiles";
    TransferRun run(TransferDirection::Upload);
    const std::vector<std::string> paths =
        gTransferView.droppedFiles != nullptr ? gTransferView.droppedFiles() : std::vector<std::string>();
    if (paths.empty() || !run.Start(kName, abort)) return kNothingDone;
    // The first item's folder serves for all of them.
    const std::string localStart = ParentOf(WithoutLastSeparator(paths.front()));
    for (const std::string& path : paths) {
        if (abort || path.empty()) break;
        if (!TransferPath(WithoutLastSeparator(path), localStart, run.RemoteStart(), abort)) break;
    }
    return run.Done(abort);
}

std::vector<std::string> StandardInputFiles() {
    return gTransferView.standardInputFiles != nullptr ? gTransferView.standardInputFiles()
                                                       : std::vector<std::string>();
}

int Zarn_TransferStdInFiles(std::atomic<bool>& abort) {
    TransferRun run(TransferDirection::Upload);
    const std::vector<std::string> names = StandardInputFiles();
    if (names.empty() || !run.Start("Zarn_TransferStdInFiles", abort)) return kNothingDone;
    DbgVsprintf("Zarn_TransferStdInFiles", "Transfering %d StdIn Files", static_cast<int>(names.size()));
    for (const std::string& name : names) {
        if (abort || name.empty()) break;
        // They come from anywhere, and all land in the current remote folder.
        const std::string path = AbsolutePath(WithoutLastSeparator(name), run.LocalStart());
        if (!TransferPath(path, ParentOf(path), run.RemoteStart(), abort)) break;
    }
    return run.Done(abort);
}
