// One transfer as a value: what is moved, from where to where, and how far it has come. The window's thread makes it,
// the worker owns it while it runs. Not here: how an item is moved (get_item.h, put_item.h) or shown
// (transfer_progress.h).
#pragma once

#include <cstdint>
#include <string>
#include <unordered_set>
#include <vector>

#include "config/site.h"
#include "foundation/file_time.h"
#include "listing/item_kind.h"

// What the progress dialog's worker runs.
enum class TransferStart { DropFiles = 0, None = 1, ListSelection = 3, StandardInput = 4, TreeSelection = 5 };
enum class TransferDirection { Download, Upload };

// A selected item of the server, by value: the list and the tree may change while the worker runs.
struct RemoteItem {
    std::string name;  // as the server sent it; a site's root has its path here, too
    std::uint32_t kind = kKindFile;
    std::uint32_t size = 0;  // bytes, as the listing said
    FileTime time = 0;       // local time, as the listing said; 0 when unknown
    std::string folder;      // path of the folder that holds it; empty: the session's current one
};

struct TransferCounters {
    int folders = 0;
    int files = 0;
    int failures = 0;
    int failedThoughDone = 0;  // uploads that count in both
};

struct TransferJob {
    // Filled in by whoever starts the transfer.
    Site* site = nullptr;  // not owned
    TransferStart start = TransferStart::None;
    std::vector<std::string> localPaths;  // of an upload: files and folders in the order they were dropped or named
    std::vector<RemoteItem> remoteItems;  // of a download, in list order
    std::string targetFolder;             // on the receiving side, where a drop chose one; empty: the current folder

    // The worker's.
    std::string localStart;          // the local folder that destinations are worked out from, see Zarn_GetDestination
    std::string remoteStart;         // the same on the server
    std::string listedFolder;        // on the server: the folder that the list shows while the transfer runs
    std::string currentLocalFolder;  // cached name of the process's current folder
    TransferCounters counters;
    bool replaceAll = false;                        // "Yes to All" was answered
    std::unordered_set<std::string> receivedFiles;  // local files that this transfer made, see receive_target.h

    TransferDirection Direction() const;
    // True when the transfer is to end: aborted, timed out, or the program is closing.
    bool Stopped() const;
    // Ends the transfer, as the user's Abort does.
    void Stop();
};

// The job that this thread runs, or null. For the entry points whose fixed parameters have no room for it; everything
// behind them takes the job itself.
TransferJob* RunningJob();

// Makes a job this thread's running one for the lifetime of the object.
class RunningJobScope {
  public:
    explicit RunningJobScope(TransferJob& job);
    ~RunningJobScope();
    RunningJobScope(const RunningJobScope&) = delete;
    RunningJobScope& operator=(const RunningJobScope&) = delete;

  private:
    TransferJob* before_;
};
