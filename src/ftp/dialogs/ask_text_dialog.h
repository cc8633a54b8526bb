// Asks the user for one line of text: a password, an account, a name.
#pragma once

#include <string>

#include "foundation/console_pane.h"
#include "ftp/worker/session_view.h"

// False when the user cancelled; `answer` is then unchanged. `answer` also prefills the field.
bool ShowAskTextDialog(WindowHandle owner, const TextQuestion& question, std::string& answer);
