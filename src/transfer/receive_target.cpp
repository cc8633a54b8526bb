#include "transfer/receive_target.h"

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "platform/files.h"
#include "platform/system.h"
#include "transfer/local_names.h"
#include "transfer/transfer_view.h"

namespace {

constexpr char kFuncName[] = "OpenReceiveTarget";
constexpr char kTemporaryPrefix[] = "ZRN";
constexpr int kMostNumbers = 10000;
// A name is not cut below this to fit a long folder.
constexpr std::size_t kShortestName = 12;

// The search for a final name: what is known and what has been found so far.
struct Search {
    TransferJob& job;
    const IncomingFile& incoming;
    ReceiveTarget target;
    std::uint32_t error = 0;
};

std::string KeyOf(const std::string& path) {
    return platform::LocaleLower(path);
}

bool WasReceived(const TransferJob& job, const std::string& path) {
    return job.receivedFiles.contains(KeyOf(path));
}

enum class Probe { Free, Exists, Failed };

// Making the file is the cheapest way to learn that its name is free: looking up a missing name reads a whole folder.
Probe ProbeName(const std::string& path, std::uint32_t& error) {
    const platform::FileHandle file =
        platform::OpenFile(path.c_str(), {platform::FileAccess::Write, platform::FileDisposition::CreateNew});
    if (file != platform::kNoFile) {
        platform::CloseFile(file);
        platform::DeleteFilePath(path.c_str());
        return Probe::Free;
    }
    error = platform::LastSystemError();
    if (error == platform::kErrorFileExists || error == platform::kErrorAlreadyExists) return Probe::Exists;
    return Probe::Failed;
}

// The path of a name in the folder, the name cut if the path would be too long; empty when even that does not help.
std::string PathInFolder(const std::string& folder, const std::string& name) {
    std::string path = BoundedLocalPath(folder, name);
    if (!path.empty()) return path;
    if (folder.size() + 1 + kShortestName > platform::kLongestPath) return {};
    return BoundedLocalPath(folder, FitName(name, platform::kLongestPath - folder.size() - 1));
}

TargetResult Fail(Search& search, std::uint32_t error) {
    search.error = error;
    DbgVsprintf(kFuncName, "ERROR. Returning Failed. Error:%u", static_cast<unsigned>(error));
    return TargetResult::Failed;
}

std::string LastComponent(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

TargetResult ChooseNumberedName(Search& search, unsigned messageId) {
    const auto& [folder, name, size, time] = search.incoming;
    for (int number = 2; number <= kMostNumbers; ++number) {
        const std::string path = PathInFolder(folder, NumberedName(name, number));
        if (path.empty()) return Fail(search, platform::kErrorNameTooLong);
        if (WasReceived(search.job, path)) continue;
        std::uint32_t error = 0;
        const Probe probe = ProbeName(path, error);
        if (probe == Probe::Exists) continue;
        if (probe == Probe::Failed) return Fail(search, error);
        search.target.finalPath = path;
        DoPrintIdArgs(messageId, name, LastComponent(path));
        return TargetResult::Ready;
    }
    return Fail(search, platform::kErrorAlreadyExists);
}

ExistingFile KindOf(const platform::FileInfo& info) {
    if (info.isSystem) return ExistingFile::System;
    return info.isReadOnly ? ExistingFile::ReadOnly : ExistingFile::Ordinary;
}

// "Yes to All" covers ordinary files; read-only and system files are asked about each time.
TargetResult AskToReplace(Search& search, const platform::FileInfo& info) {
    const ExistingFile kind = KindOf(info);
    search.target.replaceExisting = true;
    if (search.job.replaceAll && kind == ExistingFile::Ordinary) return TargetResult::Ready;
    switch (gTransferView.confirmReplace({search.incoming.name, search.target.finalPath, kind, info.size,
                                          info.writeTime, search.incoming.size, search.incoming.time})) {
        case ReplaceAnswer::YesToAll:
            search.job.replaceAll = true;
            return TargetResult::Ready;
        case ReplaceAnswer::Yes:
            return TargetResult::Ready;
        case ReplaceAnswer::No:
            return TargetResult::Skipped;
        case ReplaceAnswer::Cancel:
            break;
    }
    return TargetResult::Cancelled;
}

TargetResult HandleExisting(Search& search) {
    platform::FileInfo info;
    if (!platform::GetFileInfo(search.target.finalPath.c_str(), info)) {
        return Fail(search, platform::LastSystemError());
    }
    if (gZarn.RECVUNIQUE != 0) return ChooseNumberedName(search, MSG_RECEIVE_UNIQUE_NAME);
    if (info.isFolder) return Fail(search, platform::kErrorAlreadyExists);
    if (WasReceived(search.job, search.target.finalPath)) return ChooseNumberedName(search, MSG_UNSAFE_NAME_REPLACED);
    return AskToReplace(search, info);
}

// Chooses the final name without making anything.
TargetResult ChooseFinalName(Search& search) {
    search.target.finalPath = PathInFolder(search.incoming.folder, search.incoming.name);
    if (search.target.finalPath.empty()) return Fail(search, platform::kErrorNameTooLong);
    std::uint32_t error = 0;
    switch (ProbeName(search.target.finalPath, error)) {
        case Probe::Free:
            return TargetResult::Ready;
        case Probe::Exists:
            return HandleExisting(search);
        case Probe::Failed:
            break;
    }
    return Fail(search, error);
}

bool MoveIntoPlace(const ReceiveTarget& target) {
    const char* from = target.temporaryPath.c_str();
    const char* to = target.finalPath.c_str();
    if (platform::MoveFilePath(from, to, target.replaceExisting)) return true;
    const std::uint32_t error = platform::LastSystemError();
    // The system does not replace a read-only file, but the user agreed to lose it.
    if (target.replaceExisting && platform::MakeWritable(to)) return platform::MoveFilePath(from, to, true);
    platform::SetLastSystemError(error);
    return false;
}

}  // namespace

OpenedTarget OpenReceiveTarget(TransferJob& job, const IncomingFile& incoming) {
    Search search{job, incoming, {}};
    TargetResult result = ChooseFinalName(search);
    if (result == TargetResult::Ready) {
        search.target.temporaryPath = platform::MakeTemporaryFile(incoming.folder.c_str(), kTemporaryPrefix);
        if (search.target.temporaryPath.empty()) result = Fail(search, platform::LastSystemError());
    }
    return {result, search.target, search.error};
}

std::uint32_t CommitReceiveTarget(TransferJob& job, const ReceiveTarget& target) {
    if (MoveIntoPlace(target)) {
        job.receivedFiles.insert(KeyOf(target.finalPath));
        return 0;
    }
    const std::uint32_t error = platform::LastSystemError();
    DbgVsprintf("CommitReceiveTarget", "ERROR. Call to MoveFile(%s, %s) Failed!", target.temporaryPath.c_str(),
                target.finalPath.c_str());
    DiscardReceiveTarget(target);
    return error != 0 ? error : platform::kErrorAccessDenied;
}

void DiscardReceiveTarget(const ReceiveTarget& target) {
    if (target.temporaryPath.empty() || platform::DeleteFilePath(target.temporaryPath.c_str())) return;
    platform::FileInfo info;
    const std::uint32_t error = platform::LastSystemError();
    if (!platform::GetFileInfo(target.temporaryPath.c_str(), info)) return;
    DoPrintIdArgs(MSG_TEMPORARY_FILE_STAYS, target.temporaryPath, platform::SystemErrorText(error));
}
