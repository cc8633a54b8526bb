// Texts and counters of the running transfer, as the progress dialog shows them.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "transfer/transfer_view.h"

struct TransferProgress {
    std::atomic<bool> running{false};
    TransferCounters counters;
    bool replaceAll = false;         // "Yes to All" was answered
    std::string currentLocalFolder;  // cached name of the process's current folder
    std::string listedFolder;        // on the server: the folder that the list shows while the transfer runs
};
extern TransferProgress gTransfer;

// A new transfer: counters and answers forgotten, the current local folder read.
void ResetTransfer();
void SetDlgCreatingText(const char* name);
void SetDlgTransferingText(const char* name);
void SetDlgFromText(const char* host, const char* path);
void SetDlgSendToText(const char* host, const char* path);
void SetByteCountText(std::uint64_t done, std::uint64_t total);
void SetProgressBar(int position);  // 0..1000
// Byte text and bar together, for the copy's progress calls (SessionView::setTransferProgress).
void ShowTransferProgress(std::uint64_t done, std::uint64_t total);
void RefreshCountersText();
// Message 7226, 7214 or 7227; empty when both are 0. Pure.
std::string CountersText(int files, int folders);
