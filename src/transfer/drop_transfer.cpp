#include "transfer/drop_transfer.h"

#include <string>
#include <vector>

#include "foundation/trace.h"
#include "platform/files.h"
#include "transfer/destinations.h"
#include "transfer/local_tree_transfer.h"
#include "transfer/transfer_run.h"
#include "transfer/transfer_view.h"

namespace {

constexpr char kName[] = "Zarn_TransferDropFiles";

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

// False ends the drop.
bool TransferDropped(const std::string& path, const std::string& localStart, const std::string& remoteStart,
                     std::atomic<bool>& abort) {
    platform::FileInfo found;
    if (!platform::GetFileInfo(path.c_str(), found)) {
        DbgVsprintf(kName, "Passing over %s. It cannot be found", path.c_str());
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
    TransferRun run(TransferDirection::Upload);
    const std::vector<std::string> paths =
        gTransferView.droppedFiles != nullptr ? gTransferView.droppedFiles() : std::vector<std::string>();
    if (paths.empty() || !run.Start(kName, abort)) return kNothingDone;
    // The first item's folder serves for all of them.
    const std::string localStart = ParentOf(WithoutLastSeparator(paths.front()));
    for (const std::string& path : paths) {
        if (abort || path.empty()) break;
        if (!TransferDropped(WithoutLastSeparator(path), localStart, run.RemoteStart(), abort)) break;
    }
    return run.Done(abort);
}
