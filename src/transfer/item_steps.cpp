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

BoxAnswer ShowTransferBox(const OwnedText& text, BoxButtons buttons) {
    const OwnedText caption = Zarn_ResString(MSG_TRANSFER_ERROR_CAPTION);
    return ShowMessageBox(text.c_str(), caption.get(), buttons, BoxIcon::Exclamation);
}

bool FailItem(TransferNode* node, int code) {
    if (node != nullptr) node->iRetCode = code;
    SetProgressBar(0);
    return false;
}

const char* SiteName(const Site* site) {
    return site != nullptr ? site->pszSessionName.c_str() : "";
}

bool WantsRetry(BoxAnswer answer, std::atomic<bool>& abort) {
    if (answer == BoxAnswer::Abort) abort = true;
    return answer == BoxAnswer::Retry;
}

void ShowMode(char mode) {
    if (gTransferView.setMode != nullptr) gTransferView.setMode(mode);
}

char ModeFor(const char* fileName) {
    return gZarn.mode.useModeMapping != 0 ? GetTransferMode(fileName) : gZarn.mode.mode;
}

bool AskForName(unsigned captionId, unsigned promptId, const Site* site, std::string& name, std::atomic<bool>& abort) {
    if (gSessionView.askText == nullptr) return true;
    // The field begins with the site's name, as wanted; left standing it is no part of the answer.
    const std::string prefix = std::string(SiteName(site)) + " : ";
    TextQuestion question;
    question.caption = CatalogueText(captionId);
    question.prompt = Zarn_ResVsprintf(promptId, ShownName(name)).c_str();
    question.longest = kLongestAnswer;
    std::string answer = prefix + name;
    if (!gSessionView.askText(question, answer)) {
        abort = true;
        return false;
    }
    if (answer.starts_with(prefix)) answer.erase(0, prefix.size());
    if (!answer.empty()) name = answer;
    return true;
}

bool EndIfLost(const char* caller, Site* site, int result, const char* reply, std::atomic<bool>& abort) {
    if (!EndLostConnection(caller, site, result, reply)) return false;
    abort = true;
    return true;
}

int EnterRemoteFolder(const char* caller, Site* site, const char* path, std::atomic<bool>& abort) {
    while (site->pszCurrentDir.view() != path) {
        char reply[kReplySize] = "";
        const int result = ChkForRdir(site, path, false, nullptr, reply);
        // A folder that was made but cannot be entered is a success there; a file would land elsewhere.
        if (result == FTP_COMPLETE && site->pszCurrentDir.view() == path) break;
        DbgVsprintf(caller, "Call to ChkForRdir(%s) Failed. Returning FALSE", path);
        const int failure = result == FTP_COMPLETE ? FTP_ERROR : result;
        if (abort || StopRequested() || EndIfLost(caller, site, result, reply, abort)) return failure;
        if (!WantsRetry(TransferDlgError(path, kRemoteFolderOption, 0, reply), abort)) return failure;
    }
    return FTP_COMPLETE;
}

BoxAnswer TellTimeOut(const Site* site, const char* name, std::atomic<bool>& abort) {
    const OwnedText text = Zarn_ResVsprintf(MSG_BOX_TRANSFER_TIMED_OUT, ShownName(name), gZarn.port.timeout);
    const bool canGoOn = HasControlSocket(site);
    const BoxAnswer answer = ShowTransferBox(text, canGoOn ? BoxButtons::AbortRetryIgnore : BoxButtons::Ok);
    const bool goesOn = answer == BoxAnswer::Retry || answer == BoxAnswer::Ignore;
    if (goesOn) SetTransferAbort(false);
    abort = !goesOn;
    return answer;
}

BoxAnswer TellNetworkFailure(const char* caller, Site* site, const char* name, int result, const char* reply,
                             unsigned incompleteId, std::atomic<bool>& abort) {
    if (StoppedByTimeOut()) return TellTimeOut(site, name, abort);
    if (abort || StopRequested() || EndIfLost(caller, site, result, reply, abort)) return BoxAnswer::None;
    if (IsRefusal(reply)) return TransferDlgError(name, kRefusedOption, 0, reply);
    return ShowTransferBox(Zarn_ResVsprintf(incompleteId, ShownName(name)), BoxButtons::AbortRetryIgnore);
}
