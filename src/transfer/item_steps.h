// Steps that fetching and sending one item have in common: how it ends, the question for a name, how an error is put to
// the user and what the answer means. Not here: the transfers themselves (get_item.h, put_item.h).
#pragma once

#include <atomic>
#include <string>

#include "foundation/foundation_view.h"
#include "foundation/owned_text.h"
#include "ftp/data/item_outcome.h"
#include "ftp/data/transfer_node.h"
#include "transfer/transfer_job.h"

// Empties the bar. An outcome with that code.
ItemOutcome FailItem(int code);
// The entry points with fixed parameters: runs a step for the job of this thread; the outcome's code goes into the
// node. False for every code but FTP_COMPLETE, and when there is no node, no job, or the flag is set.
bool RunForNode(TransferNode* node, const std::atomic<bool>& abort, ItemOutcome (*step)(TransferJob&, TransferNode&));
// One more file or folder done.
void CountFile(TransferJob& job);
void CountFolder(TransferJob& job);

// A box under the caption that all errors of a transfer have.
BoxAnswer ShowTransferBox(const OwnedText& text, BoxButtons buttons);
const char* SiteName(const TransferJob& job);
// True when the user wants another try; Abort ends the whole transfer.
bool WantsRetry(TransferJob& job, BoxAnswer answer);
// The transfer mode by the file's type where the user asked for that, else the default.
char ModeFor(const char* fileName);
// Asks what the file is to be called at the other end: caption and prompt by message. An empty answer keeps the name.
// False when the user cancelled, which ends the whole transfer.
bool AskForName(TransferJob& job, unsigned captionId, unsigned promptId, std::string& name);

// After a failed remote operation: true when the connection is gone, which has been shown to the user and ends the
// transfer.
bool EndIfLost(TransferJob& job, const char* caller, int result, const char* reply);
// Makes a folder on the server the session's current one, creating it where the server says that it is missing, and
// asks the user after each failure. Returns the last result; failures have already been shown.
int EnterRemoteFolder(TransferJob& job, const char* caller, const char* path);
// Reports a time-out. If the user picks Retry or Ignore, the transfer-abort flag is cleared again.
BoxAnswer TellTimeOut(const TransferJob& job, const char* name);

// An item whose transfer failed on the network.
struct FailedItem {
    const char* caller;
    const char* name;
    unsigned incompleteId;  // message for a broken data connection
};
// Shows what it was: a time-out, a lost connection, the server's refusal, or a broken data connection. None after an
// abort and for what the user has been shown already.
BoxAnswer TellNetworkFailure(TransferJob& job, const FailedItem& item, const ItemOutcome& outcome);
