#include "transfer/drop_transfer.h"

#include <algorithm>
#include <string>

#include "foundation/path_join.h"
#include "foundation/trace.h"
#include "listing/dot_entries.h"
#include "platform/files.h"
#include "transfer/destinations.h"
#include "transfer/local_tree_transfer.h"
#include "transfer/transfer_run.h"

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
    if (platform::kPathSeparator == '\\') {
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
    std::string path = IsAbsolute(name) ? name : JoinLocalPath(folder, name);
    std::replace(path.begin(), path.end(), '/', platform::kPathSeparator);
    return path;
}

// Sends one file, or one folder with all below. False ends the whole transfer.
bool SendPath(TransferJob& job, const std::string& path) {
    platform::FileInfo found;
    if (!platform::GetFileInfo(path.c_str(), found)) {
        DbgVsprintf("TransferPath", "Passing over %s. It cannot be found", path.c_str());
        return true;
    }
    if (found.isFolder && IsDotEntry(found.name)) return true;
    if (!SendLocalItem(job, ParentOf(path), found)) return false;
    if (found.isFolder && !SendLocalTree(job, path)) job.Stop();
    return true;
}

}  // namespace

int SendDroppedFiles(TransferJob& job) {
    TransferRun run(job);
    if (job.localPaths.empty() || !run.Start("Zarn_TransferDropFiles")) return kNothingDone;
    // The first item's folder serves for all of them.
    job.localStart = ParentOf(WithoutLastSeparator(job.localPaths.front()));
    for (const std::string& path : job.localPaths) {
        if (job.Stopped() || path.empty()) break;
        if (!SendPath(job, WithoutLastSeparator(path))) break;
    }
    return run.Done();
}

int SendNamedFiles(TransferJob& job) {
    constexpr char kFuncName[] = "Zarn_TransferStdInFiles";
    TransferRun run(job);
    if (job.localPaths.empty() || !run.Start(kFuncName)) return kNothingDone;
    DbgVsprintf(kFuncName, "Transfering %d StdIn Files", static_cast<int>(job.localPaths.size()));
    const std::string folder = job.currentLocalFolder;
    for (const std::string& name : job.localPaths) {
        if (job.Stopped() || name.empty()) break;
        const std::string path = AbsolutePath(WithoutLastSeparator(name), folder);
        job.localStart = ParentOf(path);
        if (!SendPath(job, path)) break;
    }
    return run.Done();
}

int Zarn_TransferDropFiles(const std::atomic<bool>&) {
    return RunRunningJob(SendDroppedFiles);
}

int Zarn_TransferStdInFiles(const std::atomic<bool>&) {
    return RunRunningJob(SendNamedFiles);
}
