// Dialogs whose texts come from outside: a text takes the height that it needs, what stands below it moves.
#pragma once

#include "foundation/console_pane.h"

// Gives the static control `item` the height of its text, at most `mostLines` lines, moves every control below it and
// fits the dialog, which stays centred where it was. For WM_INITDIALOG, after the texts are set.
void FitDialogToText(WindowHandle dialog, int item, int mostLines);
