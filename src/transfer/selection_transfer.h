// Downloads what the user selected. Runs on the worker with the progress dialog open; the selection is copied before.
#pragma once

#include <atomic>
#include <vector>

#include "listing/directory_entry.h"
#include "transfer/transfer_job.h"

// The list's selected entries, in list order, with the folder that the list shows. It differs from the session's
// current one after a listing that failed: the list then still shows the folder before. Empty when no entry tells.
std::vector<RemoteItem> ItemsOf(const std::vector<const LVobject*>& entries);
// The tree's selected node; nothing unless it is a root or a folder on the server. Null is accepted.
std::vector<RemoteItem> ItemsOf(const TVobject* node);

// Downloads job.remoteItems. Items done (folders plus files), or kNothingDone without an item or with the server not
// ready. Closes the dialog when done.
int ReceiveListItems(TransferJob& job);
int ReceiveTreeItem(TransferJob& job);

// The same for the running job of this thread. The flag is the session's, which the job asks itself.
int Zarn_TransferLVitems(const std::atomic<bool>& abort);
int Zarn_TransferTVitem(const std::atomic<bool>& abort);
