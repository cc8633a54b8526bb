// Downloads a remote folder and all below it: depth first, in the server's listing order.
#pragma once

#include <atomic>

#include "ftp/data/transfer_node.h"
#include "transfer/transfer_job.h"

// The folder is node.pszRemoteName in node.pszLocation; a site's root has its path in both. Destinations are worked out
// from the job's start folders. False when the folder could not be walked, or the last of its folders could not.
bool GetTree(TransferJob& job, TransferNode& node);
// The same for the running job of this thread, which gets the start folders.
bool TransferRemoteTree(TransferNode* node, const char* localStart, const char* remoteStart,
                        const std::atomic<bool>& abort);
