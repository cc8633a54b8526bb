// Uploads local files and folders: one item, or a folder's contents with all below, each folder before what it holds.
#pragma once

#include <atomic>

#include "platform/files.h"

// Sends one file, or makes one folder on the server; `found` stands in the folder `location`. True also for a file that
// the user chose to go on without. An item that lands in the folder that the list shows joins it.
bool TransferLocalFile(const char* location, const char* localStart, const char* remoteStart,
                       const platform::FileInfo* found, std::atomic<bool>& abort);
// Sends what stands in a folder, in the file system's order. Folders that are links to others are passed over: they may
// lead back. The result is that of the last item.
bool TransferLocalTree(const char* treePath, const char* localStart, const char* remoteStart, std::atomic<bool>& abort);
