// The frame around a transfer of several items: notes where both sides are, shows the dialog, and at the end brings
// both sides back and closes the dialog. Not here: what is transferred.
#pragma once

#include <string>

#include "transfer/transfer_job.h"

// What an entry point returns when it could not begin.
inline constexpr int kNothingDone = -1;

class TransferRun {
  public:
    explicit TransferRun(TransferJob& job);
    ~TransferRun();
    TransferRun(const TransferRun&) = delete;
    TransferRun& operator=(const TransferRun&) = delete;

    // Makes the job's target folder the current one of the receiving side and sets both start folders. False (shown)
    // when that or the server fails.
    bool Start(const char* caller);
    // Folders and files done; prints the failures unless the transfer was stopped.
    int Done() const;

  private:
    bool EnterTarget();
    void GoBack();

    TransferJob& job_;
    std::string localBefore_;
    std::string remoteBefore_;
};

// Runs this thread's job; kNothingDone when there is none.
int RunRunningJob(int (*run)(TransferJob& job));
