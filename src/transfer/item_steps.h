// Steps that fetching and sending one item have in common: the dialog's lines, the mode, the question for a name, how
// an error is put to the user and what his answer means. Not here: the transfers themselves (get_put.h).
#pragma once

#include <atomic>
#include <cstdint>
#include <string>

#include "config/site.h"
#include "foundation/foundation_view.h"
#include "ftp/data/transfer_node.h"

inline constexpr int kBarStarted = 250;
inline constexpr int kBarHalf = 500;
inline constexpr int kBarEnd = 1000;

// Options of TransferDlgError.
inline constexpr int kLocalFolderOption = 1;
inline constexpr int kCreateFolderOption = 2;
inline constexpr int kLocalFileOption = 3;
inline constexpr int kDiskFullOption = 4;
inline constexpr int kRemoteFolderOption = 5;
inline constexpr int kMakeRemoteFolderOption = 6;
inline constexpr int kRefusedOption = 7;
inline constexpr int kLocalErrorOption = 9;
inline constexpr int kReservedOption = 10;

// Notes the code, empties the bar. Always false.
bool FailItem(TransferNode* node, int code);
// A box under the caption that all errors of a transfer have.
BoxAnswer ShowTransferBox(const OwnedText& text, BoxButtons buttons);
const char* SiteName(const Site* site);
// True when the user wants another try; Abort ends the whole transfer.
bool WantsRetry(BoxAnswer answer, std::atomic<bool>& abort);
void ShowMode(char mode);
// By the file's type where the user wants that, else the default.
char ModeFor(const char* fileName);
// Asks what the file is to be called at the other end: caption and prompt by message. An empty answer keeps the name.
// False when the user cancelled, which ends the whole transfer.
bool AskForName(unsigned captionId, unsigned promptId, const Site* site, std::string& name, std::atomic<bool>& abort);
// True (and the transfer is over) when nothing more can be done for want of a connection.
bool EndIfLost(const char* caller, Site* site, int result, const char* reply, std::atomic<bool>& abort);
// Makes a folder of the server the session's current one (and the folder itself, where the server says that it is
// missing), asking the user after each failure. The last result; anything but 2 was told.
int EnterRemoteFolder(const char* caller, Site* site, const char* path, std::atomic<bool>& abort);
// Tells the user of a time-out as what it is. When he goes on (Retry, Ignore), the abort that it came as is taken back.
BoxAnswer TellTimeOut(const Site* site, const char* name, std::atomic<bool>& abort);
// A transfer of `name` failed on the network: a time-out, a lost connection, the server's refusal, or (message
// `incompleteId`) a broken data connection. None for an abort and for what the user knows already.
BoxAnswer TellNetworkFailure(const char* caller, Site* site, const char* name, int result, const char* reply,
                             unsigned incompleteId, std::atomic<bool>& abort);
