// The transfer progress dialog "Tessmir File Transfers": starts the worker, draws what it publishes, and ends the
// transfer when the worker is done or the user aborts. Not here: what a transfer does.
#pragma once

#include "foundation/console_pane.h"
#include "transfer/transfer_job.h"
#include "transfer/transfer_view.h"

// Opens the dialog, hidden until the worker has something to show, and starts the worker, which owns the job from then
// on; returns at once. While the dialog shows, `owner` takes no input. False (message 6003) when an operation is
// running. `finished` is called on the window's thread after the dialog is gone.
bool OpenTransferDialog(WindowHandle owner, TransferJob&& job, void (*finished)());
// The open dialog, or null; its keys need IsDialogMessage in the message loop.
WindowHandle TransferDialogWindow();
// The open dialog if it shows, or null. Shows one that the worker has just asked for, so that a box stands in front of
// it. The window's thread only.
WindowHandle ShownTransferDialog();
// The dialog's part of the transfer view.
void FillTransferView(TransferView& view);
