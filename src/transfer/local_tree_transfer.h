// Uploads local files and folders: one item, or what is in a folder with all below, each folder before its contents.
// Not here: which items (drop_transfer.h).
#pragma once

#include <atomic>
#include <string>

#include "platform/files.h"
#include "transfer/transfer_job.h"

// Sends one file, or makes one folder on the server; `found` is in the folder `location`. Destinations are worked out
// from the job's start folders. True also for a file that the user chose to go on without. An item that is stored in
// the folder that the list shows joins the list.
bool SendLocalItem(TransferJob& job, const std::string& location, const platform::FileInfo& found);
// Sends what is in a folder, in the file system's order. Folders that are links to others are left out: they may lead
// back. The result is that of the last item.
bool SendLocalTree(TransferJob& job, const std::string& treePath);

// The same for the running job of this thread, which gets the start folders.
bool TransferLocalFile(const char* location, const char* localStart, const char* remoteStart,
                       const platform::FileInfo* found, const std::atomic<bool>& abort);
bool TransferLocalTree(const char* treePath, const char* localStart, const char* remoteStart,
                       const std::atomic<bool>& abort);
