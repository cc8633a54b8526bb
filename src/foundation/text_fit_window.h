// Fits a dialog to a text that comes from outside: the text gets the height it needs, the controls below it move.
#pragma once

#include "foundation/console_pane.h"

// Gives the static control `item` the height of its text, at most `mostLines` lines, moves every control below it and
// resizes the dialog around its centre. For WM_INITDIALOG, after the texts are set.
void FitDialogToText(WindowHandle dialog, int item, int mostLines);
