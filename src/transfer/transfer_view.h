// What a transfer asks of the windows: the progress dialog's texts and bar, the selection, the question before a file
// is replaced. Called from the worker; the windows carry each call to their own thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "listing/directory_entry.h"
#include "listing/tree_node.h"
#include "transfer/receive_target.h"

struct TransferCounters {
    int folders = 0;
    int files = 0;
    int failures = 0;
    int failedThoughDone = 0;  // uploads that count in both
};

struct TransferView {
    void (*showDialog)() = nullptr;   // the worker has something to do
    void (*closeDialog)() = nullptr;  // done
    // Texts as they are shown (already expanded); paths are shortened to fit by the dialog.
    void (*setItem)(const char* text) = nullptr;
    void (*setSource)(const char* text) = nullptr;
    void (*setDestination)(const char* text) = nullptr;
    void (*setBytes)(const char* text) = nullptr;
    void (*setCounters)(const char* text) = nullptr;
    void (*setMode)(char mode) = nullptr;    // checks one of the three radio buttons
    void (*setBar)(int position) = nullptr;  // 0..1000
    ReplaceAnswer (*confirmReplace)(const ReplaceQuestion& question) = nullptr;
    // Selected entries in list order; they stay alive while the operation runs.
    std::vector<const LVobject*> (*selectedEntries)() = nullptr;
    // Full paths of the local files and folders to send, in the order in which they were dropped.
    std::vector<std::string> (*droppedFiles)() = nullptr;
    // Files to send that standard input named; the names may be relative to the current folder. Null when there are
    // none.
    std::vector<std::string> (*standardInputFiles)() = nullptr;
    // The folder on the receiving side (local for a download, remote for an upload) that a drop chose; empty for the
    // current one.
    std::string (*dropTarget)() = nullptr;
    // An upload has put this into the folder that the list shows; the view takes the entry.
    void (*addListedEntry)(LVobjectPtr entry) = nullptr;
    // The tree's selected node, or null.
    TVobject* (*selectedNode)() = nullptr;
};
extern TransferView gTransferView;
