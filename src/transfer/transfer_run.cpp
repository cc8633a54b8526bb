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
#include "transfer/receive_target.h"
#include "transfer/transfer_errors.h"
#include "transfer/transfer_progress.h"

namespace {

bool EnterLocalFolder(const std::string& folder, std::atomic<bool>& abort) {
    while (!platform::SetCurrentFolder(folder.c_str())) {
        const std::uint32_t error = platform::LastSystemError();
        if (!WantsRetry(TransferDlgError(folder.c_str(), kLocalFolderOption, error, nullptr), abort)) return false;
    }
    gTransfer.currentLocalFolder = platform::CurrentFolder();
    return true;
}

}  // namespace

TransferRun::TransferRun(TransferDirection direction) : direction_(direction), site_(gSession.activeSite) {
    ResetTransfer();
    ForgetReceivedFiles();
    localBefore_ = gTransfer.currentLocalFolder;
    gTransfer.running = true;
}

TransferRun::~TransferRun() {
    GoBack();
    gTransfer.running = false;
    if (gTransferView.closeDialog != nullptr) gTransferView.closeDialog();
}

bool TransferRun::Start(const char* caller, std::atomic<bool>& abort) {
    if (site_ == nullptr || !ServerReadyForCmd(site_, true)) {
        DbgVsprintf(caller, "ERROR. Server NOT Ready.");
        return false;
    }
    remoteBefore_ = site_->pszCurrentDir.c_str();
    const std::string target = gTransferView.dropTarget != nullptr ? gTransferView.dropTarget() : std::string();
    if (!target.empty() && !EnterTarget(target, abort)) return false;
    localStart_ = gTransfer.currentLocalFolder;
    remoteStart_ = direction_ == TransferDirection::Upload && !target.empty() ? target : remoteBefore_;
    gTransfer.listedFolder = remoteBefore_;
    if (gTransferView.showDialog != nullptr) gTransferView.showDialog();
    RefreshCountersText();
    return true;
}

int TransferRun::Done(const std::atomic<bool>& abort) const {
    const TransferCounters& counters = gTransfer.counters;
    const int done = counters.files + counters.folders;
    if (counters.failures > 0 && !abort) {
        const int all = done + counters.failures - counters.failedThoughDone;
        DoPrintIdArgs(MSG_ITEMS_FAILED, counters.failures, all);
    }
    return done;
}

bool TransferRun::EnterTarget(const std::string& target, std::atomic<bool>& abort) {
    if (direction_ == TransferDirection::Download) return EnterLocalFolder(target, abort);
    return EnterRemoteFolder("TransferRun", site_, target.c_str(), abort) == FTP_COMPLETE;
}

void TransferRun::GoBack() {
    if (!remoteBefore_.empty() && HasControlSocket(site_) && !gSession.exiting &&
        site_->pszCurrentDir.view() != remoteBefore_) {
        char reply[kReplySize] = "";
        DoCWD(site_, remoteBefore_.c_str(), reply, true);
    }
    if (!localBefore_.empty()) platform::SetCurrentFolder(localBefore_.c_str());
}
