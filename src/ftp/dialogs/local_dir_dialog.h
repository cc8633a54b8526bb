// The dialog that changes the local working directory.
#pragma once

#include "foundation/console_pane.h"

// True when the directory was changed; false on Cancel.
bool ShowLocalDirDialog(WindowHandle owner);
