#include "transfer/transfer_job.h"

#include "ftp/worker/session_state.h"

namespace {

thread_local TransferJob* tRunningJob = nullptr;

}  // namespace

TransferDirection TransferJob::Direction() const {
    const bool sends = start == TransferStart::DropFiles || start == TransferStart::StandardInput;
    return sends ? TransferDirection::Upload : TransferDirection::Download;
}

bool TransferJob::Stopped() const {
    return StopRequested();
}

void TransferJob::Stop() {
    SetTransferAbort(true);
}

TransferJob* RunningJob() {
    return tRunningJob;
}

RunningJobScope::RunningJobScope(TransferJob& job) : before_(tRunningJob) {
    tRunningJob = &job;
}

RunningJobScope::~RunningJobScope() {
    tRunningJob = before_;
}
