// "Confirm File Replace": asks before a received file replaces an existing one. Not here: what happens after the answer
// (receive_target.h).
#pragma once

#include "foundation/console_pane.h"
#include "transfer/replace_question.h"

// Shows the dialog over `owner` and waits for the answer; Cancel when it cannot be shown.
ReplaceAnswer ShowReplaceDialog(WindowHandle owner, const ReplaceQuestion& question);
