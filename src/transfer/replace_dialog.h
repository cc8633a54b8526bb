// "Confirm File Replace": asked before a received file takes the place of one that is there. What follows from the
// answer is decided in receive_target.h.
#pragma once

#include "foundation/console_pane.h"
#include "transfer/replace_question.h"

// Cancel when the dialog cannot be shown.
ReplaceAnswer ShowReplaceDialog(WindowHandle owner, const ReplaceQuestion& question);
