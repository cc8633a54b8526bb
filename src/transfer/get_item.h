// Downloads one item of the server while the progress dialog is open. Each failure is shown and counted here, once; the
// user's Abort ends the transfer. Not here: whole trees (tree_transfer.h) and where a file is stored
// (receive_target.h).
#pragma once

#include <atomic>

#include "ftp/data/item_outcome.h"
#include "ftp/data/transfer_node.h"
#include "transfer/transfer_job.h"

// Downloads a file into node.pszDestination: safe name, mode by type, temporary name, question before replacing, the
// time of the listing. A file that the user chose to keep (answer No) counts neither as done nor as failed.
ItemOutcome GetItem(TransferJob& job, TransferNode& node);
// Makes the local folder of a downloaded folder; a folder that cannot be made ends the transfer.
ItemOutcome CreateLocalFolder(TransferJob& job, TransferNode& node);

// The same for the running job of this thread; the code is also in node->iRetCode. True when it is FTP_COMPLETE.
bool DlgGetFile(TransferNode* node, const std::atomic<bool>& abort);
bool DlgCreateDir(TransferNode* node, const std::atomic<bool>& abort);
