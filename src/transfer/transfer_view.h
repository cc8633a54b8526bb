// What a transfer asks of the windows beyond the record that it publishes (transfer_progress.h): to show and close the
// dialog, the question before a file is replaced, a new entry for the list. Called from the worker.
#pragma once

#include <string>

#include "config/site.h"
#include "listing/directory_entry.h"
#include "transfer/replace_question.h"

struct TransferView {
    // The worker has something to do. Returns at once.
    void (*showDialog)() = [] {};
    // The transfer is over. Returns at once.
    void (*closeDialog)() = [] {};
    // Waits for the user. Without anybody to ask the file stays.
    ReplaceAnswer (*confirmReplace)(const ReplaceQuestion& question) = [](const ReplaceQuestion&) {
        return ReplaceAnswer::No;
    };
    // An upload has put this into the folder of the site that the list shows. `folder` is the one that a drop chose,
    // empty for the site's current one. The view takes the entry.
    void (*addListedEntry)(const Site* site, const std::string& folder,
                           LVobjectPtr entry) = [](const Site*, const std::string&, LVobjectPtr) {};
};
extern TransferView gTransferView;
