#include <string>
#include <string_view>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/data_connection.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "transfer/get_put.h"
#include "transfer/item_steps.h"
#include "transfer/local_names.h"
#include "transfer/transfer_errors.h"
#include "transfer/transfer_progress.h"

namespace {

constexpr char kName[] = "DlgPutFile";
constexpr std::size_t kLongestRemoteName = 519;

const char* NameToSend(const TransferNode& node) {
    return node.pszRemoteName.empty() ? node.pszLocalName.c_str() : node.pszRemoteName.c_str();
}

void CountFailure(const TransferNode& node) {
    ++gTransfer.counters.failures;
    DoPrintIdArgs(MSG_NOT_SENT, ShownName(node.pszLocalName.view()));
}

// A line end within a name would end the command; "." and ".." name other things.
bool CanBeSent(std::string_view name) {
    if (name.empty() || name == "." || name == "..") return false;
    return name.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

bool RefuseName(TransferNode& node) {
    const OwnedText text = Zarn_ResVsprintf(MSG_BOX_UNSENDABLE_NAME, ShownName(NameToSend(node)));
    ShowTransferBox(text, BoxButtons::Ok);
    node.iRetCode = FTP_ERROR;
    return false;
}

void ShowItem(const TransferNode& node, const Site* site) {
    SetDlgFromText("", node.pszLocation.c_str());
    SetDlgSendToText(SiteName(site), node.pszDestination.c_str());
    SetByteCountText(0, node.iSize);
}

bool IsFile(const TransferNode& node) {
    return node.NodeType != 0 && (node.NodeType & (kNodeSiteRoot | kNodeFolder)) == 0;
}

std::string ConvertName(std::string_view local) {
    const std::string name(CutWhole(local, kLongestRemoteName));
    const int conversion = gZarn.mode.caseConversion;
    if (conversion == 1) {
        DbgVsprintf(kName, "CONVERT_TOUPPER:%s", name.c_str());
    } else if (conversion == 2) {
        DbgVsprintf(kName, "CONVERT_TOLOWER:%s", name.c_str());
    } else {
        DbgVsprintf(kName, "No Case Conversion:%s", name.c_str());
    }
    return ConvertCase(name, conversion);
}

// The name on the server; false when the user does not want to go on.
bool ChooseRemoteName(const Site* site, TransferNode& node, std::atomic<bool>& abort) {
    std::string name = ConvertName(node.pszLocalName.view());
    if (gZarn.mode.caseConversion == 0 && gZarn.PROMPT != 0 &&
        !AskForName(MSG_SEND_LOCAL_FILE, MSG_ENTER_REMOTE_NAME, site, name, abort)) {
        return false;
    }
    if (name != node.pszLocalName.view()) node.pszRemoteName = OwnedText::Copy(name);
    return true;
}

enum class Put { Sent, Ignored, Failed };

// One try. `answer` is the user's choice after a failure that he was told.
Put SendOnce(Site* site, TransferNode& node, char mode, std::atomic<bool>& abort, BoxAnswer& answer) {
    char reply[kReplySize] = "";
    SendFailure failure;
    if (DlgSendFile(site, node, reply, mode, abort, &failure)) return Put::Sent;
    const char* name = node.pszLocalName.c_str();
    if (failure.told) {
        answer = failure.answer;
    } else if (failure.localError != 0 && !abort && !StopRequested()) {
        answer = TransferDlgError(name, kLocalErrorOption, failure.localError, nullptr);
    } else {
        answer = TellNetworkFailure(kName, site, name, node.iRetCode, reply, MSG_BOX_FILE_NOT_SENT_WHOLE, abort);
    }
    // Ok: there was nothing to choose, and the connection is in order.
    const bool goesOn = answer == BoxAnswer::Ignore || answer == BoxAnswer::Ok;
    return goesOn && !abort ? Put::Ignored : Put::Failed;
}

Put Send(Site* site, TransferNode& node, char mode, std::atomic<bool>& abort) {
    Put result = Put::Failed;
    BoxAnswer answer = BoxAnswer::None;
    do {
        answer = BoxAnswer::None;
        result = SendOnce(site, node, mode, abort, answer);
    } while (result == Put::Failed && WantsRetry(answer, abort) && !abort);
    if (result != Put::Sent) {
        ++gTransfer.counters.failedThoughDone;
        CountFailure(node);
    }
    SetProgressBar(0);
    // A failed upload counts as done too, and the bar ends empty: both wanted.
    ++gTransfer.counters.files;
    RefreshCountersText();
    return result;
}

Put PutFile(Site* site, TransferNode& node, std::atomic<bool>& abort) {
    SetDlgTransferingText(node.pszLocalName.c_str());
    DbgVsprintf(kName, "Sending %s (%d bytes) to %s", node.pszLocalName.c_str(), static_cast<int>(node.iSize),
                node.pszDestination.c_str());
    node.iRetCode = FTP_ERROR;
    if (!ChooseRemoteName(site, node, abort)) {
        CountFailure(node);
        return Put::Failed;
    }
    if (!CanBeSent(NameToSend(node))) {
        RefuseName(node);
        CountFailure(node);
        return Put::Ignored;
    }
    const char mode = ModeFor(node.pszLocalName.c_str());
    ShowMode(mode);
    const int entered = EnterRemoteFolder(kName, site, node.pszDestination.c_str(), abort);
    if (entered != FTP_COMPLETE) {
        node.iRetCode = entered;
        CountFailure(node);
        return Put::Failed;
    }
    return Send(site, node, mode, abort);
}

// A server that says in other words than the known ones that there is no such folder. The result of the last command.
int MakeAndEnter(Site* site, const std::string& path, ReplyBuffer reply) {
    const int made = DoMKD(site, path.c_str(), reply);
    return made == FTP_COMPLETE ? DoCWD(site, path.c_str(), reply, true) : made;
}

int MakeRemoteFolder(Site* site, const TransferNode& node, std::atomic<bool>& abort) {
    std::string parent(node.pszDestination.view());
    // The folder's path is made with a "/" of its own.
    if (parent.ends_with('/')) parent.pop_back();
    const std::string path = parent + "/" + NameToSend(node);
    while (true) {
        char reply[kReplySize] = "";
        int result = ChkForRdir(site, NameToSend(node), true, parent.c_str(), reply);
        if (result == kFileUnavailable && reply[0] != '\0') result = MakeAndEnter(site, path, reply);
        // Made, but not entered: what belongs into it would land elsewhere.
        if (result == FTP_COMPLETE && site->pszCurrentDir.view() != path) result = FTP_ERROR;
        if (result == FTP_COMPLETE) return result;
        if (abort || StopRequested() || EndIfLost("DlgPutDir", site, result, reply, abort)) return result;
        if (!WantsRetry(TransferDlgError(path.c_str(), kMakeRemoteFolderOption, 0, reply), abort)) return result;
    }
}

}  // namespace

bool DlgPutFile(TransferNode* node, std::atomic<bool>& abort, bool* ignored) {
    if (ignored != nullptr) *ignored = false;
    SetProgressBar(0);
    Site* site = gSession.activeSite;
    if (node == nullptr || site == nullptr || node->pszLocalName.empty() || node->pszLocation.empty() ||
        node->pszDestination.empty() || abort) {
        return FailItem(node, FTP_ERROR);
    }
    ShowItem(*node, site);
    if (!IsFile(*node)) {
        SetDlgCreatingText(node->pszLocalName.c_str());
        return DlgPutDir(node, abort);
    }
    const Put result = PutFile(site, *node, abort);
    if (ignored != nullptr) *ignored = result == Put::Ignored;
    return result == Put::Sent;
}

bool DlgPutDir(TransferNode* node, std::atomic<bool>& abort) {
    SetProgressBar(0);
    Site* site = gSession.activeSite;
    if (node == nullptr || site == nullptr || node->pszLocalName.empty() || node->pszLocation.empty() || abort) {
        return FailItem(node, FTP_ERROR);
    }
    SetProgressBar(kBarStarted);
    SetProgressBar(kBarHalf);
    if (CanBeSent(NameToSend(*node))) {
        node->iRetCode = MakeRemoteFolder(site, *node, abort);
    } else {
        RefuseName(*node);
    }
    if (node->iRetCode != FTP_COMPLETE) {
        CountFailure(*node);
        return FailItem(node, node->iRetCode);
    }
    ++gTransfer.counters.folders;
    RefreshCountersText();
    SetProgressBar(kBarEnd);
    return true;
}
