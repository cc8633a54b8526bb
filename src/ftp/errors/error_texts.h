// Failure codes in words: socket errors and common dialogs. Replies of the server are server_error.h.
#pragma once

#include "foundation/owned_text.h"
#include "platform/sockets.h"

// The table's text for a socket error; null (and a trace) when the error is not in it.
OwnedText GetWsaErrorText(int error);
// One console line for a failed socket call; nothing for error 0 (0 asked for means the last one).
void DbgPrintSocketError(const char* callerName, const char* operation, platform::Socket socket, int error);

// Catalogue id for a common-dialog error; 0 when there is nothing to show.
unsigned CommonDialogMessage(unsigned error);
void ShowCommonDialogError(unsigned error);
