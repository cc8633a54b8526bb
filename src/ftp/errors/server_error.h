// Replies of the server in words: what failed, what RFC 959 says of the code, and the dialog that shows both. Errors of
// sockets are error_texts.h.
#pragma once

#include <string>
#include <string_view>

// Operation codes of the server-error dialog.
inline constexpr int kOperationStatistics = 650;
inline constexpr int kOperationChangeDirectory = 652;
inline constexpr int kOperationList = 654;
inline constexpr int kOperationRename = 655;
inline constexpr int kOperationMakeDirectory = 656;
inline constexpr int kOperationCurrentDirectory = 657;
inline constexpr int kOperationRemoveDirectory = 659;
inline constexpr int kOperationRenameFile = 660;
inline constexpr int kOperationRenameDirectory = 661;
inline constexpr int kOperationTransfer = 662;

// What the server-error dialog shows.
struct ServerErrorFields {
    int code = 0;            // three digits the reply begins with, else 0
    std::string returned;    // the reply after its code
    std::string definition;  // what RFC 959 says of the code; empty for 0
    std::string task;        // what the program was doing
};
ServerErrorFields SetSrvErrorDlgItems(int operation, std::string_view reply);
// Opens the dialog through the session view; nothing without an operation or reply, or while one is open.
void ShowServerError(int operation, const char* reply);
// Names the directory that the next server error is about; the sentence for a new directory shows it.
void NameErrorSubject(std::string_view name);
// Catalogue id of the sentence that names what failed.
unsigned OperationSentence(int operation);
