// Downloads what the user selected. Runs on the worker with the progress dialog open.
#pragma once

#include <atomic>

// Items done (folders plus files), or -1 with nothing selected or the server not ready. Closes the dialog when done.
int Zarn_TransferLVitems(std::atomic<bool>& abort);
int Zarn_TransferTVitem(std::atomic<bool>& abort);
