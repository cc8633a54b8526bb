// "Confirm File Replace": asked before a received file takes the place of one that is there.
#pragma once

#include <string>

#include "foundation/console_pane.h"
#include "transfer/receive_target.h"

// `newSize` and `newTime` (0: unknown) describe the file on the server.
struct ReplaceQuestion {
    std::string name;
    std::string path;  // the local file in the way
    ExistingFile kind = ExistingFile::Ordinary;
    unsigned long long newSize = 0;
    unsigned long long newTime = 0;
};
ReplaceAnswer ShowReplaceDialog(WindowHandle owner, const ReplaceQuestion& question);
