// Moves one transfer node while the progress dialog is open. Each failure is told and counted here, once. The user's
// Abort sets the flag. Not here: whole trees and selections.
#pragma once

#include <atomic>

#include "config/site.h"
#include "ftp/data/transfer_node.h"

// Downloads a file into node.pszDestination: safe name, mode by type, temporary name, question before replacing, the
// time of the listing. A file that the user chose to keep counts neither as done nor as failed (true).
bool DlgGetFile(TransferNode* node, std::atomic<bool>& abort);
// Makes the local folder of a downloaded folder; a folder that cannot be made sets the abort flag.
bool DlgCreateDir(TransferNode* node, std::atomic<bool>& abort);
// Sends a file to the folder node.pszDestination, or hands a folder to DlgPutDir. A file that failed counts both as
// done and as failed. `ignored` (may be null): the user wants to go on without this file.
bool DlgPutFile(TransferNode* node, std::atomic<bool>& abort, bool* ignored = nullptr);
// Makes the folder on the server and enters it; one that is there already is entered.
bool DlgPutDir(TransferNode* node, std::atomic<bool>& abort);
