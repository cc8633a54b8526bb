#include "transfer/get_put.h"

#include <string>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_expansion.h"
#include "foundation/message_ids.h"
#include "foundation/text_helpers.h"
#include "foundation/trace.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reserved_names.h"
#include "ftp/data/data_connection.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "platform/files.h"
#include "platform/system.h"
#include "transfer/item_steps.h"
#include "transfer/local_names.h"
#include "transfer/receive_target.h"
#include "transfer/transfer_errors.h"
#include "transfer/transfer_progress.h"

namespace {

constexpr char kName[] = "DlgGetFile";
constexpr std::uint32_t kErrorHandleDiskFull = 39;
constexpr std::uint32_t kErrorNameTooLong = 206;

void ShowItem(const TransferNode& node, const Site* site) {
    SetDlgFromText(SiteName(site), node.pszLocation.c_str());
    SetDlgSendToText("", node.pszDestination.c_str());
    SetByteCountText(0, node.iSize);
}

// The name on the local disk; false for a name that is refused (reported).
bool ChooseLocalName(const Site* site, TransferNode& node, std::string& name, std::atomic<bool>& abort) {
    const std::string remote = DisplayName(node.pszRemoteName.view());
    std::string wanted = ConvertCase(remote, gZarn.mode.caseConversion);
    if (gZarn.mode.caseConversion == 0 && gZarn.PROMPT != 0 &&
        !AskForName(MSG_RECEIVE_REMOTE_FILE, MSG_ENTER_LOCAL_NAME, site, wanted, abort)) {
        node.iRetCode = FTP_ERROR;
        return false;
    }
    if (FileNameIsReserved(wanted.c_str())) {
        TransferDlgError(wanted.c_str(), kReservedOption, 0, nullptr);
        node.iRetCode = kReservedName;
        return false;
    }
    name = SafeLocalName(wanted);
    if (name != wanted) DoPrintIdArgs(MSG_UNSAFE_NAME_REPLACED, ShownName(wanted), name);
    if (name != node.pszRemoteName.view()) node.pszLocalName = OwnedText::Copy(name);
    return true;
}

// Makes the folder that holds the file the session's current one.
bool EnterLocation(Site* site, TransferNode& node, std::atomic<bool>& abort) {
    while (site->pszCurrentDir.empty() || site->pszCurrentDir.view() != node.pszLocation.view()) {
        DbgVsprintf(kName, "( changing remote dir \n    from %s\n    to %s", site->pszCurrentDir.c_str(),
                    node.pszLocation.c_str());
        char reply[kReplySize] = "";
        const int result = DoCWD(site, node.pszLocation.c_str(), reply, true);
        if (result == FTP_COMPLETE) return true;
        node.iRetCode = result;
        if (abort || StopRequested() || EndIfLost(kName, site, result, reply, abort)) return false;
        if (!WantsRetry(TransferDlgError(node.pszLocation.c_str(), kRemoteFolderOption, 0, reply), abort)) return false;
    }
    return true;
}

BoxAnswer ReportLocalError(const std::string& path, std::uint32_t error) {
    const bool diskFull = error == platform::kErrorDiskFull || error == kErrorHandleDiskFull;
    return TransferDlgError(path.c_str(), diskFull ? kDiskFullOption : kLocalFileOption, error, nullptr);
}

// The file bears the time that the listing shows, taken as local time. A disk that refuses it costs nothing.
void StampTime(const std::string& path, FileTime time) {
    if (time == 0) return;
    const platform::FileHandle file = platform::OpenFile(path.c_str(), {platform::FileAccess::Write});
    if (file == platform::kNoFile || !platform::SetFileWriteTime(file, time)) {
        DbgVsprintf(kName, "WARNING. The time of %s cannot be set", path.c_str());
    }
    if (file != platform::kNoFile) platform::CloseFile(file);
}

// One try to fetch the file into the target. True when it stands under its final name.
bool FetchOnce(Site* site, TransferNode& node, const ReceiveTarget& target, char mode, std::atomic<bool>& abort,
               BoxAnswer& answer) {
    answer = BoxAnswer::None;
    char reply[kReplySize] = "";
    const std::string command = "RETR " + DoublePercents(node.pszRemoteName.view());
    platform::SetLastSystemError(0);
    const int result = DlgRetrieveFile(site, node, reply, command.c_str(), target.temporaryPath.c_str(), mode, abort);
    const std::uint32_t localError = platform::LastSystemError();
    if (result == FTP_COMPLETE) {
        unsigned error = 0;
        StampTime(target.temporaryPath, node.time);
        if (CommitReceiveTarget(target, error)) return true;
        node.iRetCode = error == platform::kErrorAccessDenied ? kLocalAccessDenied : FTP_ERROR;
        answer = ReportLocalError(target.finalPath, error);
        return false;
    }
    if (node.iRetCode == FTP_COMPLETE) node.iRetCode = FTP_ERROR;
    if (localError != 0 && !abort && !StopRequested()) {
        answer = ReportLocalError(target.finalPath, localError);
    } else {
        answer = TellNetworkFailure(kName, site, node.pszRemoteName.c_str(), result, reply, MSG_BOX_FILE_NOT_COMPLETE,
                                    abort);
    }
    return false;
}

// False when there is no target: `node.iRetCode` is 2 then if the user keeps the file that is there.
bool OpenTarget(TransferNode& node, const std::string& name, ReceiveTarget& target, std::atomic<bool>& abort) {
    while (true) {
        unsigned error = 0;
        switch (OpenReceiveTarget(node.pszDestination.c_str(), name, gTransfer.replaceAll, target, error,
                                  {node.iSize, node.time})) {
            case TargetResult::Ready:
                return true;
            case TargetResult::Skipped:
                DoPrintIdArgs(MSG_LOCAL_FILE_KEPT, name);
                node.iRetCode = FTP_COMPLETE;
                return false;
            case TargetResult::Cancelled:
                abort = true;
                node.iRetCode = FTP_ERROR;
                return false;
            case TargetResult::Failed:
                node.iRetCode = error == platform::kErrorAccessDenied ? kLocalAccessDenied : FTP_ERROR;
                if (!WantsRetry(ReportLocalError(name, error), abort)) return false;
                break;
        }
    }
}

enum class Fetched { Done, Kept, Failed };

Fetched Fetch(Site* site, TransferNode& node, const std::string& name, char mode, std::atomic<bool>& abort) {
    ReceiveTarget target;
    if (!OpenTarget(node, name, target, abort)) {
        return node.iRetCode == FTP_COMPLETE ? Fetched::Kept : Fetched::Failed;
    }
    BoxAnswer answer = BoxAnswer::None;
    do {
        if (FetchOnce(site, node, target, mode, abort, answer)) return Fetched::Done;
    } while (WantsRetry(answer, abort) && !abort);
    DiscardReceiveTarget(target);
    return Fetched::Failed;
}

Fetched GetFile(Site* site, TransferNode& node, std::atomic<bool>& abort) {
    SetDlgTransferingText(node.pszRemoteName.c_str());
    ShowItem(node, site);
    std::string name;
    if (!ChooseLocalName(site, node, name, abort)) return Fetched::Failed;
    const char mode = ModeFor(node.pszRemoteName.c_str());
    ShowMode(mode);
    if (!EnterLocation(site, node, abort)) return Fetched::Failed;
    if (abort) {
        node.iRetCode = FTP_ERROR;
        return Fetched::Failed;
    }
    return Fetch(site, node, name, mode, abort);
}

void CountFailure(const TransferNode& node) {
    ++gTransfer.counters.failures;
    DoPrintIdArgs(MSG_NOT_RECEIVED, ShownName(node.pszRemoteName.view()));
}

// The process's current folder follows the folders that are made.
bool EnterDestination(TransferNode& node, std::atomic<bool>& abort) {
    const char* destination = node.pszDestination.c_str();
    if (gTransfer.currentLocalFolder == destination) return true;
    while (!platform::SetCurrentFolder(destination)) {
        const std::uint32_t error = platform::LastSystemError();
        if (WantsRetry(TransferDlgError(destination, kLocalFolderOption, error, nullptr), abort)) continue;
        return false;
    }
    gTransfer.currentLocalFolder = destination;
    return true;
}

// 0, or the system error. A folder that is there already is as good as a new one; a file in its place is not.
std::uint32_t MakeFolder(const std::string& path) {
    if (path.empty()) return kErrorNameTooLong;
    if (platform::CreateFolder(path.c_str())) return 0;
    const std::uint32_t error = platform::LastSystemError();
    platform::FileInfo info;
    const bool exists = error == platform::kErrorAlreadyExists || error == platform::kErrorFileExists;
    if (exists && platform::GetFileInfo(path.c_str(), info) && info.isFolder) return 0;
    return error != 0 ? error : platform::kErrorAccessDenied;
}

}  // namespace

bool DlgGetFile(TransferNode* node, std::atomic<bool>& abort) {
    SetProgressBar(0);
    Site* site = gSession.activeSite;
    if (node == nullptr || site == nullptr || node->pszRemoteName.empty() || node->pszLocation.empty() ||
        node->pszDestination.empty() || abort) {
        return FailItem(node, FTP_ERROR);
    }
    if ((node->NodeType & kNodeFile) == 0) {
        DbgVsprintf(kName, "not a file:%s. Returning FALSE", node->pszRemoteName.c_str());
        CountFailure(*node);
        return FailItem(node, FTP_ERROR);
    }
    const Fetched fetched = GetFile(site, *node, abort);
    if (fetched == Fetched::Failed) {
        CountFailure(*node);
        return FailItem(node, node->iRetCode);
    }
    SetProgressBar(kBarEnd);
    if (fetched == Fetched::Done) {
        ++gTransfer.counters.files;
        RefreshCountersText();
    }
    return true;
}

bool DlgCreateDir(TransferNode* node, std::atomic<bool>& abort) {
    SetProgressBar(0);
    if (node == nullptr || node->pszDestination.empty() || node->pszRemoteName.empty() || abort) {
        return FailItem(node, FTP_ERROR);
    }
    const char* name = node->pszLocalName.empty() ? node->pszRemoteName.c_str() : node->pszLocalName.c_str();
    SetProgressBar(kBarStarted);
    SetDlgCreatingText(name);
    ShowItem(*node, gSession.activeSite);
    ShowMode('A');
    if (!EnterDestination(*node, abort)) return FailItem(node, FTP_ERROR);

    const std::string path = BoundedLocalPath(node->pszDestination.view(), SafeLocalName(name));
    while (const std::uint32_t error = MakeFolder(path)) {
        node->iRetCode = error == platform::kErrorAccessDenied ? kLocalAccessDenied : FTP_ERROR;
        if (abort) return FailItem(node, node->iRetCode);
        if (WantsRetry(TransferDlgError(name, kCreateFolderOption, error, nullptr), abort)) continue;
        // Nothing that belongs into this folder could be stored.
        abort = true;
        return FailItem(node, node->iRetCode);
    }
    ++gTransfer.counters.folders;
    RefreshCountersText();
    SetProgressBar(kBarEnd);
    node->iRetCode = FTP_COMPLETE;
    return true;
}
