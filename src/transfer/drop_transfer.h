// Uploads what was dropped or pasted, or named on standard input. Runs on the worker with the progress dialog open.
#pragma once

#include <atomic>

#include "transfer/transfer_job.h"

// Sends job.localPaths to the job's target folder or the current remote folder. Items done (folders plus files), or
// kNothingDone without a path or with the server not ready. Closes the dialog when done.
int SendDroppedFiles(TransferJob& job);
// The same for paths that may come from anywhere and may be relative to the current folder: all are stored in the
// current remote folder.
int SendNamedFiles(TransferJob& job);

// The same for the running job of this thread. The flag is the session's, which the job asks itself.
int Zarn_TransferDropFiles(const std::atomic<bool>& abort);
int Zarn_TransferStdInFiles(const std::atomic<bool>& abort);
