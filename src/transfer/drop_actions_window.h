// Dropping and pasting as the windows see it: the names in what the system hands over, and the start of the transfer.
// Whether the files may be sent is decided in drop_actions.h.
#pragma once

#include <string>
#include <vector>

#include "config/site.h"
#include "foundation/console_pane.h"
#include "transfer/transfer_job.h"

// Full paths in a drop of the shell (an HDROP), which the caller still owns.
std::vector<std::string> FilesOfDrop(void* drop);
// Full paths of the files on the clipboard; none when it holds anything else.
std::vector<std::string> FilesOnClipboard(WindowHandle owner);
// Sends the job's local paths to the site, with the progress dialog. `finished` is called on the window's thread when
// it is over, to refresh what shows the site. False (shown to the user) when nothing started.
bool drop_files_fx(Site* site, WindowHandle owner, TransferJob&& job, void (*finished)());
// Hands the files on the clipboard to `drop`, as if they had been dropped on the site. False when nothing started.
bool paste_files_fx(Site* site, WindowHandle owner, bool (*drop)(Site* site, std::vector<std::string> files));
