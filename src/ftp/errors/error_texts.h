// Failure codes in words: socket errors, reply codes, failed operations, common dialogs.
#pragma once

#include <string>
#include <string_view>

#include "foundation/owned_text.h"
#include "platform/sockets.h"

// The table's text for a socket error; null (and a trace) when the error is not in it.
OwnedText GetWsaErrorText(int error);
// One console line for a failed socket call; nothing for error 0 (0 asked for means the last one).
void DbgPrintSocketError(const char* callerName, const char* operation, platform::Socket socket, int error);

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

// Catalogue id for a common-dialog error; 0 when there is nothing to show.
unsigned CommonDialogMessage(unsigned error);
void ShowCommonDialogError(unsigned error);
