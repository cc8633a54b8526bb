#include "transfer/item_steps.h"

#include "config/file_types.h"
#include "config/settings.h"
#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/session_state.h"
#include "ftp/worker/session_view.h"
#include "listing/directory_entry.h"
#include "listing/lost_connection.h"
#include "transfer/transfer_errors.h"
#include "transfer/transfer_progress.h"

namespace {

constexpr std::size_t kLongestAnswer = 519;

}  // namespace

ItemOutcome FailItem(int code) {
    SetProgressBar(0);
    ItemOutcome outcome;
    outcome.code = code;
    return outcome;
}

bool RunForNode(TransferNode* node, const std::atomic<bool>& abort, ItemOutcome (*step)(TransferJob&, TransferNode&)) {
    TransferJob* job = RunningJob();
    const bool refused = node == nullptr || job == nullptr || abort;
    const int code = refused ? FailItem(FTP_ERROR).code : step(*job, *node).code;
    if (node != nullptr) node->iRetCode = code;
    return code == FTP_COMPLETE;
}

void CountFile(TransferJob& job) {
    ++job.counters.files;
    RefreshCountersText(job.counters);
}

void CountFolder(TransferJob& job) {
    ++job.counters.folders;
    RefreshCountersText(job.counters);
}

BoxAnswer ShowTransferBox(const OwnedText& text, BoxButtons buttons) {
    const OwnedText caption = Zarn_ResString(MSG_TRANSFER_ERROR_CAPTION);
    return ShowMessageBox(text.c_str(), caption.get(), buttons, BoxIcon::Exclamation);
}

const char* SiteName(const TransferJob& job) {
    return job.site != nullptr ? job.site->pszSessionName.c_str() : "";
}

bool WantsRetry(TransferJob& job, BoxAnswer answer) {
    if (answer == BoxAnswer::Abort) job.Stop();
    return answer == BoxAnswer::Retry;
}

char ModeFor(const char* fileName) {
    return gZarn.mode.useModeMapping != 0 ? GetTransferMode(fileName) : gZarn.mode.mode;
}

bool AskForName(TransferJob& job, unsigned captionId, unsigned promptId, std::string& name) {
    // Quirk: the field is prefilled with the site's name, too, kept. Left there, it is not part of the answer.
    const std::string prefix = std::string(SiteName(job)) + " : ";
    TextQuestion question;
    question.caption = CatalogueText(captionId);
    question.prompt = Zarn_ResVsprintf(promptId, ShownName(name)).c_str();
    question.longest = kLongestAnswer;
    std::string answer = prefix + name;
    if (!gSessionView.askText(question, answer)) {
        job.Stop();
        return false;
    }
    if (answer.starts_with(prefix)) answer.erase(0, prefix.size());
    if (!answer.empty()) name = answer;
    return true;
}

bool EndIfLost(TransferJob& job, const char* caller, int result, const char* reply) {
    if (!EndLostConnection(caller, job.site, result, reply)) return false;
    job.Stop();
    return true;
}

int EnterRemoteFolder(TransferJob& job, const char* caller, const char* path) {
    Site* site = job.site;
    while (site->pszCurrentDir.view() != path) {
        char reply[kReplySize] = "";
        const int result = ChkForRdir(site, path, false, nullptr, reply);
        // ChkForRdir succeeds for a folder that was made but cannot be entered; a file would be stored elsewhere.
        if (result == FTP_COMPLETE && site->pszCurrentDir.view() == path) break;
        DbgVsprintf(caller, "Call to ChkForRdir(%s) Failed. Returning FALSE", path);
        const int failure = result == FTP_COMPLETE ? FTP_ERROR : result;
        if (job.Stopped() || EndIfLost(job, caller, result, reply)) return failure;
        if (!WantsRetry(job, TransferDlgError(path, kRemoteFolderOption, 0, reply))) return failure;
    }
    return FTP_COMPLETE;
}

BoxAnswer TellTimeOut(const TransferJob& job, const char* name) {
    const OwnedText text = Zarn_ResVsprintf(MSG_BOX_TRANSFER_TIMED_OUT, ShownName(name), gZarn.port.timeout);
    const bool canGoOn = HasControlSocket(job.site);
    const BoxAnswer answer = ShowTransferBox(text, canGoOn ? BoxButtons::AbortRetryIgnore : BoxButtons::Ok);
    // The flag was set by the time-out; any other answer leaves it set.
    if (answer == BoxAnswer::Retry || answer == BoxAnswer::Ignore) SetTransferAbort(false);
    return answer;
}

BoxAnswer TellNetworkFailure(TransferJob& job, const FailedItem& item, const ItemOutcome& outcome) {
    if (StoppedByTimeOut()) return TellTimeOut(job, item.name);
    const char* reply = outcome.reply.c_str();
    if (job.Stopped() || EndIfLost(job, item.caller, outcome.code, reply)) return BoxAnswer::None;
    if (IsRefusal(reply)) return TransferDlgError(item.name, kRefusedOption, 0, reply);
    return ShowTransferBox(Zarn_ResVsprintf(item.incompleteId, ShownName(item.name)), BoxButtons::AbortRetryIgnore);
}
