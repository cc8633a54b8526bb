#include "transfer/get_item.h"

#include <string>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/display_name.h"
#include "foundation/foundation_view.h"
#include "foundation/message_expansion.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reserved_names.h"
#include "ftp/data/data_connection.h"
#include "listing/directory_entry.h"
#include "platform/files.h"
#include "platform/system.h"
#include "transfer/item_steps.h"
#include "transfer/local_names.h"
#include "transfer/receive_target.h"
#include "transfer/transfer_errors.h"
#include "transfer/transfer_progress.h"

namespace {

constexpr char kFuncName[] = "DlgGetFile";

void ShowItem(const TransferJob& job, const TransferNode& node) {
    SetDlgFromText(SiteName(job), node.pszLocation.c_str());
    SetDlgSendToText("", node.pszDestination.c_str());
    SetByteCountText(0, node.iSize);
}

// The name on the local disk. FTP_COMPLETE, or the item's code: cancelled, or a name that is refused (shown).
int ChooseLocalName(TransferJob& job, TransferNode& node, std::string& name) {
    std::string converted = ConvertCase(DisplayName(node.pszRemoteName.view()), gZarn.mode.caseConversion);
    if (gZarn.mode.caseConversion == 0 && gZarn.PROMPT != 0 &&
        !AskForName(job, MSG_RECEIVE_REMOTE_FILE, MSG_ENTER_LOCAL_NAME, converted)) {
        return FTP_ERROR;
    }
    if (FileNameIsReserved(converted.c_str())) {
        TransferDlgError(converted.c_str(), kReservedOption, 0, nullptr);
        return kReservedName;
    }
    name = SafeLocalName(converted);
    if (name != converted) DoPrintIdArgs(MSG_UNSAFE_NAME_REPLACED, ShownName(converted), name);
    if (name != node.pszRemoteName.view()) node.pszLocalName = OwnedText::Copy(name);
    return FTP_COMPLETE;
}

// Makes the folder that holds the file the session's current one.
int EnterLocation(TransferJob& job, const TransferNode& node) {
    Site* site = job.site;
    const char* location = node.pszLocation.c_str();
    while (site->pszCurrentDir.empty() || site->pszCurrentDir.view() != location) {
        DbgVsprintf(kFuncName, "( changing remote dir \n    from %s\n    to %s", site->pszCurrentDir.c_str(), location);
        char reply[kReplySize] = "";
        const int result = DoCWD(site, location, reply, true);
        if (result == FTP_COMPLETE) break;
        if (job.Stopped() || EndIfLost(job, kFuncName, result, reply)) return result;
        if (!WantsRetry(job, TransferDlgError(location, kRemoteFolderOption, 0, reply))) return result;
    }
    return FTP_COMPLETE;
}

int CodeOfLocalError(std::uint32_t error) {
    return error == platform::kErrorAccessDenied ? kLocalAccessDenied : FTP_ERROR;
}

BoxAnswer TellLocalError(const std::string& path, std::uint32_t error) {
    const bool diskFull = error == platform::kErrorDiskFull || error == platform::kErrorHandleDiskFull;
    return TransferDlgError(path.c_str(), diskFull ? kDiskFullOption : kLocalFileOption, error, nullptr);
}

// The file gets the time that the listing shows, taken as local time. A disk that refuses it does no harm.
void StampTime(const std::string& path, FileTime time) {
    if (time == 0) return;
    const platform::FileHandle file = platform::OpenFile(path.c_str(), {platform::FileAccess::Write});
    if (file == platform::kNoFile || !platform::SetFileWriteTime(file, time)) {
        DbgVsprintf(kFuncName, "WARNING. The time of %s cannot be set", path.c_str());
    }
    if (file != platform::kNoFile) platform::CloseFile(file);
}

// One try to fetch the file into the target. A failure has been shown, with the user's answer in the outcome.
ItemOutcome FetchOnce(TransferJob& job, const TransferNode& node, const ReceiveTarget& target, char mode) {
    const std::string command = "RETR " + DoublePercents(node.pszRemoteName.view());
    ItemOutcome outcome = ReceiveItem(job.site, {command.c_str(), target.temporaryPath.c_str(), mode, node.iSize});
    if (outcome.code == FTP_COMPLETE) {
        StampTime(target.temporaryPath, node.time);
        outcome.localError = CommitReceiveTarget(job, target);
        if (outcome.localError == 0) return outcome;
        outcome.code = CodeOfLocalError(outcome.localError);
        outcome.answer = TellLocalError(target.finalPath, outcome.localError);
    } else if (outcome.localError != 0 && !job.Stopped()) {
        outcome.answer = TellLocalError(target.finalPath, outcome.localError);
    } else {
        const FailedItem item{kFuncName, node.pszRemoteName.c_str(), MSG_BOX_FILE_NOT_COMPLETE};
        outcome.answer = TellNetworkFailure(job, item, outcome);
    }
    outcome.told = true;
    return outcome;
}

OpenedTarget OpenTarget(TransferJob& job, const TransferNode& node, const std::string& name) {
    const IncomingFile incoming{node.pszDestination.c_str(), name, node.iSize, node.time};
    OpenedTarget opened = OpenReceiveTarget(job, incoming);
    while (opened.result == TargetResult::Failed && WantsRetry(job, TellLocalError(name, opened.error))) {
        opened = OpenReceiveTarget(job, incoming);
    }
    return opened;
}

// What becomes of an item for which there is no target.
ItemOutcome EndWithoutTarget(TransferJob& job, const OpenedTarget& opened, const std::string& name) {
    ItemOutcome outcome;
    outcome.told = true;
    switch (opened.result) {
        case TargetResult::Skipped:
            DoPrintIdArgs(MSG_LOCAL_FILE_KEPT, name);
            outcome.answer = BoxAnswer::No;
            outcome.code = FTP_COMPLETE;
            break;
        case TargetResult::Cancelled:
            job.Stop();
            break;
        default:
            outcome.localError = opened.error;
            outcome.code = CodeOfLocalError(opened.error);
    }
    return outcome;
}

ItemOutcome Fetch(TransferJob& job, const TransferNode& node, const std::string& name, char mode) {
    const OpenedTarget opened = OpenTarget(job, node, name);
    if (opened.result != TargetResult::Ready) return EndWithoutTarget(job, opened, name);
    ItemOutcome outcome;
    do {
        outcome = FetchOnce(job, node, opened.target, mode);
        if (outcome.code == FTP_COMPLETE) return outcome;
    } while (WantsRetry(job, outcome.answer) && !job.Stopped());
    DiscardReceiveTarget(opened.target);
    return outcome;
}

ItemOutcome GetFile(TransferJob& job, TransferNode& node) {
    SetDlgTransferingText(node.pszRemoteName.c_str());
    ShowItem(job, node);
    ItemOutcome outcome;
    std::string name;
    outcome.code = ChooseLocalName(job, node, name);
    if (outcome.code != FTP_COMPLETE) return outcome;
    const char mode = ModeFor(node.pszRemoteName.c_str());
    ShowMode(mode);
    outcome.code = EnterLocation(job, node);
    if (outcome.code == FTP_COMPLETE && job.Stopped()) outcome.code = FTP_ERROR;
    return outcome.code == FTP_COMPLETE ? Fetch(job, node, name, mode) : outcome;
}

void CountFailure(TransferJob& job, const TransferNode& node) {
    ++job.counters.failures;
    DoPrintIdArgs(MSG_NOT_RECEIVED, ShownName(node.pszRemoteName.view()));
}

// The process's current folder follows the folders that are made.
bool EnterDestination(TransferJob& job, const char* destination) {
    if (job.currentLocalFolder == destination) return true;
    while (!platform::SetCurrentFolder(destination)) {
        const std::uint32_t error = platform::LastSystemError();
        if (!WantsRetry(job, TransferDlgError(destination, kLocalFolderOption, error, nullptr))) return false;
    }
    job.currentLocalFolder = destination;
    return true;
}

// 0, or the system error. A folder that is there already is as good as a new one; a file in its place is not.
std::uint32_t MakeFolder(const std::string& path) {
    if (path.empty()) return platform::kErrorNameTooLong;
    if (platform::CreateFolder(path.c_str())) return 0;
    const std::uint32_t error = platform::LastSystemError();
    platform::FileInfo info;
    const bool exists = error == platform::kErrorAlreadyExists || error == platform::kErrorFileExists;
    if (exists && platform::GetFileInfo(path.c_str(), info) && info.isFolder) return 0;
    return error != 0 ? error : platform::kErrorAccessDenied;
}

}  // namespace

ItemOutcome GetItem(TransferJob& job, TransferNode& node) {
    SetProgressBar(0);
    const bool incomplete = node.pszRemoteName.empty() || node.pszLocation.empty() || node.pszDestination.empty();
    if (incomplete || job.site == nullptr || job.Stopped()) return FailItem(FTP_ERROR);
    ItemOutcome outcome;
    if ((node.NodeType & kNodeFile) != 0) {
        outcome = GetFile(job, node);
    } else {
        DbgVsprintf(kFuncName, "not a file:%s. Returning FALSE", node.pszRemoteName.c_str());
    }
    const bool done = outcome.code == FTP_COMPLETE;
    const bool kept = done && outcome.answer == BoxAnswer::No;
    SetProgressBar(done ? kBarEnd : 0);
    if (!done) CountFailure(job, node);
    if (done && !kept) CountFile(job);
    return outcome;
}

ItemOutcome CreateLocalFolder(TransferJob& job, TransferNode& node) {
    SetProgressBar(0);
    if (node.pszDestination.empty() || node.pszRemoteName.empty() || job.Stopped()) return FailItem(FTP_ERROR);
    const char* name = node.pszLocalName.empty() ? node.pszRemoteName.c_str() : node.pszLocalName.c_str();
    SetProgressBar(kBarStarted);
    SetDlgCreatingText(name);
    ShowItem(job, node);
    ShowMode('A');
    if (!EnterDestination(job, node.pszDestination.c_str())) return FailItem(FTP_ERROR);

    const std::string path = BoundedLocalPath(node.pszDestination.view(), SafeLocalName(name));
    while (const std::uint32_t error = MakeFolder(path)) {
        if (job.Stopped()) return FailItem(CodeOfLocalError(error));
        if (WantsRetry(job, TransferDlgError(name, kCreateFolderOption, error, nullptr))) continue;
        // Nothing that belongs in this folder could be stored.
        job.Stop();
        return FailItem(CodeOfLocalError(error));
    }
    CountFolder(job);
    SetProgressBar(kBarEnd);
    ItemOutcome outcome;
    outcome.code = FTP_COMPLETE;
    return outcome;
}

bool DlgGetFile(TransferNode* node, const std::atomic<bool>& abort) {
    return RunForNode(node, abort, GetItem);
}

bool DlgCreateDir(TransferNode* node, const std::atomic<bool>& abort) {
    return RunForNode(node, abort, CreateLocalFolder);
}
