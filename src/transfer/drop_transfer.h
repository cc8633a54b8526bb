// Uploads what was dropped or pasted, or named on standard input. Runs on the worker with the progress dialog open.
#pragma once

#include <atomic>
#include <string>
#include <vector>

// Sends the view's dropped files and folders to the drop's target or the current remote folder. Items done (folders
// plus files), or -1 with nothing dropped or the server not ready. Closes the dialog when done.
int Zarn_TransferDropFiles(std::atomic<bool>& abort);
// Sends the files that the view says standard input named to the current remote folder, wherever they stand.
int Zarn_TransferStdInFiles(std::atomic<bool>& abort);
std::vector<std::string> StandardInputFiles();
