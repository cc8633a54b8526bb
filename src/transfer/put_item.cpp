#include "transfer/put_item.h"

#include <string>
#include <string_view>

#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/foundation_view.h"
#include "foundation/message_ids.h"
#include "foundation/path_join.h"
#include "foundation/trace.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/data/data_send.h"
#include "listing/directory_entry.h"
#include "listing/dot_entries.h"
#include "platform/utf8.h"
#include "transfer/item_steps.h"
#include "transfer/local_names.h"
#include "transfer/transfer_errors.h"
#include "transfer/transfer_progress.h"

namespace {

constexpr char kFuncName[] = "DlgPutFile";
constexpr std::size_t kLongestRemoteName = 519;

const char* NameToSend(const TransferNode& node) {
    return node.pszRemoteName.empty() ? node.pszLocalName.c_str() : node.pszRemoteName.c_str();
}

void CountFailure(TransferJob& job, const TransferNode& node) {
    ++job.counters.failures;
    DoPrintIdArgs(MSG_NOT_SENT, ShownName(node.pszLocalName.view()));
}

// A line end within a name would end the command; "." and ".." are other folders.
bool CanBeSent(std::string_view name) {
    if (name.empty() || IsDotEntry(name)) return false;
    return name.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

BoxAnswer RefuseName(const TransferNode& node) {
    const OwnedText text = Zarn_ResVsprintf(MSG_BOX_UNSENDABLE_NAME, ShownName(NameToSend(node)));
    ShowTransferBox(text, BoxButtons::Ok);
    return BoxAnswer::Ok;
}

void ShowItem(const TransferJob& job, const TransferNode& node) {
    SetDlgFromText("", node.pszLocation.c_str());
    SetDlgSendToText(SiteName(job), node.pszDestination.c_str());
    SetByteCountText(0, node.iSize);
}

bool IsFile(const TransferNode& node) {
    return node.NodeType != 0 && (node.NodeType & (kNodeSiteRoot | kNodeFolder)) == 0;
}

std::string ConvertName(std::string_view local) {
    const std::string name(platform::CutUtf8(local, kLongestRemoteName));
    const int conversion = gZarn.mode.caseConversion;
    if (conversion == 1) {
        DbgVsprintf(kFuncName, "CONVERT_TOUPPER:%s", name.c_str());
    } else if (conversion == 2) {
        DbgVsprintf(kFuncName, "CONVERT_TOLOWER:%s", name.c_str());
    } else {
        DbgVsprintf(kFuncName, "No Case Conversion:%s", name.c_str());
    }
    return ConvertCase(name, conversion);
}

// Chooses the name on the server; false when the user does not want to go on.
bool ChooseRemoteName(TransferJob& job, TransferNode& node) {
    std::string name = ConvertName(node.pszLocalName.view());
    if (gZarn.mode.caseConversion == 0 && gZarn.PROMPT != 0 &&
        !AskForName(job, MSG_SEND_LOCAL_FILE, MSG_ENTER_REMOTE_NAME, name)) {
        return false;
    }
    if (name != node.pszLocalName.view()) node.pszRemoteName = OwnedText::Copy(name);
    return true;
}

// One try. A failure has been shown, with the user's answer in the outcome.
ItemOutcome SendOnce(TransferJob& job, TransferNode& node, char mode) {
    ItemOutcome outcome = SendItem(job.site, node, mode);
    if (outcome.code == FTP_COMPLETE || outcome.told) return outcome;
    const char* name = node.pszLocalName.c_str();
    if (outcome.localError != 0 && !job.Stopped()) {
        outcome.answer = TransferDlgError(name, kLocalErrorOption, outcome.localError, nullptr);
    } else {
        outcome.answer = TellNetworkFailure(job, {kFuncName, name, MSG_BOX_FILE_NOT_SENT_WHOLE}, outcome);
    }
    outcome.told = true;
    return outcome;
}

ItemOutcome Send(TransferJob& job, TransferNode& node, char mode) {
    ItemOutcome outcome = SendOnce(job, node, mode);
    while (outcome.code != FTP_COMPLETE && WantsRetry(job, outcome.answer) && !job.Stopped()) {
        outcome = SendOnce(job, node, mode);
    }
    if (outcome.code != FTP_COMPLETE) {
        ++job.counters.failedThoughDone;
        CountFailure(job, node);
    }
    // Quirk: the bar ends empty, and a failed upload counts as done, too, kept.
    SetProgressBar(0);
    CountFile(job);
    return outcome;
}

ItemOutcome FailFile(TransferJob& job, const TransferNode& node, int code, BoxAnswer answer = BoxAnswer::None) {
    CountFailure(job, node);
    ItemOutcome outcome;
    outcome.code = code;
    outcome.answer = answer;
    outcome.told = true;
    return outcome;
}

ItemOutcome PutFile(TransferJob& job, TransferNode& node) {
    SetDlgTransferingText(node.pszLocalName.c_str());
    DbgVsprintf(kFuncName, "Sending %s (%d bytes) to %s", node.pszLocalName.c_str(), static_cast<int>(node.iSize),
                node.pszDestination.c_str());
    if (!ChooseRemoteName(job, node)) return FailFile(job, node, FTP_ERROR);
    if (!CanBeSent(NameToSend(node))) return FailFile(job, node, FTP_ERROR, RefuseName(node));
    const char mode = ModeFor(node.pszLocalName.c_str());
    ShowMode(mode);
    const int entered = EnterRemoteFolder(job, kFuncName, node.pszDestination.c_str());
    return entered == FTP_COMPLETE ? Send(job, node, mode) : FailFile(job, node, entered);
}

// For a server that says in other words than the known ones that there is no such folder. The last command's result.
int MakeAndEnter(Site* site, const std::string& path, ReplyBuffer reply) {
    const int made = DoMKD(site, path.c_str(), reply);
    return made == FTP_COMPLETE ? DoCWD(site, path.c_str(), reply, true) : made;
}

int MakeRemoteFolder(TransferJob& job, const TransferNode& node) {
    const char* name = NameToSend(node);
    std::string parent(node.pszDestination.view());
    const std::string path = JoinRemotePath(parent.empty() ? "/" : parent, name, '/');
    // ChkForRdir puts a "/" of its own between the two.
    if (parent.ends_with('/')) parent.pop_back();
    while (true) {
        char reply[kReplySize] = "";
        int result = ChkForRdir(job.site, name, true, parent.c_str(), reply);
        if (result == kFileUnavailable && reply[0] != '\0') result = MakeAndEnter(job.site, path, reply);
        // Made, but not entered: what belongs in it would be stored elsewhere.
        if (result == FTP_COMPLETE && job.site->pszCurrentDir.view() != path) result = FTP_ERROR;
        if (result == FTP_COMPLETE) return result;
        if (job.Stopped() || EndIfLost(job, "DlgPutDir", result, reply)) return result;
        if (!WantsRetry(job, TransferDlgError(path.c_str(), kMakeRemoteFolderOption, 0, reply))) return result;
    }
}

}  // namespace

ItemOutcome PutItem(TransferJob& job, TransferNode& node) {
    SetProgressBar(0);
    const bool incomplete = node.pszLocalName.empty() || node.pszLocation.empty() || node.pszDestination.empty();
    if (incomplete || job.site == nullptr || job.Stopped()) return FailItem(FTP_ERROR);
    ShowItem(job, node);
    if (IsFile(node)) return PutFile(job, node);
    SetDlgCreatingText(node.pszLocalName.c_str());
    return PutFolder(job, node);
}

bool GoesOnWithout(const TransferJob& job, const ItemOutcome& outcome) {
    const bool goesOn = outcome.answer == BoxAnswer::Ignore || outcome.answer == BoxAnswer::Ok;
    return goesOn && outcome.code != FTP_COMPLETE && !job.Stopped();
}

ItemOutcome PutFolder(TransferJob& job, TransferNode& node) {
    SetProgressBar(0);
    if (node.pszLocalName.empty() || node.pszLocation.empty() || job.site == nullptr || job.Stopped()) {
        return FailItem(FTP_ERROR);
    }
    SetProgressBar(kBarStarted);
    SetProgressBar(kBarHalf);
    // No answer goes into the outcome: without the folder there is no place for what is in it.
    ItemOutcome outcome;
    outcome.told = true;
    if (CanBeSent(NameToSend(node))) {
        outcome.code = MakeRemoteFolder(job, node);
    } else {
        RefuseName(node);
    }
    const bool done = outcome.code == FTP_COMPLETE;
    done ? CountFolder(job) : CountFailure(job, node);
    SetProgressBar(done ? kBarEnd : 0);
    return outcome;
}

bool DlgPutFile(TransferNode* node, const std::atomic<bool>& abort) {
    return RunForNode(node, abort, PutItem);
}

bool DlgPutDir(TransferNode* node, const std::atomic<bool>& abort) {
    return RunForNode(node, abort, PutFolder);
}
