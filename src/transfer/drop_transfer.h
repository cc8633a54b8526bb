// Uploads what was dropped or pasted, or named on standard input. Runs on the worker with the progress dialog open.
#pragma once

#include <atomic>

// Sends the view's dropped files and folders to the drop's target or the current remote folder. Items done (folders
// plus files), or -1 with nothing dropped or the server not ready. Closes the dialog when done.
int Zarn_TransferDropFiles(std::atomic<bool>& abort);
