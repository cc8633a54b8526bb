#include "transfer/transfer_run.h"

#include "foundation/catalogue.h"
#include "foundation/message_ids.h"
#include "foundation/trace.h"
#include "ftp/control/keep_alive.h"
#include "ftp/control/remote_commands.h"
#include "ftp/control/reply_buffer.h"
#include "ftp/worker/result_codes.h"
#include "ftp/worker/session_state.h"
#include "platform/files.h"
#include "platform/system.h"
#include "transfer/item_steps.h"
#include "transfer/transfer_errors.h"
#include "transfer/transfer_progress.h"
#include "transfer/transfer_view.h"

namespace {

bool EnterLocalFolder(TransferJob& job, const std::string& folder) {
    while (!platform::SetCurrentFolder(folder.c_str())) {
        const std::uint32_t error = platform::LastSystemError();
        if (!WantsRetry(job, TransferDlgError(folder.c_str(), kLocalFolderOption, error, nullptr))) return false;
    }
    job.currentLocalFolder = platform::CurrentFolder();
    return true;
}

}  // namespace

TransferRun::TransferRun(TransferJob& job) : job_(job), localBefore_(platform::CurrentFolder()) {
    job_.currentLocalFolder = localBefore_;
    SetTransferRunning(true);
}

TransferRun::~TransferRun() {
    GoBack();
    SetTransferRunning(false);
    gTransferView.closeDialog();
}

bool TransferRun::Start(const char* caller) {
    if (job_.site == nullptr || !ServerReadyForCmd(job_.site, true)) {
        DbgVsprintf(caller, "ERROR. Server NOT Ready.");
        return false;
    }
    remoteBefore_ = job_.site->pszCurrentDir.c_str();
    if (!job_.targetFolder.empty() && !EnterTarget()) return false;
    const bool sendsIntoTarget = job_.Direction() == TransferDirection::Upload && !job_.targetFolder.empty();
    job_.localStart = job_.currentLocalFolder;
    job_.remoteStart = sendsIntoTarget ? job_.targetFolder : remoteBefore_;
    job_.listedFolder = remoteBefore_;
    RefreshCountersText(job_.counters);
    gTransferView.showDialog();
    return true;
}

int TransferRun::Done() const {
    const TransferCounters& counters = job_.counters;
    const int done = counters.files + counters.folders;
    if (counters.failures > 0 && !job_.Stopped()) {
        const int all = done + counters.failures - counters.failedThoughDone;
        DoPrintIdArgs(MSG_ITEMS_FAILED, counters.failures, all);
    }
    return done;
}

bool TransferRun::EnterTarget() {
    if (job_.Direction() == TransferDirection::Download) return EnterLocalFolder(job_, job_.targetFolder);
    return EnterRemoteFolder(job_, "TransferRun", job_.targetFolder.c_str()) == FTP_COMPLETE;
}

void TransferRun::GoBack() {
    if (!remoteBefore_.empty() && HasControlSocket(job_.site) && !gSession.exiting &&
        job_.site->pszCurrentDir.view() != remoteBefore_) {
        char reply[kReplySize] = "";
        DoCWD(job_.site, remoteBefore_.c_str(), reply, true);
    }
    if (!localBefore_.empty()) platform::SetCurrentFolder(localBefore_.c_str());
}

int RunRunningJob(int (*run)(TransferJob& job)) {
    TransferJob* job = RunningJob();
    return job != nullptr ? run(*job) : kNothingDone;
}
