// What the progress dialog shows, as one small record: the worker publishes it and never waits for a window, the dialog
// reads it at its own pace. Not here: the dialog (progress_dialog.h) and the questions that do wait (transfer_view.h).
#pragma once

#include <cstdint>
#include <string>

#include "transfer/transfer_job.h"

// Positions of the bar.
inline constexpr int kBarStarted = 250;
inline constexpr int kBarHalf = 500;
inline constexpr int kBarEnd = 1000;

struct TransferProgress {
    std::string item, source, destination, bytes, counters;  // texts as they are shown, paths in full
    char mode = '\0';                                        // 'A', 'I' or 'L'; 0 until a file has chosen one
    int bar = 0;                                             // 0..kBarEnd
    std::uint32_t change = 0;                                // grows with each publication
};

// Any thread may call what follows; no call waits for more than another's copy of the record.

// Nothing to show: a new transfer begins.
void ResetTransferProgress();
void SetDlgCreatingText(const char* name);
void SetDlgTransferingText(const char* name);
void SetDlgFromText(const char* host, const char* path);
void SetDlgSendToText(const char* host, const char* path);
void SetByteCountText(std::uint64_t done, std::uint64_t total);
void SetProgressBar(int position);  // 0..kBarEnd
// Byte text and bar together, for the copy's progress calls (SessionView::setTransferProgress).
void ShowTransferProgress(std::uint64_t done, std::uint64_t total);
void ShowMode(char mode);
void RefreshCountersText(const TransferCounters& counters);
// Copies the record if it has changed since `seen` was read; false, and `seen` as it was, if not.
bool ReadTransferProgress(TransferProgress& seen);

// The running flag of the shared transfer state: set when the dialog opens, cleared when the transfer is over.
void SetTransferRunning(bool running);
bool TransferRunning();

// Message 7226, 7214 or 7227; empty when both are 0. Pure.
std::string CountersText(int files, int folders);

// For tests: called after each publication, on the thread that published. Null for nobody.
void WatchTransferProgress(void (*published)(const TransferProgress& progress));
