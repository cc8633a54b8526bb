// The modal dialog that explains a failed remote operation: code, the server's words, RFC 959's words, the task.
#pragma once

#include "foundation/console_pane.h"

void ShowServerErrorDialog(WindowHandle owner, int operation, const char* reply);
