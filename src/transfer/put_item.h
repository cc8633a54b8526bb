// Uploads one local item while the progress dialog is open. Each failure is shown and counted here, once; the user's
// Abort ends the transfer. Not here: whole folders (local_tree_transfer.h).
#pragma once

#include <atomic>

#include "ftp/data/item_outcome.h"
#include "ftp/data/transfer_node.h"
#include "transfer/transfer_job.h"

// Sends a file to the folder node.pszDestination on the server, or hands a folder to PutFolder.
// Quirk: a file that failed counts both as done and as failed, kept.
ItemOutcome PutItem(TransferJob& job, TransferNode& node);
// True when the transfer is to go on without a file that failed: the user chose Ignore, or had nothing to choose.
bool GoesOnWithout(const TransferJob& job, const ItemOutcome& outcome);
// Makes the folder on the server and enters it; one that is there already is entered.
ItemOutcome PutFolder(TransferJob& job, TransferNode& node);

// The same for the running job of this thread; the code is also in node->iRetCode. True when it is FTP_COMPLETE.
bool DlgPutFile(TransferNode* node, const std::atomic<bool>& abort);
bool DlgPutDir(TransferNode* node, const std::atomic<bool>& abort);
