#include "transfer/receive_target.h"

#include <algorithm>
#include <unordered_set>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "platform/files.h"
#include "platform/system.h"
#include "transfer/local_names.h"
#include "transfer/transfer_progress.h"
#include "transfer/transfer_view.h"

namespace {

constexpr char kName[] = "OpenReceiveTarget";
constexpr char kTemporaryPrefix[] = "ZRN";
constexpr int kMostNumbers = 10000;
constexpr std::uint32_t kErrorNameTooLong = 206;
// A name is not cut below this to fit a long folder.
constexpr std::size_t kShortestName = 12;

// Files that this transfer made. Worker only.
std::unordered_set<std::string> receivedFiles;

std::string KeyOf(const std::string& path) {
    return platform::LocaleLower(path);
}

enum class Probe { Free, Exists, Failed };

// Making the file is the cheapest way to learn that its name is free: a look-up of a missing name reads a whole folder.
Probe ProbeName(const std::string& path, unsigned& error) {
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

TargetResult FailWith(unsigned reason, unsigned& error) {
    error = reason;
    DbgVsprintf(kName, "ERROR. Returning Failed. Error:%u", reason);
    return TargetResult::Failed;
}

std::string LastComponent(const std::string& path) {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? path : path.substr(separator + 1);
}

TargetResult TakeNumberedName(const std::string& folder, const std::string& name, unsigned messageId,
                              ReceiveTarget& target, unsigned& error) {
    for (int number = 2; number <= kMostNumbers; ++number) {
        const std::string path = PathInFolder(folder, NumberedName(name, number));
        if (path.empty()) return FailWith(kErrorNameTooLong, error);
        if (receivedFiles.contains(KeyOf(path))) continue;
        const Probe probe = ProbeName(path, error);
        if (probe == Probe::Exists) continue;
        if (probe == Probe::Failed) return FailWith(error, error);
        target.finalPath = path;
        DoPrintIdArgs(messageId, name, LastComponent(path));
        return TargetResult::Ready;
    }
    return FailWith(platform::kErrorAlreadyExists, error);
}

ExistingFile KindOf(const platform::FileInfo& info) {
    if (info.isSystem) return ExistingFile::System;
    return info.isReadOnly ? ExistingFile::ReadOnly : ExistingFile::Ordinary;
}

// "Yes to All" covers ordinary files; a read-only or system file is asked for each time.
TargetResult AskToReplace(const std::string& name, const platform::FileInfo& info, IncomingFile incoming,
                          bool& replaceAll, ReceiveTarget& target) {
    const ExistingFile kind = KindOf(info);
    target.replaceExisting = true;
    if (replaceAll && kind == ExistingFile::Ordinary) return TargetResult::Ready;
    // Nobody to ask: what stands there stays.
    if (gTransferView.confirmReplace == nullptr) return TargetResult::Skipped;
    switch (gTransferView.confirmReplace(
        {name, target.finalPath, kind, info.size, info.writeTime, incoming.size, incoming.time})) {
        case ReplaceAnswer::YesToAll:
            replaceAll = true;
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

TargetResult HandleExisting(const std::string& folder, const std::string& name, IncomingFile incoming, bool& replaceAll,
                            ReceiveTarget& target, unsigned& error) {
    platform::FileInfo info;
    if (!platform::GetFileInfo(target.finalPath.c_str(), info)) return FailWith(platform::LastSystemError(), error);
    if (gZarn.RECVUNIQUE != 0) return TakeNumberedName(folder, name, MSG_RECEIVE_UNIQUE_NAME, target, error);
    if (info.isFolder) return FailWith(platform::kErrorAlreadyExists, error);
    if (receivedFiles.contains(KeyOf(target.finalPath))) {
        return TakeNumberedName(folder, name, MSG_UNSAFE_NAME_REPLACED, target, error);
    }
    return AskToReplace(name, info, incoming, replaceAll, target);
}

// Which final name, without making anything.
TargetResult ChooseFinalName(const std::string& folder, const std::string& name, IncomingFile incoming,
                             bool& replaceAll, ReceiveTarget& target, unsigned& error) {
    target.finalPath = PathInFolder(folder, name);
    if (target.finalPath.empty()) return FailWith(kErrorNameTooLong, error);
    switch (ProbeName(target.finalPath, error)) {
        case Probe::Free:
            return TargetResult::Ready;
        case Probe::Exists:
            return HandleExisting(folder, name, incoming, replaceAll, target, error);
        case Probe::Failed:
            break;
    }
    return FailWith(error, error);
}

bool MoveIntoPlace(const ReceiveTarget& target) {
    const char* from = target.temporaryPath.c_str();
    const char* to = target.finalPath.c_str();
    if (platform::MoveFilePath(from, to, target.replaceExisting)) return true;
    const std::uint32_t error = platform::LastSystemError();
    // A read-only file is not replaced by the system, but the user agreed to lose it.
    if (target.replaceExisting && platform::MakeWritable(to)) return platform::MoveFilePath(from, to, true);
    platform::SetLastSystemError(error);
    return false;
}

}  // namespace

void ForgetReceivedFiles() {
    receivedFiles.clear();
}

TargetResult OpenReceiveTarget(const std::string& folder, const std::string& name, bool& replaceAll,
                               ReceiveTarget& target, unsigned& error, IncomingFile incoming) {
    target = ReceiveTarget();
    error = 0;
    const TargetResult chosen = ChooseFinalName(folder, name, incoming, replaceAll, target, error);
    if (chosen != TargetResult::Ready) return chosen;
    target.temporaryPath = platform::MakeTemporaryFile(folder.c_str(), kTemporaryPrefix);
    if (target.temporaryPath.empty()) return FailWith(platform::LastSystemError(), error);
    return TargetResult::Ready;
}

bool CommitReceiveTarget(const ReceiveTarget& target, unsigned& error) {
    if (MoveIntoPlace(target)) {
        receivedFiles.insert(KeyOf(target.finalPath));
        return true;
    }
    error = platform::LastSystemError();
    DbgVsprintf("CommitReceiveTarget", "ERROR. Call to MoveFile(%s, %s) Failed!", target.temporaryPath.c_str(),
                target.finalPath.c_str());
    DiscardReceiveTarget(target);
    return false;
}

void DiscardReceiveTarget(const ReceiveTarget& target) {
    if (target.temporaryPath.empty() || platform::DeleteFilePath(target.temporaryPath.c_str())) return;
    platform::FileInfo info;
    const std::uint32_t error = platform::LastSystemError();
    if (!platform::GetFileInfo(target.temporaryPath.c_str(), info)) return;
    DoPrintIdArgs(MSG_TEMPORARY_FILE_STAYS, target.temporaryPath, platform::SystemErrorText(error));
}
