// The transfer progress dialog "Tessmir File Transfers": it starts the worker, shows what is being done, and ends the
// transfer when the worker is done or the user aborts. Not here: what a transfer does.
#pragma once

#include "foundation/console_pane.h"

// What the dialog's worker runs.
enum class TransferStart { DropFiles = 0, None = 1, ListSelection = 3, StandardInput = 4, TreeSelection = 5 };

// Opens the dialog, hidden until the worker has something to show, and starts the worker; returns at once. While the
// dialog shows, `owner` takes no input. False (message 6003) when an operation is running. `finished` is called on the
// window's thread after the dialog is gone.
bool OpenTransferDialog(WindowHandle owner, TransferStart start, void (*finished)());
// The open dialog, or null; its keys need IsDialogMessage in the message loop.
WindowHandle TransferDialogWindow();
// The progress part of the transfer view, for InstallViews; calls travel to the dialog's own thread.
struct TransferView;
void FillTransferView(TransferView& view);
// Sets the bar from bytes done (called through the session view).
void SetTransferDialogProgress(unsigned long long done, unsigned long long total);
