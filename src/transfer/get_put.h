// Moves one transfer node while the progress dialog is open.
#pragma once

#include <atomic>

#include "config/site.h"
#include "ftp/transfer_node.h"

// Downloads a file into node.pszDestination: safe name, mode by type, temporary name, question before replacing. A file
// that the user chose to keep counts neither as done nor as failed (true); each failure is counted here, once. The
// user's Abort sets the flag.
bool DlgGetFile(TransferNode* node, std::atomic<bool>& abort);
// Makes the local folder of a downloaded folder; a folder that cannot be made sets the abort flag.
bool DlgCreateDir(TransferNode* node, std::atomic<bool>& abort);
